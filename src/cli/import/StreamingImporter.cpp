#include "cli/import/StreamingImporter.hpp"

#include <deque>
#include <limits>
#include <optional>
#include <vector>

#include "cli/import/PathTracker.hpp"
#include "cli/import/StreamReader.hpp"
#include "cli/import/node_text.hpp"

namespace tolven::cli::import {

namespace {

const char* chars(const xmlChar* s) { return reinterpret_cast<const char*>(s); }

constexpr std::size_t kNone = std::numeric_limits<std::size_t>::max();

// The matching state of one pass: rows being filled, and values whose text is still being read.
class RowAssembly {
public:
    RowAssembly(const ImportPlan& plan, RowSink& sink) : plan_(plan), sink_(sink), width_(plan.columns.size()) {
        // Absolute paths (the rows, and the columns aligned by index) are followed from the document;
        // the others from each row.
        std::vector<const PathPattern*> absolute, relative;
        if (plan.row_pattern) {
            absolute.push_back(&*plan.row_pattern);
            absolute_columns_.push_back(kNone);
        }
        for (std::size_t c = 0; c < width_; ++c) {
            const auto& column = plan.columns[c];
            if (column.kind == ColumnSource::Kind::Indexed) {
                absolute.push_back(&*column.pattern);
                absolute_columns_.push_back(c);
                indexed_.push_back(c);
            } else {
                relative.push_back(&*column.pattern);
                relative_columns_.push_back(c);
            }
        }
        absolute_.emplace(std::move(absolute));
        relative_.emplace(std::move(relative));
        absolute_->reset();
        matched_.assign(width_, 0);
        values_.resize(width_);
    }

    // False once the sink wants no more rows.
    bool open(const xmlNode* element, std::size_t depth) {
        const char* uri = element->ns != nullptr ? chars(element->ns->href) : nullptr;
        const char* local = chars(element->name);
        for (const std::size_t m : absolute_->open(depth, uri, local)) {
            const std::size_t c = absolute_columns_[m];
            if (c == kNone) {
                start_row(element, depth);
            } else {
                const std::uint64_t k = matched_[c];
                if (take(plan_.columns[c], c, k, element, depth)) ++matched_[c];
            }
        }
        if (in_row_ && depth > row_depth_)
            for (const std::size_t m : relative_->open(depth - row_depth_ - 1, uri, local))
                take_in_row(relative_columns_[m], element, depth);
        return !sink_.full();
    }

    bool close(std::size_t depth) {
        for (std::size_t i = captures_.size(); i-- > 0;) {
            if (captures_[i].depth != depth) continue;
            --row(captures_[i].row).open_captures;
            captures_.erase(captures_.begin() + static_cast<std::ptrdiff_t>(i));
        }
        if (in_row_ && depth > row_depth_) relative_->close(depth - row_depth_ - 1);
        absolute_->close(depth);
        if (in_row_ && depth == row_depth_) {
            in_row_ = false;
            row(current_row_).closed = true;
        }
        return emit_ready(false);
    }

    void text(std::size_t parent_depth, const char* content) {
        for (const Capture& c : captures_)
            if (c.depth == parent_depth) row(c.row).text[c.column].append(content);
    }

    bool capturing() const noexcept { return !captures_.empty(); }

    // At the end of the document every row that exists is complete.
    void finish() { emit_ready(true); }

private:
    struct Row {
        std::vector<std::string> text;
        std::vector<char> present;
        bool closed = false;  // the row element has ended (always true for rows made by index)
        unsigned open_captures = 0;
    };
    struct Capture {
        std::size_t column;
        std::size_t depth;  // of the element whose own text is read
        std::uint64_t row;
    };

    Row& row(std::uint64_t r) {
        while (first_ + pending_.size() <= r) {
            if (spare_.empty()) {
                pending_.push_back(Row{std::vector<std::string>(width_), std::vector<char>(width_, 0), false, 0});
            } else {
                pending_.push_back(std::move(spare_.back()));
                spare_.pop_back();
            }
            pending_.back().closed = !plan_.row_pattern;
        }
        return pending_[static_cast<std::size_t>(r - first_)];
    }

    void start_row(const xmlNode* element, std::size_t depth) {
        current_row_ = rows_started_++;
        in_row_ = true;
        row_depth_ = depth;
        row(current_row_);
        for (const std::size_t m : relative_->reset()) take_in_row(relative_columns_[m], element, depth);
    }

