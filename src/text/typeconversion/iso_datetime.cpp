#include "text/typeconversion/iso_datetime.hpp"

#include <array>
#include <charconv>

namespace tolven::io::text::typeconversion {

void append_padded(std::string& out, std::uint64_t value, std::size_t width) {
    std::array<char, 24> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
    const auto length = static_cast<std::size_t>(end - digits.data());
    if (length < width) out.append(width - length, '0');
    out.append(digits.data(), length);
}

namespace {

// The value of count digits at text[at], or -1 when they are not all digits.
int digits(std::string_view text, std::size_t at, std::size_t count) noexcept {
    int value = 0;
    for (std::size_t i = at; i < at + count; ++i) {
        if (i >= text.size() || text[i] < '0' || text[i] > '9') return -1;
        value = value * 10 + (text[i] - '0');
    }
    return value;
}

// The value of the two digits at p, or -1 when either is not a digit.
int two_digits(const char* p) noexcept {
    const unsigned tens = static_cast<unsigned char>(p[0]) - unsigned{'0'};
    const unsigned ones = static_cast<unsigned char>(p[1]) - unsigned{'0'};
    return tens > 9 || ones > 9 ? -1 : static_cast<int>(tens * 10 + ones);
}

bool at(std::string_view text, std::size_t i, char c) noexcept { return i < text.size() && text[i] == c; }

}  // namespace

void append_iso_datetime(std::string& out, const DateTimeParts& parts) {
    append_padded(out, static_cast<std::uint64_t>(parts.year), 4);
    out.push_back('-');
    append_padded(out, static_cast<std::uint64_t>(parts.month), 2);
    out.push_back('-');
    append_padded(out, static_cast<std::uint64_t>(parts.day), 2);
    if (!parts.has_time) return;
    out.push_back('T');
    append_padded(out, static_cast<std::uint64_t>(parts.hour), 2);
    out.push_back(':');
    append_padded(out, static_cast<std::uint64_t>(parts.minute), 2);
    out.push_back(':');
    append_padded(out, static_cast<std::uint64_t>(parts.second), 2);
    if (!parts.fraction.empty()) {
        out.push_back('.');
        for (const char16_t c : parts.fraction) out.push_back(static_cast<char>(c));
    }
    if (parts.zone == DateTimeParts::Zone::Utc) {
        out.push_back('Z');
    } else if (parts.zone == DateTimeParts::Zone::Offset) {
        const int offset = parts.offset_minutes;
        out.push_back(offset < 0 ? '-' : '+');
        const auto minutes = static_cast<std::uint64_t>(offset < 0 ? -offset : offset);
        append_padded(out, minutes / 60, 2);
        out.push_back(':');
        append_padded(out, minutes % 60, 2);
    }
}

bool is_canonical_iso_datetime(std::string_view text) noexcept {
    // Every value of a date column comes here: once the length is known to hold the fixed places,
    // they are read without a check each.
    if (text.size() < 10) return false;
    const char* p = text.data();
    DateTimeParts parts;
    const int century = two_digits(p), year = two_digits(p + 2);
    parts.month = two_digits(p + 5);
    parts.day = two_digits(p + 8);
    if ((century | year | parts.month | parts.day) < 0 || p[4] != '-' || p[7] != '-') return false;
    parts.year = century * 100 + year;
    if (text.size() == 10) return is_valid_date_time(parts);
    if (text.size() < 19) return false;
    parts.hour = two_digits(p + 11);
    parts.minute = two_digits(p + 14);
    parts.second = two_digits(p + 17);
    if (p[10] != 'T' || p[13] != ':' || p[16] != ':' || (parts.hour | parts.minute | parts.second) < 0 ||
        !is_valid_date_time(parts)) {
        return false;
    }
    std::size_t i = 19;
    if (at(text, i, '.')) {
        const std::size_t start = ++i;
        while (i < text.size() && text[i] >= '0' && text[i] <= '9') ++i;
        if (i == start) return false;
    }
    if (i == text.size()) return true;
    if (text[i] == 'Z') return i + 1 == text.size();
    if (text[i] != '+' && text[i] != '-') return false;
    const int hours = digits(text, i + 1, 2);
    const int minutes = digits(text, i + 4, 2);
    // "-00:00" is written "+00:00".
    return i + 6 == text.size() && at(text, i + 3, ':') && hours >= 0 && hours <= 23 && minutes >= 0 &&
           minutes <= 59 && (text[i] == '+' || hours + minutes > 0);
}

}  // namespace tolven::io::text::typeconversion
