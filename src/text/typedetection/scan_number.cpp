#include "text/typedetection/scan_number.hpp"

#include <algorithm>

#include "text/constants.hpp"

namespace tolven::io::text::typedetection {

namespace {

bool is_digit(char16_t c) noexcept { return c >= u'0' && c <= u'9'; }
bool is_sign(char16_t c) noexcept { return c == u'+' || c == u'-'; }

enum class Position : unsigned char { Start, AfterSign, Integer, Fraction, ExponentMark, ExponentSign, Exponent };

}  // namespace

std::u16string_view strip_nonnumeric(const TypeAnalyzerOptions& options, std::u16string_view text) noexcept {
    const auto can_begin = [&](char16_t c) { return is_digit(c) || is_sign(c) || c == options.decimal_separator; };
    const auto can_end = [&](char16_t c) { return is_digit(c) || c == options.decimal_separator; };
    std::size_t begin = 0;
    while (begin < text.size() && !can_begin(text[begin])) ++begin;
    std::size_t end = text.size();
    while (end > begin && !can_end(text[end - 1])) --end;
    return text.substr(begin, end - begin);
}

bool scan_number(const TypeAnalyzerOptions& options, std::u16string_view text, std::string* normalised) {
    if (options.trim_nonnumeric) text = strip_nonnumeric(options, text);
    if (normalised != nullptr) normalised->clear();
    const auto emit = [normalised](char c) {
        if (normalised != nullptr) normalised->push_back(c);
    };

    Position at = Position::Start;
    bool mantissa_digit = false;
    for (const char16_t c : text) {
        // Thousands separators are dropped before anything else, so they never end a number.
        if (options.thousands_separator != 0 && c == options.thousands_separator) continue;
        if (is_digit(c)) {
            if (at == Position::Start || at == Position::AfterSign) at = Position::Integer;
            if (at == Position::ExponentMark || at == Position::ExponentSign) at = Position::Exponent;
            if (at == Position::Integer || at == Position::Fraction) mantissa_digit = true;
            emit(static_cast<char>(c));
        } else if (c == options.decimal_separator) {
            if (at != Position::Start && at != Position::AfterSign && at != Position::Integer) return false;
            at = Position::Fraction;
            emit('.');
        } else if (is_sign(c)) {
            if (at == Position::Start) {
                at = Position::AfterSign;
                if (c == u'-') emit('-');  // the float parser takes no leading '+'
            } else if (at == Position::ExponentMark) {
                at = Position::ExponentSign;
                emit(static_cast<char>(c));
            } else {
                return false;
            }
        } else if (mantissa_digit && (at == Position::Integer || at == Position::Fraction) &&
                   options.exponent_characters.find(c) != std::u16string::npos) {
            at = Position::ExponentMark;
            emit('e');
        } else {
            return false;
        }
    }
    return mantissa_digit && at != Position::ExponentMark && at != Position::ExponentSign;
}

bool is_special_number(std::u16string_view text) noexcept {
    return std::find(constants::special_numbers.begin(), constants::special_numbers.end(), text) !=
           constants::special_numbers.end();
}

}  // namespace tolven::io::text::typedetection