    void take_in_row(std::size_t column, const xmlNode* element, std::size_t depth) {
        // Within a row the first node in document order is the value.
        if (row(current_row_).present[column] == 0) take(plan_.columns[column], column, current_row_, element, depth);
    }

    // Takes the value of column for row r from element (or from its attribute). False when the
    // pattern's attribute is not there, so nothing was selected.
    bool take(const ColumnSource& source, std::size_t column, std::uint64_t r, const xmlNode* element,
              std::size_t depth) {
        if (const auto& test = source.pattern->attribute) {
            const xmlAttr* a =
                first_attribute(element, [&test](const char* u, const char* l) { return test->matches(u, l); });
            if (a == nullptr) return false;
            Row& target = row(r);
            target.present[column] = 1;
            target.text[column].assign(own_text(reinterpret_cast<const xmlNode*>(a), scratch_));
            return true;
        }
        Row& target = row(r);
        target.present[column] = 1;
        ++target.open_captures;
        captures_.push_back({column, depth, r});
        return true;
    }

    // Writes the rows at the front that can no longer change. Returns false once the sink is full.
    bool emit_ready(bool at_end) {
        while (!pending_.empty() && !sink_.full()) {
            Row& front = pending_.front();
            const std::uint64_t r = first_;
            if (front.open_captures > 0) break;
            if (plan_.row_pattern && !front.closed) {
                if (!at_end) break;
                // Rows only columns aligned by index reached were never started: there are no more rows.
                if (r >= rows_started_) break;
            }
            if (!at_end) {
                bool waiting = false;
                for (const std::size_t c : indexed_) waiting = waiting || matched_[c] <= r;
                if (waiting) break;
            }
            for (std::size_t c = 0; c < width_; ++c) values_[c] = {front.present[c] != 0, front.text[c]};
            sink_.accept(values_);
            for (std::size_t c = 0; c < width_; ++c) {
                front.text[c].clear();
                front.present[c] = 0;
            }
            front.closed = false;
            spare_.push_back(std::move(front));
            pending_.pop_front();
            ++first_;
        }
        return !sink_.full();
    }

    const ImportPlan& plan_;
    RowSink& sink_;
    std::size_t width_;
    std::optional<PathTracker> absolute_;
    std::optional<PathTracker> relative_;
    std::vector<std::size_t> absolute_columns_;  // per absolute pattern: its column, kNone for the rows
    std::vector<std::size_t> relative_columns_;
    std::vector<std::size_t> indexed_;     // the columns aligned by index
    std::vector<std::uint64_t> matched_;   // per indexed column: nodes selected so far
    std::deque<Row> pending_;              // rows first_, first_ + 1, ... not yet written
    std::vector<Row> spare_;               // written rows, kept for their buffers
    std::uint64_t first_ = 0;
    std::uint64_t rows_started_ = 0;
    std::uint64_t current_row_ = 0;
    bool in_row_ = false;
    std::size_t row_depth_ = 0;
    std::vector<Capture> captures_;
    std::vector<RawValue> values_;
    std::string scratch_;
};

}  // namespace

void StreamingImporter::run(InputDocument& input, RowSink& sink, ProgressBar& progress) const {
    RowAssembly rows(plan_, sink);
    StreamReader reader(input);
    std::size_t depth = 0;  // elements open
    bool more = !sink.full();
    for (std::uint32_t count = 0; more && reader.next(); ++count) {
        switch (reader.type()) {
            case XML_READER_TYPE_ELEMENT: {
                more = rows.open(reader.node(), depth);
                if (reader.empty_element()) more = rows.close(depth) && more;
                else ++depth;
                break;
            }
            case XML_READER_TYPE_END_ELEMENT: more = rows.close(--depth); break;
            case XML_READER_TYPE_TEXT:
            case XML_READER_TYPE_CDATA:
            case XML_READER_TYPE_WHITESPACE:
            case XML_READER_TYPE_SIGNIFICANT_WHITESPACE:
                if (rows.capturing() && depth > 0) rows.text(depth - 1, reader.value());
                break;
            default: break;
        }
        if ((count & 0x3FFF) == 0) progress.update(input.consumed(), sink.rows());
    }
    if (more) rows.finish();
}

}  // namespace tolven::cli::import
