#include "ColumnBuilder.hpp"

#include <charconv>
#include <cmath>
#include <limits>

namespace tolven::python {

namespace {

constexpr std::int64_t kNanosPerSecond = 1'000'000'000;

// Reads exactly count digits at text[pos...] into value; false when they are not all digits.
bool digits(std::string_view text, std::size_t& pos, std::size_t count, std::int64_t& value) {
    if (pos + count > text.size()) return false;
    const auto r = std::from_chars(text.data() + pos, text.data() + pos + count, value);
    if (r.ec != std::errc() || r.ptr != text.data() + pos + count) return false;
    pos += count;
    return true;
}

bool expect(std::string_view text, std::size_t& pos, char c) {
    if (pos >= text.size() || text[pos] != c) return false;
    ++pos;
    return true;
}

// The nanoseconds of a fraction ".125" at pos (more than nine digits are cut); 0 when there is none.
bool fraction(std::string_view text, std::size_t& pos, std::int64_t& nanos) {
    nanos = 0;
    if (pos >= text.size() || (text[pos] != '.' && text[pos] != ',')) return true;
    ++pos;
    std::int64_t scale = kNanosPerSecond;
    const std::size_t first = pos;
    for (; pos < text.size() && text[pos] >= '0' && text[pos] <= '9'; ++pos) {
        if (scale > 1) {
            scale /= 10;
            nanos += (text[pos] - '0') * scale;
        }
    }
    return pos > first;
}

// Days from 1970-01-01 to a proleptic Gregorian date.
std::int64_t days_from_civil(std::int64_t y, std::int64_t m, std::int64_t d) {
    y -= m <= 2;
    const std::int64_t era = (y >= 0 ? y : y - 399) / 400;
    const std::int64_t yoe = y - era * 400;
    const std::int64_t doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
    const std::int64_t doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + doe - 719468;
}

// seconds * 1e9 + nanos, or None on overflow.
std::optional<std::int64_t> to_nanos(std::int64_t seconds, std::int64_t nanos) {
    std::int64_t out = 0;
    if (__builtin_mul_overflow(seconds, kNanosPerSecond, &out) || __builtin_add_overflow(out, nanos, &out))
        return std::nullopt;
    // The smallest value is pandas' NaT: an instant cannot take it.
    if (out == std::numeric_limits<std::int64_t>::min()) return std::nullopt;
    return out;
}

}  // namespace

std::optional<std::int64_t> iso_datetime_nanos(std::string_view text) noexcept {
    std::size_t pos = 0;
    const bool negative_year = !text.empty() && text[0] == '-';
    if (negative_year) ++pos;
    std::int64_t year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0, nanos = 0, offset = 0;
    if (!digits(text, pos, 4, year) || !expect(text, pos, '-') || !digits(text, pos, 2, month) ||
        !expect(text, pos, '-') || !digits(text, pos, 2, day))
        return std::nullopt;
    if (negative_year) year = -year;
    if (pos < text.size()) {
        if (!expect(text, pos, 'T') || !digits(text, pos, 2, hour) || !expect(text, pos, ':') ||
            !digits(text, pos, 2, minute) || !expect(text, pos, ':') || !digits(text, pos, 2, second) ||
            !fraction(text, pos, nanos))
            return std::nullopt;
        if (pos < text.size() && text[pos] == 'Z') {
            ++pos;
        } else if (pos < text.size() && (text[pos] == '+' || text[pos] == '-')) {
            const std::int64_t sign = text[pos++] == '-' ? -1 : 1;
            std::int64_t zone_hours = 0, zone_minutes = 0;
            if (!digits(text, pos, 2, zone_hours) || !expect(text, pos, ':') || !digits(text, pos, 2, zone_minutes))
                return std::nullopt;
            offset = sign * (zone_hours * 3600 + zone_minutes * 60);
        }
    }
    if (pos != text.size() || month < 1 || month > 12 || day < 1 || day > 31) return std::nullopt;
    const std::int64_t seconds = days_from_civil(year, month, day) * 86400 + hour * 3600 + minute * 60 + second - offset;
    return to_nanos(seconds, nanos);
}

std::optional<std::int64_t> duration_nanos(std::string_view text) noexcept {
    std::size_t pos = 0;
    const bool negative = !text.empty() && text[0] == '-';
    if (negative) ++pos;
    const std::size_t colon = text.find(':', pos);
    if (colon == std::string_view::npos || colon == pos) return std::nullopt;
    std::int64_t hours = 0, minutes = 0, seconds = 0, nanos = 0;
    if (!digits(text, pos, colon - pos, hours) || !expect(text, pos, ':') || !digits(text, pos, 2, minutes) ||
        !expect(text, pos, ':') || !digits(text, pos, 2, seconds) || !fraction(text, pos, nanos) || pos != text.size())
        return std::nullopt;
    std::int64_t total = 0;
    if (__builtin_mul_overflow(hours, 3600, &total) || __builtin_add_overflow(total, minutes * 60 + seconds, &total))
        return std::nullopt;
    const auto out = to_nanos(total, nanos);
    if (!out) return std::nullopt;
    return negative ? -*out : *out;
}

void ColumnBuilder::begin(const std::vector<xml::Column>& columns) {
    for (const auto& c : columns) {
        ColumnData& data = columns_.emplace_back();
        data.name = c.name;
        data.type = c.type;
        data.value_type = xml::value_type(c.type);
    }
}

void ColumnBuilder::append_text(ColumnData& column, const xml::Cell& cell) {
    column.text.append(cell.text);
    column.ends.push_back(column.text.size());
}

void ColumnBuilder::row(std::span<const xml::Cell> cells) {
    for (std::size_t i = 0; i < cells.size(); ++i) {
        ColumnData& c = columns_[i];
        const xml::Cell& cell = cells[i];
        const bool missing = cell.missing();
        switch (c.value_type) {
            case xml::ValueType::Double: {
                // Numbers, and the texts "NaN", "Inf" and "-Inf", which from_chars reads too.
                double value = std::numeric_limits<double>::quiet_NaN();
                if (!missing) std::from_chars(cell.text.data(), cell.text.data() + cell.text.size(), value);
                c.doubles.push_back(value);
                break;
            }
            case xml::ValueType::UInt64: {
                std::uint64_t value = 0;
                if (!missing) std::from_chars(cell.text.data(), cell.text.data() + cell.text.size(), value);
                c.uints.push_back(value);
                c.missing.push_back(missing);
                break;
            }
            case xml::ValueType::Datetime:
            case xml::ValueType::Duration: {
                // The text is kept as well, for the column to fall back to when a value does not fit.
                std::optional<std::int64_t> value;
                if (!missing) {
                    value = c.value_type == xml::ValueType::Datetime ? iso_datetime_nanos(cell.text)
                                                                     : duration_nanos(cell.text);
                    if (!value) c.as_text = true;
                }
                c.nanos.push_back(value.value_or(std::numeric_limits<std::int64_t>::min()));
                c.missing.push_back(missing);
                append_text(c, cell);
                break;
            }
            case xml::ValueType::Text:
                c.missing.push_back(missing);
                append_text(c, cell);
                break;
        }
    }
    ++rows_;
}

}  // namespace tolven::python
