#include "import/CsvWriter.hpp"

#include <cstdint>
#include <cstring>
#include <stdexcept>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace tolven::import {

namespace {

#if defined(__SSE2__)

// The four bytes that make a field quoted, sixteen lanes each (SSE2 is part of every x86-64).
struct Specials {
    explicit Specials(char separator) noexcept
        : separator(_mm_set1_epi8(separator)), quote(_mm_set1_epi8('"')), lf(_mm_set1_epi8('\n')),
          cr(_mm_set1_epi8('\r')) {}
    // Nonzero lanes where bytes holds one of them.
    __m128i hits(__m128i bytes) const noexcept {
        return _mm_or_si128(_mm_or_si128(_mm_cmpeq_epi8(bytes, separator), _mm_cmpeq_epi8(bytes, quote)),
                            _mm_or_si128(_mm_cmpeq_epi8(bytes, lf), _mm_cmpeq_epi8(bytes, cr)));
    }
    bool none_in(__m128i bytes) const noexcept { return _mm_movemask_epi8(hits(bytes)) == 0; }
    __m128i separator, quote, lf, cr;
};

__m128i load16(const char* at) noexcept { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(at)); }
void store16(char* at, __m128i bytes) noexcept { _mm_storeu_si128(reinterpret_cast<__m128i*>(at), bytes); }

// Whether none of the n bytes at data needs quotes.
bool plain(const char* data, std::size_t n, char separator) noexcept {
    if (n < 16) {
        for (std::size_t i = 0; i < n; ++i)
            if (data[i] == separator || data[i] == '"' || data[i] == '\n' || data[i] == '\r') return false;
        return true;
    }
    // Sixteen bytes at a time, the last sixteen overlapping those before them.
    const Specials specials(separator);
    for (std::size_t i = 0; i + 16 < n; i += 16)
        if (!specials.none_in(load16(data + i))) return false;
    return specials.none_in(load16(data + n - 16));
}

// Copies the n bytes at from to to, which has room for them, and says whether none needs quotes.
// Each byte is read once, into registers both copied and tested from: a field of up to sixteen as
// two pieces that overlap (repeated, they also fill the lanes the field does not), a longer one
// sixteen at a time, the last sixteen overlapping those before them.
inline bool copy_plain(char* to, const char* from, std::size_t n, const Specials& specials) noexcept {
    if (n >= 8 && n <= 16) {
        std::uint64_t head, tail;
        std::memcpy(&head, from, 8);
        std::memcpy(&tail, from + n - 8, 8);
        std::memcpy(to, &head, 8);
        std::memcpy(to + n - 8, &tail, 8);
        return specials.none_in(_mm_set_epi64x(static_cast<long long>(tail), static_cast<long long>(head)));
    }
    if (n >= 4 && n < 8) {
        std::uint32_t head, tail;
        std::memcpy(&head, from, 4);
        std::memcpy(&tail, from + n - 4, 4);
        std::memcpy(to, &head, 4);
        std::memcpy(to + n - 4, &tail, 4);
        return specials.none_in(_mm_set_epi32(static_cast<int>(tail), static_cast<int>(head), static_cast<int>(tail),
                                              static_cast<int>(head)));
    }
    if (n > 16) {
        __m128i hits = _mm_setzero_si128();
        for (std::size_t i = 0; i + 16 < n; i += 16) {
            const __m128i bytes = load16(from + i);
            store16(to + i, bytes);
            hits = _mm_or_si128(hits, specials.hits(bytes));
        }
        const __m128i last = load16(from + n - 16);
        store16(to + n - 16, last);
        return _mm_movemask_epi8(_mm_or_si128(hits, specials.hits(last))) == 0;
    }
    if (n == 0) return true;
    // One to three bytes: the first, the middle and the last are all of them.
    const auto first = static_cast<unsigned char>(from[0]);
    const auto middle = static_cast<unsigned char>(from[n / 2]);
    const auto last = static_cast<unsigned char>(from[n - 1]);
    to[0] = static_cast<char>(first);
    to[n / 2] = static_cast<char>(middle);
    to[n - 1] = static_cast<char>(last);
    return specials.none_in(_mm_set1_epi32(static_cast<int>(first | middle << 8 | last << 16 | first << 24)));
}

