#include "import/RowSink.hpp"

#include <algorithm>

#include "import/errors.hpp"
#include "text/textio/trim.hpp"

namespace tolven::import {

using io::text::textio::trim_whitespace;

RowSink::RowSink(const std::vector<Column>& columns, const io::text::typedetection::TypeAnalyzerOptions& options,
                 TableWriter& writer, Settings settings)
    : columns_(columns), counts_(columns.size()), cells_(columns.size()), writer_(writer), settings_(settings) {
    converters_.reserve(columns_.size());
    for (const auto& c : columns_) converters_.emplace_back(c, options);
}

bool RowSink::accept(const RowValues& values) {
    if (full()) return false;
    ++rows_;
    if (deciding_) hold(values);
    else write(values);
    return !full();
}

void RowSink::end() {
    if (deciding_) decide();
    writer_.end();
}

void RowSink::hold(const RowValues& values) {
    if (held_rows_++ == 0) {
        // Reserved, the held values are never copied as they grow; pages are only touched as they fill.
        held_text_.reserve(settings_.decision_bytes);
        held_sizes_.reserve(std::min(settings_.decision_rows * values.width(), kMostReservedWords));
    }
    for (std::size_t c = 0; c < values.width(); ++c) {
        const std::size_t count = values.count(c);
        const std::size_t n = settings_.all_repeated ? count : std::min<std::size_t>(count, 1);
        if (count == 1 && values.value(c, 0).size() <= kLargestSingle) {
            held_sizes_.push_back(static_cast<std::uint32_t>(values.value(c, 0).size() << 1 | 1));
        } else {
            held_sizes_.push_back(static_cast<std::uint32_t>(count << 1));
            for (std::size_t k = 0; k < count; ++k) {
                const std::uint64_t size = values.value(c, k).size();
                held_sizes_.push_back(static_cast<std::uint32_t>(size));
                held_sizes_.push_back(static_cast<std::uint32_t>(size >> 32));
            }
        }
        for (std::size_t k = 0; k < count; ++k) {
            const std::string_view value = values.value(c, k);
            held_text_.append(value);
            const std::string_view text = trim_whitespace(value);
            if (k < n && !text.empty()) converters_[c].observe(text, rows_);
        }
    }
    // A converter once settled stays so: only those from the first unsettled one on are asked.
    while (unsettled_ < converters_.size() && converters_[unsettled_].settled()) ++unsettled_;
    if (unsettled_ == converters_.size() || full() || held_rows_ >= settings_.decision_rows ||
        held_text_.size() >= settings_.decision_bytes)
        decide();
}

namespace {

// A held row as write() reads it. Per column, held_sizes_ has one word (size << 1 | 1) for a
// single value, else (count << 1) and each value's size in two words, low half first.
class HeldRow {
public:
    struct Column {
        std::size_t word;    // its first word
        std::size_t offset;  // where its first value starts in the text
    };
    // columns is scratch space, kept from row to row.
    HeldRow(std::string_view text, std::size_t offset, const std::uint32_t* words, std::size_t width,
            std::vector<Column>& columns)
        : text_(text), words_(words), columns_(columns) {
        columns_.resize(width);
        std::size_t w = 0;
        for (Column& c : columns_) {
            c = {w, offset};
            const std::size_t n = count_at(w++);
            if (single(c)) offset += words_[c.word] >> 1;
            else
                for (std::size_t k = 0; k < n; ++k, w += 2) offset += size_at(w);
        }
        words_used_ = w;
        end_ = offset;
    }
    std::size_t count(std::size_t c) const noexcept { return count_at(columns_[c].word); }
    std::string_view value(std::size_t c, std::size_t k) const noexcept {
        const Column& column = columns_[c];
        if (single(column)) return text_.substr(column.offset, words_[column.word] >> 1);
        std::size_t offset = column.offset;
        for (std::size_t j = 0; j < k; ++j) offset += size_at(column.word + 1 + 2 * j);
        return text_.substr(offset, size_at(column.word + 1 + 2 * k));
    }
    std::size_t words_used() const noexcept { return words_used_; }
    std::size_t end() const noexcept { return end_; }

private:
    bool single(const Column& c) const noexcept { return (words_[c.word] & 1) != 0; }
    std::size_t count_at(std::size_t w) const noexcept { return (words_[w] & 1) != 0 ? 1 : words_[w] >> 1; }
    std::size_t size_at(std::size_t w) const noexcept {
        return static_cast<std::size_t>(words_[w] | static_cast<std::uint64_t>(words_[w + 1]) << 32);
    }

