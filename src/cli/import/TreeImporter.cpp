#include "cli/import/TreeImporter.hpp"

#include <libxml/xpathInternals.h>

#include <algorithm>
#include <memory>
#include <optional>

#include "cli/errors.hpp"
#include "cli/import/PathTracker.hpp"
#include "cli/import/node_text.hpp"
#include "host/utf.hpp"
#include "xml/errors.hpp"
#include "xml/xpath/NodeList.hpp"
#include "xml/xpath/make_context.hpp"

namespace tolven::cli::import {

namespace {

namespace xpath = io::xml::common::xpath;
using xml_chars = const xmlChar*;

const char* chars(const xmlChar* s) { return reinterpret_cast<const char*>(s); }

xpath::NodeList evaluate(const std::shared_ptr<xmlXPathContext>& context, const std::string& expression,
                         const std::string& selector, const xmlNode* context_node = nullptr) {
    try {
        return xpath::NodeList(context, fl::i18n::utf8_to_ustring(expression), context_node);
    } catch (const io::xml::common::error::XMLException& e) {
        vxErrMsgId(TOLVEN::cli::SelectorNotEvaluable(selector, fl::i18n::ustring_to_utf8(e.message())));
    }
}

// Finds the values of the row-relative columns the path matcher follows, in one walk of a row.
class RowWalk {
public:
    RowWalk(const ImportPlan& plan, std::vector<RawValue>& values, std::vector<std::string>& buffers)
        : values_(values), buffers_(buffers) {
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
        left_ = columns_.size();
        take(tracker_->reset(), row);
        descend(row, 0);
    }

private:
    void descend(const xmlNode* parent, std::size_t depth) {
        for (const xmlNode* child = parent->children; child != nullptr && left_ > 0; child = child->next) {
            if (child->type != XML_ELEMENT_NODE) continue;
            const char* uri = child->ns != nullptr ? chars(child->ns->href) : nullptr;
            take(tracker_->open(depth, uri, chars(child->name)), child);
            if (left_ > 0 && tracker_->alive_below(depth)) descend(child, depth + 1);
            tracker_->close(depth);
        }
    }

    // The first match in document order wins: later ones are ignored.
    void take(const std::vector<std::size_t>& matches, const xmlNode* element) {
        for (const std::size_t m : matches) {
            const std::size_t c = columns_[m];
            if (values_[c].present) continue;
            const xmlNode* node = element;
            if (const auto& test = patterns_[m]->attribute) {
                node = reinterpret_cast<const xmlNode*>(
                    first_attribute(element, [&test](const char* u, const char* l) { return test->matches(u, l); }));
                if (node == nullptr) continue;
            }
            values_[c] = {true, own_text(node, buffers_[c])};
            --left_;
        }
    }

    std::vector<RawValue>& values_;
    std::vector<std::string>& buffers_;
    std::vector<const PathPattern*> patterns_;  // the tracked patterns
    std::vector<std::size_t> columns_;          // the column of each
    std::optional<PathTracker> tracker_;
    std::size_t left_ = 0;  // columns still without a value in this row
};

}  // namespace

void TreeImporter::run(const io::xml::common::vcos::DocWrapper& document, RowSink& sink) const {
    auto context = xpath::make_context(document.doc());
    for (const auto& [prefix, uri] : plan_.namespaces)
        xmlXPathRegisterNs(context.get(), reinterpret_cast<xml_chars>(prefix.c_str()),
                           reinterpret_cast<xml_chars>(uri.c_str()));

    std::optional<xpath::NodeList> rows;
    if (!plan_.row_selector.empty()) rows.emplace(evaluate(context, plan_.row_selector, plan_.row_selector));
    const std::size_t n_columns = plan_.columns.size();
    std::vector<std::optional<xpath::NodeList>> indexed(n_columns);
    std::size_t row_count = rows ? rows->size() : 0;
    for (std::size_t c = 0; c < n_columns; ++c) {
        const auto& column = plan_.columns[c];
        if (column.kind != ColumnSource::Kind::Indexed) continue;
        indexed[c].emplace(evaluate(context, column.xpath, column.selector));
        if (!rows) row_count = std::max(row_count, indexed[c]->size());
    }

    std::vector<RawValue> values(n_columns);
    std::vector<std::string> buffers(n_columns);
    RowWalk walk(plan_, values, buffers);
    for (std::size_t r = 0; r < row_count; ++r) {
        std::fill(values.begin(), values.end(), RawValue{});
        const xmlNode* row = rows ? rows->get_node_at_index(r) : nullptr;
        if (row != nullptr) walk.run(row);
        for (std::size_t c = 0; c < n_columns; ++c) {
            const auto& column = plan_.columns[c];
            const xmlNode* node = nullptr;
            if (column.kind == ColumnSource::Kind::Indexed) {
                if (r < indexed[c]->size()) node = indexed[c]->get_node_at_index(r);
            } else if (!column.pattern && row != nullptr) {
                const auto found = evaluate(context, column.xpath, column.selector, row);
                if (!found.empty()) node = found.get_node_at_index(0);
            }
            if (node != nullptr) values[c] = {true, own_text(node, buffers[c])};
        }
        if (!sink.accept(values)) break;
    }
}

}  // namespace tolven::cli::import
