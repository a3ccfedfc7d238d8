#include "import/StreamingImporter.hpp"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <deque>
#include <functional>
#include <limits>
#include <optional>
#include <vector>

#include "import/AttributeIndex.hpp"
#include "import/EventPass.hpp"
#include "import/PathTracker.hpp"
#include "import/RowValues.hpp"

namespace tolven::import {

namespace {

namespace parser = io::xml::common::parser;
using parser::Attribute;
using parser::ElementEvent;

constexpr std::size_t kNone = std::numeric_limits<std::size_t>::max();

// An attribute's name test with its names interned in the parse's dictionary: compared by pointer.
struct InternedName {
    InternedName() = default;
    InternedName(const NameTest& test, const std::function<const char*(std::string_view)>& intern)
        : kind(test.kind), bound(true) {
        if (kind != NameTest::Kind::Any) local = intern(test.local);
        if (test.uri) uri = intern(*test.uri);
    }
    bool matches(const char* node_uri, const char* node_local) const {
        return kind == NameTest::Kind::Any ||
               (node_local == local && (kind == NameTest::Kind::LocalName || node_uri == uri));
    }

    NameTest::Kind kind = NameTest::Kind::Any;
    const char* local = nullptr;
    const char* uri = nullptr;  // none: in no namespace
    bool bound = false;
};

// The matching state of one pass: rows being filled, and values whose text is still being read.
class RowAssembly {
public:
    RowAssembly(const ImportPlan& plan, RowSink& sink) : plan_(plan), sink_(sink), width_(plan.columns.size()) {
        // Absolute paths (the rows, and the columns read from the whole document) are followed from
        // the document; the others from each row.
        std::vector<const PathPattern*> absolute, relative;
        if (plan.row_pattern) {
            absolute.push_back(&*plan.row_pattern);
            absolute_columns_.push_back(kNone);
        }
        for (std::size_t c = 0; c < width_; ++c) {
            const auto& column = plan.columns[c];
            if (column.kind != ColumnSource::Kind::RowRelative) {
                absolute.push_back(&*column.pattern);
                absolute_columns_.push_back(c);
                if (column.kind == ColumnSource::Kind::Indexed) indexed_.push_back(c);
            } else {
                relative.push_back(&*column.pattern);
                relative_columns_.push_back(c);
            }
        }
        direct_ = std::all_of(relative.begin(), relative.end(), [](const PathPattern* p) {
            return p->elements.empty() ||
                   (p->elements.size() == 1 && p->elements[0].position == 0 && p->elements[0].name.kind != NameTest::Kind::Any);
        });
        rows_only_ = plan.row_pattern && absolute.size() == 1;
        absolute_.emplace(std::move(absolute));
        relative_.emplace(std::move(relative));
        absolute_->reset();
        if (direct_) base_matches_ = relative_->reset();
        matched_.assign(width_, 0);
        attributes_.resize(width_);
        attribute_hints_.assign(width_, 0);
    }

    // Names are compared by pointer from now on: those of the parse that intern stands for.
    void bind(const std::function<const char*(std::string_view)>& intern) {
        absolute_->bind(intern);
        relative_->bind(intern);
        if (direct_) index_children(intern);
        for (std::size_t c = 0; c < width_; ++c)
            if (const auto& test = plan_.columns[c].pattern->attribute) attributes_[c] = InternedName(*test, intern);
    }

    // False once the sink wants no more rows.
    bool open(const ElementEvent& element, std::size_t depth) {
        attribute_index_.forget();
        const char* uri = element.uri;
        const char* local = element.local;
        for (const std::size_t m : absolute_->open(depth, uri, local)) {
            const std::size_t c = absolute_columns_[m];
            if (c == kNone) {
                start_row(element, depth);
            } else if (plan_.columns[c].kind == ColumnSource::Kind::InRow) {
                // A node outside every row is not read.
                if (in_row_) take(plan_.columns[c], c, current_row_, element, depth);
            } else {
                const std::uint64_t k = matched_[c];
                if (take(plan_.columns[c], c, k, element, depth)) ++matched_[c];
            }
        }
        if (in_row_ && depth > row_depth_) {
            if (direct_) {
                if (depth == row_depth_ + 1) open_child(element, depth);
            } else {
                for (const std::size_t m : relative_->open(depth - row_depth_ - 1, uri, local))
                    take_in_row(relative_columns_[m], element, depth);
            }
        }
        return !sink_.full();
    }

    bool close(std::size_t depth) {
        for (std::size_t i = captures_.size(); i-- > 0;) {
            if (captures_[i].depth != depth) continue;
            --captures_[i].row->open_captures;
            captures_.erase(captures_.begin() + static_cast<std::ptrdiff_t>(i));
        }
        if (in_row_ && depth > row_depth_ && !direct_) relative_->close(depth - row_depth_ - 1);
        absolute_->close(depth);
        if (in_row_ && depth == row_depth_) {
            in_row_ = false;
            row(current_row_).closed = true;
        } else if (rows_only_) {
            // Every value lies in its row: a row is ready when it closes, not before.
            return !sink_.full();
        }
        return emit_ready(false);
    }

