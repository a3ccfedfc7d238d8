#include "import/ValueConverter.hpp"

#include <charconv>
#include <cmath>
#include <limits>
#include <stdexcept>

#include "host/utf.hpp"
#include "text/typeconversion/convert.hpp"
#include "text/typeconversion/iso_datetime.hpp"
#include "text/typeconversion/parse_datetime.hpp"
#include "text/typeconversion/write_number.hpp"

namespace tolven::import {

namespace conv = io::text::typeconversion;

io::text::typedetection::TypeAnalyzerOptions make_analyzer_options(
    const io::xml::detection::options::DetectionOptions& o) {
    io::text::typedetection::TypeAnalyzerOptions a;
    // Only the first unit of each separator counts, as in detection.
    a.thousands_separator = o.ThousandsSeparator.empty() ? 0 : o.ThousandsSeparator.front();
    a.decimal_separator = o.DecimalSeparator.empty() ? u'.' : o.DecimalSeparator.front();
    a.exponent_characters = o.ExponentCharacter;
    a.trim_nonnumeric = o.TrimNonnumeric;
    a.date_locale = o.DateLocale;
    return a;
}

namespace {

struct Integer {
    std::string_view name;
    bool is_signed;
    std::uint64_t max;
};
constexpr Integer integers[] = {
    {"int8", true, 127},         {"int16", true, 32767},      {"int32", true, 2147483647},
    {"int64", true, std::numeric_limits<std::int64_t>::max()}, {"uint8", false, 255},
    {"uint16", false, 65535},    {"uint32", false, 4294967295}, {"uint64", false, std::numeric_limits<std::uint64_t>::max()},
};

const Integer* integer_type(std::string_view type) noexcept {
    for (const Integer& i : integers)
        if (i.name == type) return &i;
    return nullptr;
}

bool is_text_type(std::string_view type) noexcept { return type == "string" || type == "char" || type == "categorical"; }

bool is_digit(char c) noexcept { return c >= '0' && c <= '9'; }

// Digits a double holds exactly: a decimal of at most this many significant digits reads to a double
// whose shortest text is that decimal again.
constexpr std::size_t kExactDigits = 15;
// Longer plain decimals take the general path, which also sees values too small for a double.
constexpr std::size_t kLongestPlain = 32;

// How much of text is the number as write_number writes it, for a plain decimal that needs no
// conversion: "-12.50" gives "-12.5", "7.000" gives "7", "42" stays; 0 for any other text (a sign
// "+", leading zeros, an exponent, separators, more digits than a double holds), left to the
// general path. Valid only when '.' is the decimal separator and no setting is a digit or a sign.
std::size_t plain_decimal(std::string_view text) noexcept {
    const std::size_t n = text.size();
    std::size_t i = n > 0 && text[0] == '-' ? 1 : 0;
    const std::size_t integer = i;
    while (i < n && is_digit(text[i])) ++i;
    if (i == integer || (text[integer] == '0' && i - integer > 1)) return 0;
    if (i == n) return n;  // an integer: its digits, however many
    const std::size_t point = i;
    if (text[i] != '.' || n > kLongestPlain) return 0;
    for (++i; i < n && is_digit(text[i]); ++i) {
    }
    if (i != n || i == point + 1) return 0;
    std::size_t end = n;
    while (text[end - 1] == '0') --end;
    if (end == point + 1) return point;  // a fraction of zeros: the integer
    std::size_t significant = end - integer - 1;
    if (significant <= kExactDigits) return end;  // leading zeros would only lower it
    for (std::size_t k = integer; k < end && (text[k] == '0' || text[k] == '.'); ++k)
        if (text[k] == '0') --significant;
    return significant <= kExactDigits ? end : 0;
}

// A plain integer ("-42") whose digits are already as written: no sign "+", no leading zeros, not
// "-0", and short enough for from_chars to range-check.
bool plain_integer(std::string_view text) noexcept {
    const bool negative = !text.empty() && text[0] == '-';
    const std::string_view digits = text.substr(negative ? 1 : 0);
    if (digits.empty() || digits.size() > 18 || (digits[0] == '0' && (negative || digits.size() > 1))) return false;
    for (const char c : digits)
        if (!is_digit(c)) return false;
    return true;
}

// Whether plain_decimal can stand in for write_number under options: '.' separates the fraction and
// no other setting could be read into a plain decimal's characters.
bool plain_numbers_read_alike(const io::text::typedetection::TypeAnalyzerOptions& options) noexcept {
    const auto harmless = [](char16_t c) { return !(c >= u'0' && c <= u'9') && c != u'.' && c != u'-' && c != u'+'; };
    if (options.decimal_separator != u'.' || !harmless(options.thousands_separator)) return false;
    for (const char16_t c : options.exponent_characters)
        if (!harmless(c)) return false;
    return true;
}

}  // namespace

bool is_known_type(std::string_view type) noexcept {
    return is_text_type(type) || integer_type(type) != nullptr || type == "double" || type == "single" ||
           type == "datetime" || type == "duration";
}

ValueConverter::ValueConverter(const Column& column, const io::text::typedetection::TypeAnalyzerOptions& options)
    : name_(column.name),
      type_(column.type),
      type_given_(column.type_given),
      options_(&options),
      plain_numbers_(plain_numbers_read_alike(options)) {
    if (is_text_type(type_)) {
        target_ = Target::Text;
    } else if (type_ == "double" || type_ == "single") {
        target_ = type_ == "double" ? Target::Double : Target::Single;
    } else if (const Integer* i = integer_type(type_)) {
        target_ = i->is_signed ? Target::Signed : Target::Unsigned;
        max_ = i->max;
        min_ = -static_cast<std::int64_t>(i->max) - 1;
    } else if (type_ == "datetime") {
        target_ = Target::Datetime;
        locale_ = &conv::LocaleDateData::get(options.date_locale);
    } else if (type_ == "duration") {
        target_ = Target::Duration;
    } else {
        throw std::invalid_argument("not a type: " + type_);
    }
    if (!column.date_format.empty()) {
        std::string reason;
        format_ = conv::DateFormat::compile(column.date_format, reason);
        if (!format_) throw std::invalid_argument("not a date format: " + reason);
    }
}

void ValueConverter::observe(std::string_view text, std::uint64_t row) {
    if (target_ == Target::Datetime && !format_ && !order_) {
        if (conv::is_canonical_iso_datetime(text)) return;
        wide_.assign_utf8(text);
        const auto day_first = conv::parse_datetime(wide_.text(), *locale_, conv::DateOrder::DayFirst);
        const auto month_first = conv::parse_datetime(wide_.text(), *locale_, conv::DateOrder::MonthFirst);
        if (day_first && !month_first) order_ = conv::DateOrder::DayFirst;
        if (month_first && !day_first) order_ = conv::DateOrder::MonthFirst;
        if (day_first && month_first && ambiguous_date_.empty() &&
            (day_first->day != month_first->day || day_first->month != month_first->month))
            ambiguous_date_ = text;
        // No locale writes month.day.year: "04.03.2024" is day first wherever it comes from.
        const auto separator = text.find_first_not_of("0123456789");
        if (day_first && separator != std::string_view::npos && separator > 0 && text[separator] == '.')
            dotted_ = true;
    } else if ((target_ == Target::Double || target_ == Target::Single) && !type_given_ && !leading_zeros_) {
        if (plain_numbers_ && plain_decimal(text) > 0) return;  // no leading zeros
        if (conv::write_number(*options_, text, number_) == conv::NumberStatus::LeadingZeros)
            leading_zeros_.emplace(row, std::string(text));
    }
}

bool ValueConverter::settled() const noexcept {
    switch (target_) {
        case Target::Datetime: return format_ || order_;
        case Target::Double:
        case Target::Single: return type_given_ || leading_zeros_;
        default: return true;
    }
}

void ValueConverter::decide() {
    if (target_ == Target::Datetime && !format_ && !order_ && dotted_) order_ = conv::DateOrder::DayFirst;
    if (target_ == Target::Datetime && !format_ && !order_) {
        order_ = conv::locale_date_order(options_->date_locale);
        if (!ambiguous_date_.empty()) {
            const bool day_first = *order_ == conv::DateOrder::DayFirst;
            // Suggest the other order with the value's own separator.
            const auto separator = ambiguous_date_.find_first_not_of("0123456789");
            const std::string s = separator == std::string::npos ? "/" : ambiguous_date_.substr(separator, 1);
            const std::string locale =
                options_->date_locale.empty() ? "en_US" : fl::i18n::ustring_to_utf8(options_->date_locale);
            note_ = "column '" + name_ + "': dates such as '" + ambiguous_date_ + "' are read " +
                    (day_first ? "day" : "month") + " first, as --date-locale " + locale +
                    " reads them, since none of the column's first values tells day from month; "
                    "give --date-format " + name_ + "=" + (day_first ? "%m" + s + "%d" : "%d" + s + "%m") + s +
                    "%Y if they are " + (day_first ? "month" : "day") + " first";
        }
    }
    if (leading_zeros_) {
        target_ = Target::Text;
        note_ = "column '" + name_ + "' is written as text, not " + type_ + ": its values carry leading zeros (the first, '" +
                leading_zeros_->second + "', in row " + std::to_string(leading_zeros_->first) +
                "); give --type " + name_ + "=" + type_ + " to read them as numbers";
        type_ = "string";
    }
}

bool ValueConverter::convert_other(std::string_view text, Cell& cell) {
    switch (target_) {
        case Target::Text: cell = {Cell::Kind::Text, text, {}}; return true;
        case Target::Double:
        case Target::Single: return convert_number(text, cell);
        case Target::Signed:
        case Target::Unsigned: return convert_integer(text, cell);
        case Target::Datetime: return convert_datetime(text, cell);
        case Target::Duration: return convert_duration(text, cell);
    }
    return false;
}

bool ValueConverter::convert_duration(std::string_view text, Cell& cell) {
    auto value = conv::to_duration(*options_, text);
    if (!value) return false;
    converted_ = std::move(*value);
    cell = {Cell::Kind::Text, converted_, {}};
    return true;
}

bool ValueConverter::convert_number(std::string_view text, Cell& cell) {
    if (plain_numbers_ && target_ == Target::Double) {
        if (const std::size_t n = plain_decimal(text); n > 0) {
            cell = {Cell::Kind::Number, text.substr(0, n), {}};
            return true;
        }
    }
    switch (conv::write_number(*options_, text, number_)) {
        case conv::NumberStatus::Special: cell = {Cell::Kind::Text, number_, {}}; return true;
        case conv::NumberStatus::NotANumber: return false;
        case conv::NumberStatus::LeadingZeros:
            if (!type_given_) return false;
            break;
        case conv::NumberStatus::Written: break;
    }
    if (target_ == Target::Single) {
        float value = 0;
        const auto parsed = std::from_chars(number_.data(), number_.data() + number_.size(), value);
        if (parsed.ec != std::errc() || !std::isfinite(value)) return false;
        number_.resize(64);
        const auto written = value == std::trunc(value)
                                 ? std::to_chars(number_.data(), number_.data() + number_.size(), value,
                                                 std::chars_format::fixed)
                                 : std::to_chars(number_.data(), number_.data() + number_.size(), value);
        number_.resize(static_cast<std::size_t>(written.ptr - number_.data()));
    }
    cell = {Cell::Kind::Number, number_, {}};
    return true;
}

bool ValueConverter::convert_integer(std::string_view text, Cell& cell) {
    char digits[24];
    std::to_chars_result written{};
    if (target_ == Target::Unsigned) {
        const auto value = conv::to_uint64(text);
        if (!value || *value > max_) return false;
        written = std::to_chars(digits, digits + sizeof digits, *value);
    } else if (plain_numbers_ && plain_integer(text)) {
        std::int64_t value = 0;
        std::from_chars(text.data(), text.data() + text.size(), value);
        if (value < min_ || (value > 0 && static_cast<std::uint64_t>(value) > max_)) return false;
        cell = {Cell::Kind::Number, text, {}};
        return true;
    } else {
        const auto status = conv::write_number(*options_, text, number_);
        if (status != conv::NumberStatus::Written && status != conv::NumberStatus::LeadingZeros) return false;
        std::int64_t value = 0;
        const auto parsed = std::from_chars(number_.data(), number_.data() + number_.size(), value);
        if (parsed.ec != std::errc() || parsed.ptr != number_.data() + number_.size()) return false;
        if (value < min_ || (value > 0 && static_cast<std::uint64_t>(value) > max_)) return false;
        written = std::to_chars(digits, digits + sizeof digits, value);
    }
    number_.assign(digits, written.ptr);
    cell = {Cell::Kind::Number, number_, {}};
    return true;
}

bool ValueConverter::convert_datetime(std::string_view text, Cell& cell) {
    if (!format_ && conv::is_canonical_iso_datetime(text)) {
        cell = {Cell::Kind::Text, text, {}};
        return true;
    }
    wide_.assign_utf8(text);
    const auto parts = format_ ? format_->parse(wide_.text(), *locale_)
                               : conv::parse_datetime(wide_.text(), *locale_, *order_);
    if (!parts) return false;
    converted_.clear();
    conv::append_iso_datetime(converted_, *parts);
    cell = {Cell::Kind::Text, converted_, {}};
    return true;
}

}  // namespace tolven::import
