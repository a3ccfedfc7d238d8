#include "import/TreeImporter.hpp"

#include <libxml/xpathInternals.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <unordered_map>

#include "import/AttributeIndex.hpp"
#include "import/errors.hpp"
#include "import/PathTracker.hpp"
#include "import/node_text.hpp"
#include "host/utf.hpp"
#include "xml/errors.hpp"
#include "xml/xpath/NodeList.hpp"
#include "xml/xpath/make_context.hpp"

namespace tolven::import {

namespace {

namespace xpath = io::xml::common::xpath;

const char* chars(const xmlChar* s) { return reinterpret_cast<const char*>(s); }

xpath::NodeList evaluate(const std::shared_ptr<xmlXPathContext>& context, const std::string& expression,
                         const std::string& selector, const xmlNode* context_node = nullptr) {
    try {
        return xpath::NodeList(context, fl::i18n::utf8_to_ustring(expression), context_node);
    } catch (const io::xml::common::error::XMLException& e) {
        vxErrMsgId(TOLVEN::import::SelectorNotEvaluable(selector, fl::i18n::ustring_to_utf8(e.message())));
    }
}

// Finds the values of the row-relative columns the path matcher follows, in one walk of a row.
class RowWalk {
public:
    RowWalk(const ImportPlan& plan, RowValues& values) : values_(values) {
        for (std::size_t c = 0; c < plan.columns.size(); ++c) {
            const auto& column = plan.columns[c];
            if (column.kind != ColumnSource::Kind::RowRelative || !column.pattern) continue;
            patterns_.push_back(&*column.pattern);
            columns_.push_back(c);
        }
        tracker_.emplace(patterns_);
    }

    void run(const xmlNode* row) {
        if (columns_.empty()) return;
        take(tracker_->reset(), row);
        descend(row, 0);
    }

private:
    // The whole row is walked (where a pattern can still match): every match is a value.
    void descend(const xmlNode* parent, std::size_t depth) {
        for (const xmlNode* child = parent->children; child != nullptr; child = child->next) {
            if (child->type != XML_ELEMENT_NODE) continue;
            const char* uri = child->ns != nullptr ? chars(child->ns->href) : nullptr;
            take(tracker_->open(depth, uri, chars(child->name)), child);
            if (tracker_->alive_below(depth)) descend(child, depth + 1);
            tracker_->close(depth);
        }
    }

    void take(const std::vector<std::size_t>& matches, const xmlNode* element) {
        for (const std::size_t m : matches) {
            const xmlNode* node = element;
            if (const auto& test = patterns_[m]->attribute) {
                node = reinterpret_cast<const xmlNode*>(attributes_.find(element, *test));
                if (node == nullptr) continue;
            }
            append_string_value(node, values_.add(columns_[m]));
        }
    }

    RowValues& values_;
    std::vector<const PathPattern*> patterns_;  // the tracked patterns
    std::vector<std::size_t> columns_;          // the column of each
    std::optional<PathTracker> tracker_;
    AttributeIndex attributes_;
};

// The row each node of a column read in rows lies in, in document order.
class RowLookup {
public:
    explicit RowLookup(const xpath::NodeList& rows) {
        for (std::size_t r = 0; r < rows.size(); ++r) index_.emplace(rows.get_node_at_index(r), r);
    }
    // The row of node (an attribute's element, or an ancestor-or-self element); none outside every row.
    std::optional<std::size_t> row_of(const xmlNode* node) const {
        for (const xmlNode* n = node; n != nullptr; n = n->parent) {
            const auto found = index_.find(n);
            if (found != index_.end()) return found->second;
        }
        return std::nullopt;
    }

private:
    std::unordered_map<const xmlNode*, std::size_t> index_;
};

}  // namespace

void TreeImporter::run(const io::xml::common::vcos::DocWrapper& document, RowSink& sink) const {
    auto context = xpath::make_context(document.doc());
    for (const auto& [prefix, uri] : plan_.namespaces)
        xpath::register_prefix(context.get(), prefix.c_str(), uri.c_str());

    std::optional<xpath::NodeList> rows;
    if (!plan_.row_selector.empty()) rows.emplace(evaluate(context, plan_.row_selector, plan_.row_selector));
    const std::size_t n_columns = plan_.columns.size();
    // The nodes of the columns read from the whole document: by index, or in the rows they lie in.
    std::vector<std::optional<xpath::NodeList>> whole(n_columns);
    std::size_t row_count = rows ? rows->size() : 0;
    std::optional<RowLookup> lookup;
    for (std::size_t c = 0; c < n_columns; ++c) {
        const auto& column = plan_.columns[c];
        if (column.kind == ColumnSource::Kind::RowRelative) continue;
        whole[c].emplace(evaluate(context, column.xpath, column.selector));
        if (!rows) row_count = std::max(row_count, whole[c]->size());
        if (column.kind == ColumnSource::Kind::InRow && !lookup) lookup.emplace(*rows);
    }

    RowValues values(n_columns);
    RowWalk walk(plan_, values);
    std::vector<std::size_t> next(n_columns, 0);  // per InRow column: its first node not yet placed
    for (std::size_t r = 0; r < row_count; ++r) {
        values.clear();
        const xmlNode* row = rows ? rows->get_node_at_index(r) : nullptr;
        if (row != nullptr) walk.run(row);
        for (std::size_t c = 0; c < n_columns; ++c) {
            const auto& column = plan_.columns[c];
            if (column.kind == ColumnSource::Kind::Indexed) {
                if (r < whole[c]->size()) append_string_value(whole[c]->get_node_at_index(r), values.add(c));
            } else if (column.kind == ColumnSource::Kind::InRow) {
                // Rows and nodes are both in document order, so each column's nodes are met row by row.
                for (; next[c] < whole[c]->size(); ++next[c]) {
                    const xmlNode* node = whole[c]->get_node_at_index(next[c]);
                    const auto at = lookup->row_of(node);
                    if (at && *at > r) break;
                    if (at && *at == r) append_string_value(node, values.add(c));
                }
            } else if (!column.pattern && row != nullptr) {
                const auto found = evaluate(context, column.xpath, column.selector, row);
                for (std::size_t k = 0; k < found.size(); ++k) append_string_value(found.get_node_at_index(k), values.add(c));
            }
        }
        if (!sink.accept(values)) break;
    }
}

}  // namespace tolven::import