    // A value is its element's string value: the text anywhere inside it, in document order.
    void text(std::size_t parent_depth, std::string_view content) {
        for (const Capture& c : captures_)
            if (c.depth <= parent_depth) c.row->values.text(c.column, c.k).append(content);
    }

    bool capturing() const noexcept { return !captures_.empty(); }

    // At the end of the document every row that exists is complete.
    void finish() { emit_ready(true); }

private:
    struct Row {
        RowValues values;
        bool closed = false;  // the row element has ended (always true for rows made by index)
        unsigned open_captures = 0;
    };
    struct Capture {
        std::size_t column;
        std::size_t depth;  // of the element whose text is read
        // Held by address: a row is not written while it has captures open, and the rows of a
        // deque stay where they are as others are added at the back or taken from the front.
        Row* row;
        std::size_t k;  // which of the column's values in the row
    };

    Row& row(std::uint64_t r) {
        while (first_ + pending_.size() <= r) {
            if (spare_.empty()) {
                pending_.push_back(Row{RowValues(width_), false, 0});
            } else {
                pending_.push_back(std::move(spare_.back()));
                spare_.pop_back();
            }
            pending_.back().closed = !plan_.row_pattern;
        }
        return pending_[static_cast<std::size_t>(r - first_)];
    }

    void start_row(const ElementEvent& element, std::size_t depth) {
        current_row_ = rows_started_++;
        in_row_ = true;
        row_depth_ = depth;
        current_ = &row(current_row_);
        for (const std::size_t m : direct_ ? base_matches_ : relative_->reset())
            take_in_row(relative_columns_[m], element, depth);
    }

    // The direct table, once names are interned: per child name, the columns that take such a child
    // (or its attribute), in column order as the tracker would give them.
    void index_children(const std::function<const char*(std::string_view)>& intern) {
        std::vector<std::pair<const char*, ChildColumn>> entries;
        for (std::size_t m = 0; m < relative_columns_.size(); ++m) {
            const std::size_t c = relative_columns_[m];
            const PathPattern& pattern = *plan_.columns[c].pattern;
            if (pattern.elements.empty()) continue;
            const NameTest& name = pattern.elements[0].name;
            entries.push_back({intern(name.local),
                               {c, name.kind == NameTest::Kind::Qualified, name.uri ? intern(*name.uri) : nullptr}});
        }
        std::size_t size = 2;
        while (size < 2 * entries.size()) size *= 2;
        child_slots_.assign(size, {});
        child_columns_.clear();
        for (const auto& [local, entry] : entries) {
            std::size_t at = child_slot(local);
            while (child_slots_[at].local != nullptr && child_slots_[at].local != local) at = (at + 1) & (size - 1);
            child_slots_[at].local = local;
        }
        // Each name's columns lie together, in column order.
        for (ChildSlot& slot : child_slots_) {
            if (slot.local == nullptr) continue;
            slot.first = static_cast<std::uint32_t>(child_columns_.size());
            for (const auto& [local, entry] : entries)
                if (local == slot.local) child_columns_.push_back(entry);
            slot.count = static_cast<std::uint32_t>(child_columns_.size() - slot.first);
        }
    }

    std::size_t child_slot(const char* local) const noexcept { return PathTracker::slot(local, child_slots_.size()); }

    // A child of the row opens: one probe finds the columns it holds values of.
    void open_child(const ElementEvent& element, std::size_t depth) {
        const std::size_t mask = child_slots_.size() - 1;
        for (std::size_t at = child_slot(element.local); child_slots_[at].local != nullptr; at = (at + 1) & mask) {
            const ChildSlot& slot = child_slots_[at];
            if (slot.local != element.local) continue;
            for (std::uint32_t i = slot.first; i < slot.first + slot.count; ++i) {
                const ChildColumn& entry = child_columns_[i];
                if (!entry.qualified || entry.uri == element.uri) take_in_row(entry.column, element, depth);
            }
            return;
        }
    }

    // Every node of a row that matches is a value of the row, in document order.
    void take_in_row(std::size_t column, const ElementEvent& element, std::size_t depth) {
        take(plan_.columns[column], column, current_row_, element, depth);
    }

