#include "text/typeconversion/write_number.hpp"

#include <fast_float/fast_float.h>

#include <algorithm>
#include <charconv>
#include <cmath>

#include "text/textio/MutableField.hpp"
#include "text/typedetection/scan_number.hpp"

namespace tolven::io::text::typeconversion {

namespace {

using typedetection::TypeAnalyzerOptions;

bool is_digit(char c) noexcept { return c >= '0' && c <= '9'; }
bool is_sign(char c) noexcept { return c == '+' || c == '-'; }

enum class Position : unsigned char { Start, AfterSign, Integer, Fraction, ExponentMark, ExponentSign, Exponent };

// Whether the UTF-8 scan below can stand in for the UTF-16 grammar: every setting is one byte.
bool ascii_settings(const TypeAnalyzerOptions& options) noexcept {
    return options.decimal_separator < 0x80 && options.thousands_separator < 0x80 &&
           std::all_of(options.exponent_characters.begin(), options.exponent_characters.end(),
                       [](char16_t c) { return c < 0x80; });
}

// scan_number on UTF-8 bytes, for settings that are all ASCII: bytes of other characters never
// equal a digit, a sign or a setting, so they fail the grammar exactly as their characters do.
bool scan_utf8(const TypeAnalyzerOptions& options, std::string_view text, std::string& normalised) {
    const char decimal = static_cast<char>(options.decimal_separator);
    const char thousands = static_cast<char>(options.thousands_separator);
    if (options.trim_nonnumeric) {
        const auto can_begin = [&](char c) { return is_digit(c) || is_sign(c) || c == decimal; };
        const auto can_end = [&](char c) { return is_digit(c) || c == decimal; };
        std::size_t begin = 0, end = text.size();
        while (begin < end && !can_begin(text[begin])) ++begin;
        while (end > begin && !can_end(text[end - 1])) --end;
        text = text.substr(begin, end - begin);
    }
    normalised.clear();
    Position at = Position::Start;
    bool mantissa_digit = false;
    for (const char c : text) {
        if (thousands != 0 && c == thousands) continue;
        if (is_digit(c)) {
            if (at == Position::Start || at == Position::AfterSign) at = Position::Integer;
            if (at == Position::ExponentMark || at == Position::ExponentSign) at = Position::Exponent;
            if (at == Position::Integer || at == Position::Fraction) mantissa_digit = true;
            normalised.push_back(c);
        } else if (c == decimal) {
            if (at != Position::Start && at != Position::AfterSign && at != Position::Integer) return false;
            at = Position::Fraction;
            normalised.push_back('.');
        } else if (is_sign(c)) {
            if (at == Position::Start) {
                at = Position::AfterSign;
                if (c == '-') normalised.push_back('-');
            } else if (at == Position::ExponentMark) {
                at = Position::ExponentSign;
                normalised.push_back(c);
            } else {
                return false;
            }
        } else if (mantissa_digit && (at == Position::Integer || at == Position::Fraction) &&
                   options.exponent_characters.find(static_cast<char16_t>(static_cast<unsigned char>(c))) !=
                       std::u16string::npos) {
            at = Position::ExponentMark;
            normalised.push_back('e');
        } else {
            return false;
        }
    }
    return mantissa_digit && at != Position::ExponentMark && at != Position::ExponentSign;
}

bool special(std::string_view text, std::string& out) {
    if (text == "NaN" || text == "nan" || text == "-nan") out = "NaN";
    else if (text == "Inf" || text == "inf") out = "Inf";
    else if (text == "-inf") out = "-Inf";
    else return false;
    return true;
}

// The number in C notation ("-0012.50e+3") written as promised.
NumberStatus write_normalised(std::string_view n, std::string& out) {
    std::size_t i = 0;
    const bool negative = i < n.size() && n[i] == '-';
    if (negative) ++i;
    const std::size_t integer_begin = i;
    while (i < n.size() && is_digit(n[i])) ++i;
    std::string_view integer = n.substr(integer_begin, i - integer_begin);
    bool whole = true;
    if (i < n.size() && n[i] == '.') {
        for (++i; i < n.size() && is_digit(n[i]); ++i) whole = whole && n[i] == '0';
    }
    const bool exponent = i < n.size();
    const bool leading_zeros = integer.size() > 1 && integer.front() == '0';
    const NumberStatus status = leading_zeros ? NumberStatus::LeadingZeros : NumberStatus::Written;

    out.clear();
    if (whole && !exponent) {
        while (integer.size() > 1 && integer.front() == '0') integer.remove_prefix(1);
        if (negative) out.push_back('-');
        if (integer.empty()) out.push_back('0');  // "-.0"
        out.append(integer);
        return status;
    }
    double value = 0.0;
    const auto parsed = fast_float::from_chars(n.data(), n.data() + n.size(), value);
    if (parsed.ptr != n.data() + n.size() || !std::isfinite(value)) return NumberStatus::NotANumber;
    // Fixed notation for whole numbers and for text written without exponent ("0.0001" stays so):
    // at most 309 integer digits, or no longer than the text. Otherwise the shortest form.
    out.resize(std::max<std::size_t>(400, n.size() + 8));
    const bool fixed = value == std::trunc(value) || !exponent;
    const auto written = fixed ? std::to_chars(out.data(), out.data() + out.size(), value, std::chars_format::fixed)
                               : std::to_chars(out.data(), out.data() + out.size(), value);
    out.resize(static_cast<std::size_t>(written.ptr - out.data()));
    return status;
}

}  // namespace

NumberStatus write_number(const TypeAnalyzerOptions& options, std::string_view text, std::string& out) {
    if (special(text, out)) return NumberStatus::Special;
    thread_local std::string normalised;
    bool number = false;
    if (ascii_settings(options)) {
        number = scan_utf8(options, text, normalised);
    } else {
        thread_local textio::MutableField wide;
        wide.assign_utf8(text);
        number = typedetection::scan_number(options, wide.text(), &normalised);
    }
    if (!number) return NumberStatus::NotANumber;
    return write_normalised(normalised, out);
}

}  // namespace tolven::io::text::typeconversion
