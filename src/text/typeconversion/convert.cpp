#include "text/typeconversion/convert.hpp"

#include <fast_float/fast_float.h>

#include <array>
#include <charconv>
#include <limits>

#include "text/constants.hpp"
#include "text/textio/Field.hpp"
#include "text/textio/trim.hpp"
#include "text/textio/MutableField.hpp"
#include "text/typeconversion/LocaleDateData.hpp"
#include "text/typeconversion/iso_datetime.hpp"
#include "text/typeconversion/parse_datetime.hpp"
#include "text/typedetection/scan_duration.hpp"
#include "text/typedetection/scan_number.hpp"

namespace tolven::io::text::typeconversion {

namespace {

using typedetection::TypeAnalyzerOptions;

std::u16string_view trim(std::u16string_view text, std::u16string_view whitespace) noexcept {
    return textio::Field(text).trimmed(whitespace).text();
}

// The UTF-16 form of a UTF-8 value, in a buffer each thread keeps, so the importer's loop does not
// allocate per value.
std::u16string_view widen(std::string_view utf8) {
    thread_local textio::MutableField buffer;
    buffer.assign_utf8(utf8);
    return buffer.text();
}

void append_ascii(std::string& out, std::u16string_view digits) {
    for (const char16_t c : digits) out.push_back(static_cast<char>(c));
}

// The value of a group of decimal digits; nullopt when it exceeds 64 bits.
std::optional<std::uint64_t> digits_value(std::u16string_view digits) noexcept {
    while (digits.size() > 1 && digits.front() == u'0') digits.remove_prefix(1);
    std::array<char, 20> ascii{};
    if (digits.size() > ascii.size()) return std::nullopt;
    for (std::size_t i = 0; i < digits.size(); ++i) ascii[i] = static_cast<char>(digits[i]);
    std::uint64_t value = 0;
    const auto [end, error] = std::from_chars(ascii.data(), ascii.data() + digits.size(), value);
    if (error != std::errc() || end != ascii.data() + digits.size()) return std::nullopt;
    return value;
}

// a * factor + b, or nullopt on overflow.
std::optional<std::uint64_t> scale_add(std::uint64_t a, std::uint64_t factor, std::uint64_t b) noexcept {
    std::uint64_t product = 0;
    std::uint64_t sum = 0;
    if (__builtin_mul_overflow(a, factor, &product) || __builtin_add_overflow(product, b, &sum)) return std::nullopt;
    return sum;
}

std::optional<std::uint64_t> parse_uint64(std::string_view text) noexcept {
    int base = 10;
    if (text.size() >= 2 && text[0] == '0') {
        if (text[1] == 'x' || text[1] == 'X') base = 16;
        if (text[1] == 'b' || text[1] == 'B') base = 2;
        if (base != 10) text.remove_prefix(2);
    }
    if (text.empty()) return std::nullopt;
    std::uint64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

}  // namespace

std::optional<double> to_double(const TypeAnalyzerOptions& options, std::u16string_view text) {
    const std::u16string_view value = trim(text, options.whitespace);
    if (typedetection::is_special_number(value)) {
        const bool negative = value.front() == u'-';
        const bool nan = value.back() == u'n' || value.back() == u'N';
        const double magnitude = nan ? std::numeric_limits<double>::quiet_NaN() : std::numeric_limits<double>::infinity();
        return negative ? -magnitude : magnitude;
    }
    thread_local std::string normalised;
    if (!typedetection::scan_number(options, value, &normalised)) return std::nullopt;
    double result = 0.0;
    const char* end = normalised.data() + normalised.size();
    const auto parsed = fast_float::from_chars(normalised.data(), end, result);
    if (parsed.ptr != end) return std::nullopt;
    return result;
}

std::optional<double> to_double(const TypeAnalyzerOptions& options, std::string_view text) {
    return to_double(options, widen(text));
}

std::optional<std::string> to_iso_datetime(const TypeAnalyzerOptions& options, std::u16string_view text) {
    const std::u16string_view value = trim(text, options.whitespace);
    const auto parts = parse_datetime(value, LocaleDateData::get(options.date_locale));
    if (!parts) return std::nullopt;

    std::string out;
    append_iso_datetime(out, *parts);
    return out;
}

std::optional<std::string> to_iso_datetime(const TypeAnalyzerOptions& options, std::string_view text) {
    return to_iso_datetime(options, widen(text));
}

std::optional<std::string> to_duration(const TypeAnalyzerOptions& options, std::u16string_view text) {
    const std::u16string_view value = trim(text, options.whitespace);
    const auto shape = typedetection::scan_duration(value, options.decimal_separator);
    if (shape.kind != typedetection::DurationShape::Kind::Duration) return std::nullopt;

    // Right-align the groups on days, hours, minutes, seconds; two groups are hours and minutes,
    // unless a fraction makes them minutes and seconds.
    std::array<std::uint64_t, 4> fields{};
    const bool minutes_seconds = shape.group_count == 2 && !shape.fraction.empty();
    const std::size_t offset = fields.size() - shape.group_count - (shape.group_count == 2 && !minutes_seconds ? 1 : 0);
    for (std::size_t i = 0; i < shape.group_count; ++i) {
        const auto group = digits_value(shape.groups[i]);
        if (!group) return std::nullopt;
        fields[offset + i] = *group;
    }
    auto total = scale_add(fields[0], 24, fields[1]);
    if (total) total = scale_add(*total, 60, fields[2]);
    if (total) total = scale_add(*total, 60, fields[3]);
    if (!total) return std::nullopt;

    std::string out;
    if (shape.negative) out.push_back('-');
    append_padded(out, *total / 3600, 2);
    out.push_back(':');
    append_padded(out, *total / 60 % 60, 2);
    out.push_back(':');
    append_padded(out, *total % 60, 2);
    if (!shape.fraction.empty()) {
        out.push_back('.');
        append_ascii(out, shape.fraction);
    }
    return out;
}

std::optional<std::string> to_duration(const TypeAnalyzerOptions& options, std::string_view text) {
    return to_duration(options, widen(text));
}

std::optional<std::uint64_t> to_uint64(std::u16string_view text) noexcept {
    const std::u16string_view value = trim(text, constants::whitespace);
    // A prefix and 64 binary digits fit on the stack; only texts padded with zeros need more.
    std::array<char, 66> ascii{};
    std::string long_ascii;
    char* out = ascii.data();
    if (value.size() > ascii.size()) {
        try {
            long_ascii.resize(value.size());
        } catch (...) {
            return std::nullopt;
        }
        out = long_ascii.data();
    }
    for (std::size_t i = 0; i < value.size(); ++i) {
        if (value[i] >= 0x80) return std::nullopt;
        out[i] = static_cast<char>(value[i]);
    }
    return parse_uint64(std::string_view(out, value.size()));
}

std::optional<std::uint64_t> to_uint64(std::string_view text) noexcept {
    const std::string_view value = textio::trim_whitespace(text);
    if (value.empty()) return std::nullopt;
    return parse_uint64(value);
}

}  // namespace tolven::io::text::typeconversion