    // The value of column's attribute test on element; none when element has no such attribute.
    // An element read by many attribute columns is indexed once, so that it costs linear time.
    std::optional<std::string_view> attribute_value(std::size_t column, const NameTest& test,
                                                    const ElementEvent& element) {
        const InternedName& name = attributes_[column];
        if (!name.bound) return element.find_attribute([&test](const char* u, const char* l) { return test.matches(u, l); });
        int& hint = attribute_hints_[column];
        if (name.kind == NameTest::Kind::Qualified && hint < element.attribute_count) {
            // An element has one attribute of a name at most, mostly where the last row had it.
            const Attribute a = element.attribute(hint);
            if (a.local == name.local && a.uri == name.uri) return a.value;
        }
        int found = -1;
        if (name.kind != NameTest::Kind::Any &&
            static_cast<std::size_t>(element.attribute_count) > AttributeIndex::kScanLimit) {
            found = attribute_index_.find(element, name.local, name.uri, name.kind == NameTest::Kind::Qualified);
        } else {
            for (int i = 0; i < element.attribute_count && found < 0; ++i) {
                const Attribute a = element.attribute(i);
                if (name.matches(a.uri, a.local)) found = i;
            }
        }
        if (found < 0) return std::nullopt;
        hint = found;
        return element.attribute(found).value;
    }

    // Takes a value of column for row r from element (or from its attribute). False when the
    // pattern's attribute is not there, so nothing was selected.
    bool take(const ColumnSource& source, std::size_t column, std::uint64_t r, const ElementEvent& element,
              std::size_t depth) {
        if (const auto& test = source.pattern->attribute) {
            const auto value = attribute_value(column, *test, element);
            if (!value) return false;
            Row& target = in_row_ && r == current_row_ ? *current_ : row(r);
            target.values.add(column).assign(*value);
            return true;
        }
        // Most values are of the row being read: it is at hand, not looked up.
        Row& target = in_row_ && r == current_row_ ? *current_ : row(r);
        target.values.add(column);
        ++target.open_captures;
        captures_.push_back({column, depth, &target, target.values.count(column) - 1});
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
            sink_.accept(front.values);
            front.values.clear();
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
    Row* current_ = nullptr;  // row current_row_ while in_row_ (rows of a deque stay in place)
    std::size_t row_depth_ = 0;
    std::vector<Capture> captures_;
    std::vector<InternedName> attributes_;  // per column: its attribute's name, once bound
    std::vector<int> attribute_hints_;      // per column: where its attribute was last found
    // Direct mode: every relative column is the row, an attribute of it, or a child named without a
    // position or wildcard (or that child's attribute), so the children are found by name in one
    // table instead of by the tracker; most tables are so.
    struct ChildColumn {
        std::size_t column;
        bool qualified;   // the namespace must match too
        const char* uri;  // interned; null: in no namespace
    };
    struct ChildSlot {
        const char* local = nullptr;  // null: empty
        std::uint32_t first = 0, count = 0;
    };
    bool direct_ = false;
    bool rows_only_ = false;  // every column is read within the row
    std::vector<std::size_t> base_matches_;  // the patterns the row itself matches
    std::vector<ChildSlot> child_slots_;     // open addressing on the interned local name
    std::vector<ChildColumn> child_columns_;
    AttributeIndex attribute_index_;        // the attributes of the element being opened, when many
};

// The parser's events as RowAssembly takes them: element depths, and text for the element it is in.
// The survey, when there is one, sees every event first; called directly, not through the handler
// interface, as it is on the path of every event.
class ImportEvents final : public parser::SaxHandler {
public:
    ImportEvents(RowAssembly& rows, ColumnSurvey* survey) : rows_(rows), survey_(survey) {}
    bool start_element(const ElementEvent& element) override {
        if (survey_ != nullptr) survey_->start_element(element);
        return rows_.open(element, depth_++);
    }
    bool end_element() override {
        if (survey_ != nullptr) survey_->end_element();
        return rows_.close(--depth_);
    }
    bool text(std::string_view text) override {
        if (survey_ != nullptr) survey_->text(text);
        if (depth_ > 0 && rows_.capturing()) rows_.text(depth_ - 1, text);
        return true;
    }

private:
    RowAssembly& rows_;
    ColumnSurvey* survey_;
    std::size_t depth_ = 0;  // elements open
};

}  // namespace

void StreamingImporter::run(InputDocument& input, RowSink& sink, Progress* progress) const {
    if (sink.full()) return;
    RowAssembly rows(plan_, sink);
    ImportEvents events(rows, survey_);
    // In parallel the sink counts rows on the worker: they are published after each batch for the
    // progress shown on this thread.
    std::atomic<std::uint64_t> rows_written = 0;
    EventPass pass;
    pass.parallel = parallel_;
    pass.bind = [&](const std::function<const char*(std::string_view)>& intern) {
        rows.bind(intern);
        if (survey_ != nullptr) survey_->bind(intern);
    };
    if (progress != nullptr)
        pass.after_chunk = [&](std::uint64_t input_bytes) {
            progress->update(input_bytes, parallel_ ? rows_written.load(std::memory_order_relaxed) : sink.rows());
        };
    pass.after_batch = [&] { rows_written.store(sink.rows(), std::memory_order_relaxed); };
    pass.run(input, settings_, events);
    if (!sink.full()) rows.finish();
}

}  // namespace tolven::import
