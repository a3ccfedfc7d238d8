#include "tables/TableList.hpp"

#include <algorithm>

#include "detection/options/make_detection_options.hpp"
#include "host/utf.hpp"
#include "import/errors.hpp"
#include "tables/CandidateFinder.hpp"
#include "tables/Probe.hpp"
#include "tables/QuietLog.hpp"
#include "host/except/Exception.hpp"

namespace tolven::tables {

namespace {

// The candidate the builtin picked: its row selector is written exactly as the builtin writes it;
// a side-by-side pick has only a table selector.
bool is_builtin_pick(const TableCandidate& c, const import::DetectionResult& r) {
    if (!r.table_detected) return false;
    if (!r.row_selector.empty()) return c.kind == CandidateKind::Rows && c.row_selector == r.row_selector;
    return c.kind == CandidateKind::SideBySide && c.table_selector == r.table_selector;
}

}  // namespace

TableList::TableList(std::shared_ptr<io::xml::common::vcos::DocWrapper> document, const vxArray* hints,
                     std::optional<import::DetectionResult> builtin)
    : document_(std::move(document)), settings_(with_hint(hints, {})) {
    const QuietLog quiet;
    if (builtin) {
        builtin_ = std::move(*builtin);
    } else {
        try {
            builtin_ = import::run_detect(document_, settings_.get());
        } catch (const foundation::core::except::IMsgIDException&) {
            // The builtin's pick cannot be written (a namespace without prefix): none to mark. Errors
            // about the settings themselves are raised again by the probe below.
        }
    }

    const Probe probe(document_.get(), detection::options::make_detection_options(settings_.get()));
    CandidateFinder finder(probe);
    candidates_ = finder.find(xmlDocGetRootElement(document_->doc().get()));

    bool listed = false;
    for (TableCandidate& c : candidates_) {
        c.builtin = is_builtin_pick(c, builtin_);
        if (c.builtin) c.hint = {};  // found without any hint
        listed = listed || c.builtin;
    }
    if (builtin_.table_detected && !listed) {
        // The walk leaves out row groups beyond the first few of a name path; the builtin's pick
        // is listed all the same, unscored.
        TableCandidate c;
        c.kind = builtin_.row_selector.empty() ? CandidateKind::SideBySide : CandidateKind::Rows;
        c.table_selector = builtin_.table_selector;
        c.row_selector = builtin_.row_selector;
        c.builtin = true;
        candidates_.push_back(std::move(c));
    }
    std::stable_sort(candidates_.begin(), candidates_.end(), [](const TableCandidate& a, const TableCandidate& b) {
        const double sa = a.score.total(), sb = b.score.total();
        if (sa != sb) return sa > sb;
        if (a.builtin != b.builtin) return a.builtin;
        return a.order < b.order;
    });
    if (candidates_.size() > kMaxListed) {
        const auto pick = std::find_if(candidates_.begin() + kMaxListed, candidates_.end(),
                                       [](const TableCandidate& c) { return c.builtin; });
        if (pick != candidates_.end()) std::rotate(candidates_.begin() + kMaxListed - 1, pick, pick + 1);
        candidates_.resize(kMaxListed);
    }
}

std::optional<std::size_t> TableList::builtin_index() const {
    for (std::size_t i = 0; i < candidates_.size(); ++i)
        if (candidates_[i].builtin) return i;
    return std::nullopt;
}

std::size_t TableList::index(std::size_t number) const {
    if (number == 0 || number > candidates_.size())
        vxErrMsgId(TOLVEN::import::NoSuchTable(std::to_string(number), std::to_string(candidates_.size()),
                                               fl::i18n::ustring_to_utf8(document_->source())));
    return number - 1;
}

import::DetectionResult TableList::result(std::size_t index) const {
    const TableCandidate& c = candidates_.at(index);
    if (c.builtin) return builtin_;
    const QuietLog quiet;
    import::DetectionResult r = import::run_detect(document_, with_hint(settings_.get(), c.hint).get());
    if (r.table_selector.empty()) r.table_selector = c.table_selector;
    if (c.kind == CandidateKind::Cells || c.kind == CandidateKind::Keyed) {
        // The builtin names a column after its element ("td", "string"); the header or the key names it here,
        // and the rows make every column's values row by row.
        r.table_selector = c.table_selector;
        r.row_selector = c.row_selector;
        for (std::size_t i = 0; i < r.variables.size() && i < c.column_names.size(); ++i)
            r.variables[i].name = c.column_names[i];
    }
    return r;
}

}  // namespace tolven::tables