    std::string_view text_;
    const std::uint32_t* words_;
    std::vector<Column>& columns_;
    std::size_t words_used_ = 0;
    std::size_t end_ = 0;
};

}  // namespace

void RowSink::decide() {
    for (std::size_t c = 0; c < columns_.size(); ++c) {
        converters_[c].decide();
        columns_[c].type = converters_[c].type();
    }
    deciding_ = false;
    writer_.begin(columns_);
    std::size_t word = 0, offset = 0;
    std::vector<HeldRow::Column> columns;
    for (std::size_t r = 0; r < held_rows_; ++r) {
        const HeldRow row(held_text_, offset, held_sizes_.data() + word, columns_.size(), columns);
        write(row);
        word += row.words_used();
        offset = row.end();
    }
    std::string().swap(held_text_);
    std::vector<std::uint32_t>().swap(held_sizes_);
}

// Inline: it runs for every value written.
inline void RowSink::convert(std::size_t column, std::string_view raw, std::uint64_t row, Cell& cell) {
    const std::string_view text = trim_whitespace(raw);
    if (text.empty()) {
        cell = {};
        return;
    }
    if (!converters_[column].convert(text, cell)) [[unlikely]]
        unconvertible(column, text, row, cell);
}

void RowSink::unconvertible(std::size_t column, std::string_view text, std::uint64_t row, Cell& cell) {
    Counts& counts = counts_[column];
    if (counts.unconvertible++ == 0) counts.first_unconvertible.emplace(row, std::string(text));
    if (settings_.strict)
        vxErrMsgId(TOLVEN::import::UnconvertibleValue(columns_[column].name, std::to_string(row), std::string(text),
                                                      converters_[column].type()));
    cell = {Cell::Kind::Text, text, {}};
}

template <class Values>
void RowSink::write(const Values& values) {
    const std::uint64_t row = ++written_;
    // Only a row with a list fills its bookkeeping.
    if (!lists_.empty()) {
        list_text_.clear();
        pieces_.clear();
        lists_.clear();
    }
    Cell* const cells = cells_.data();
    const std::size_t width = cells_.size();
    for (std::size_t c = 0; c < width; ++c) {
        const std::size_t n = values.count(c);
        if (n == 0) {
            cells[c] = {};
            ++counts_[c].missing;
            continue;
        }
        if (n > 1) [[unlikely]] {
            ++counts_[c].repeated;
            if (settings_.all_repeated) {
                lists_.emplace_back(c, pieces_.size());
                for (std::size_t k = 0; k < n; ++k) {
                    Cell cell;
                    convert(c, values.value(c, k), row, cell);
                    pieces_.push_back({cell.kind, list_text_.size(), cell.text.size()});
                    list_text_.append(cell.text);
                }
                continue;
            }
        }
        convert(c, values.value(c, 0), row, cells[c]);
        if (cells[c].kind == Cell::Kind::Missing) ++counts_[c].missing;
    }
    if (!lists_.empty()) finish_lists();
    writer_.write_row(cells_);
}

void RowSink::finish_lists() {
    // The items point into list_text_ only now that it no longer grows; reserved, they do not move.
    list_items_.clear();
    list_items_.reserve(pieces_.size());
    for (std::size_t l = 0; l < lists_.size(); ++l) {
        const auto [c, first] = lists_[l];
        const std::size_t end = l + 1 < lists_.size() ? lists_[l + 1].second : pieces_.size();
        const std::size_t start = list_items_.size();
        for (std::size_t p = first; p < end; ++p)
            list_items_.push_back({pieces_[p].kind, std::string_view(list_text_).substr(pieces_[p].offset, pieces_[p].size), {}});
        cells_[c] = {Cell::Kind::List, {}, std::span<const Cell>(list_items_).subspan(start, end - first)};
    }
}

}  // namespace tolven::import
