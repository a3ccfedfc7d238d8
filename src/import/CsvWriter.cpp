#include "import/CsvWriter.hpp"

#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace tolven::import {

CsvWriter::CsvWriter(OutputStream& out, char separator, std::string_view line_end)
    : out_(out), separator_(separator), line_end_(line_end) {}

void CsvWriter::begin(const std::vector<Column>& columns) {
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (i > 0) out_.put(separator_);
        field(columns[i].name);
    }
    out_.append(line_end_);
}

void CsvWriter::write_row(std::span<const Cell> cells) {
    for (std::size_t i = 0; i < cells.size(); ++i) {
        if (i > 0) out_.put(separator_);
        if (cells[i].kind == Cell::Kind::Text) field(cells[i].text);
        else if (cells[i].kind == Cell::Kind::List) field(joined(cells[i].items));
        else out_.append(cells[i].text);  // numbers never need quotes; missing values are empty
    }
    out_.append(line_end_);
}

void CsvWriter::end() {}

std::string_view CsvWriter::joined(std::span<const Cell> items) {
    joined_.clear();
    for (std::size_t k = 0; k < items.size(); ++k) {
        if (k > 0) joined_.append("; ");
        joined_.append(items[k].text);
    }
    return joined_;
}

namespace {

constexpr std::uint64_t kOnes = 0x0101010101010101ull;
constexpr std::uint64_t kHighs = 0x8080808080808080ull;

// Whether any of the eight bytes in word equals the byte repeated in pattern (exact: no false hits).
bool has_byte(std::uint64_t word, std::uint64_t pattern) noexcept {
    // A byte of x is zero exactly when neither its high bit nor the carry out of its low seven bits is set.
    const std::uint64_t x = word ^ pattern;
    const std::uint64_t nonzero = ((x & ~kHighs) + ~kHighs) | x;
    return (nonzero & kHighs) != kHighs;
}

}  // namespace

bool CsvWriter::plain(std::string_view text) const noexcept {
    const std::size_t n = text.size();
    const char* data = text.data();
#if defined(__SSE2__)
    // Sixteen bytes at a time (SSE2 is part of every x86-64), the last sixteen overlapping those
    // before them: most fields hold no special character.
    if (n >= 16) {
        const __m128i separator = _mm_set1_epi8(separator_);
        const __m128i quote = _mm_set1_epi8('"');
        const __m128i lf = _mm_set1_epi8('\n');
        const __m128i cr = _mm_set1_epi8('\r');
        const auto clean = [&](std::size_t at) {
            const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(data + at));
            const __m128i hits = _mm_or_si128(_mm_or_si128(_mm_cmpeq_epi8(bytes, separator), _mm_cmpeq_epi8(bytes, quote)),
                                              _mm_or_si128(_mm_cmpeq_epi8(bytes, lf), _mm_cmpeq_epi8(bytes, cr)));
            return _mm_movemask_epi8(hits) == 0;
        };
        for (std::size_t i = 0; i + 16 < n; i += 16)
            if (!clean(i)) return false;
        return clean(n - 16);
    }
#endif
    // Eight bytes at a time, the last eight overlapping those before them; shorter fields byte by byte.
    const std::uint64_t separator = kOnes * static_cast<unsigned char>(separator_);
    const auto clean = [&](std::size_t at) {
        std::uint64_t word;
        std::memcpy(&word, data + at, sizeof word);
        return !(has_byte(word, separator) || has_byte(word, kOnes * '"') || has_byte(word, kOnes * '\n') ||
                 has_byte(word, kOnes * '\r'));
    };
    if (n >= 8) {
        for (std::size_t i = 0; i + 8 < n; i += 8)
            if (!clean(i)) return false;
        return clean(n - 8);
    }
    for (std::size_t i = 0; i < n; ++i) {
        const char c = data[i];
        if (c == separator_ || c == '"' || c == '\n' || c == '\r') return false;
    }
    return true;
}

void CsvWriter::field(std::string_view text) {
    if (plain(text)) {
        out_.append(text);
        return;
    }
    out_.put('"');
    std::size_t start = 0;
    for (std::size_t q = text.find('"'); q != std::string_view::npos; q = text.find('"', q + 1)) {
        out_.append(text.substr(start, q + 1 - start));
        out_.put('"');
        start = q + 1;
    }
    out_.append(text.substr(start));
    out_.put('"');
}

}  // namespace tolven::import