#else

constexpr std::uint64_t kOnes = 0x0101010101010101ull;
constexpr std::uint64_t kHighs = 0x8080808080808080ull;

struct Specials {
    explicit Specials(char c) noexcept : separator(c) {}
    char separator;
};

// Whether any of the eight bytes in word equals the byte repeated in pattern (exact: no false hits).
bool has_byte(std::uint64_t word, std::uint64_t pattern) noexcept {
    // A byte of x is zero exactly when neither its high bit nor the carry out of its low seven bits is set.
    const std::uint64_t x = word ^ pattern;
    const std::uint64_t nonzero = ((x & ~kHighs) + ~kHighs) | x;
    return (nonzero & kHighs) != kHighs;
}

bool plain(const char* data, std::size_t n, char separator_byte) noexcept {
    // Eight bytes at a time, the last eight overlapping those before them; shorter fields byte by byte.
    const std::uint64_t separator = kOnes * static_cast<unsigned char>(separator_byte);
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
        if (c == separator_byte || c == '"' || c == '\n' || c == '\r') return false;
    }
    return true;
}

bool copy_plain(char* to, const char* from, std::size_t n, const Specials& specials) noexcept {
    OutputStream::copy(to, from, n);
    return plain(from, n, specials.separator);
}

#endif

// Writes text quoted, its quotes doubled, from to on; returns the end.
char* quoted(char* to, std::string_view text) noexcept {
    *to++ = '"';
    for (const char c : text) {
        *to++ = c;
        if (c == '"') *to++ = '"';
    }
    *to++ = '"';
    return to;
}

}  // namespace

CsvWriter::CsvWriter(OutputStream& out, char separator, std::string_view line_end)
    : out_(out), separator_(separator), line_end_{'\n', '\n'}, line_end_size_(line_end.size()) {
    if (line_end != "\n" && line_end != "\r\n") throw std::invalid_argument("a line ends in \\n or \\r\\n");
    std::memcpy(line_end_, line_end.data(), line_end.size());
}

void CsvWriter::begin(const std::vector<Column>& columns) {
    // The names quote as text values do.
    std::vector<Cell> names;
    names.reserve(columns.size());
    for (const Column& c : columns) names.push_back({Cell::Kind::Text, c.name, {}});
    write_row(names);
}

void CsvWriter::write_row(std::span<const Cell> cells) {
    if (cells.empty()) {
        out_.append(std::string_view(line_end_, line_end_size_));
        return;
    }
    // Fields are written in place, with one check of room each for the worst case instead of one per
    // piece. Each is followed by the separator, the last one's then overwritten by the line end.
    // Locals: the writes through char* could otherwise change the members, as far as the compiler knows.
    const char separator = separator_;
    const Specials specials(separator);
    char* to = out_.position();
    const char* limit = out_.limit();
    for (const Cell& cell : cells) {
        const std::string_view text = cell.kind == Cell::Kind::List ? joined(cell.items) : cell.text;
        // The field quoted with every byte a quote, the separator and the line end.
        const std::size_t most = 2 * text.size() + 5;
        if (static_cast<std::size_t>(limit - to) < most) {
            out_.commit(to);
            to = out_.room(most);
            if (to == nullptr) {
                // More than the buffer holds: through the stream.
                field(text);
                out_.put(separator);
                to = out_.room(sizeof line_end_);
                limit = out_.limit();
                continue;
            }
            limit = out_.limit();
        }
        // Numbers never need quotes; missing values are empty.
        if (cell.kind == Cell::Kind::Number || cell.kind == Cell::Kind::Missing) {
            OutputStream::copy(to, text.data(), text.size());
            to += text.size();
        } else if (copy_plain(to, text.data(), text.size(), specials)) {
            to += text.size();
        } else {
            to = quoted(to, text);
        }
        *to++ = separator;
    }
    --to;
    std::memcpy(to, line_end_, sizeof line_end_);
    out_.commit(to + line_end_size_);
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

void CsvWriter::field(std::string_view text) {
    if (plain(text.data(), text.size(), separator_)) {
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
