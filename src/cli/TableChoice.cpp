#include "cli/TableChoice.hpp"

#include <ostream>

#include "cli/ErrorAdvice.hpp"
#include "tables/SearchExplanation.hpp"
#include "tables/TableList.hpp"
#include "tables/choose_table.hpp"

namespace tolven::cli {

namespace {

// A word as a shell reads it back: quoted when it holds anything but plain path characters.
std::string shell_word(const std::string& word) {
    const bool plain = !word.empty() && word.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                                               "0123456789/_.:@-") == std::string::npos;
    if (plain) return word;
    std::string out = "'";
    for (const char c : word) out += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return out + "'";
}

std::string describe(const tables::TableCandidate& c, const import::DetectionResult& r) {
    std::string where = r.row_selector.empty() ? r.table_selector : r.row_selector;
    std::string names;
    for (std::size_t i = 0; i < r.variables.size() && i < 4; ++i) names += (i ? ", " : "") + r.variables[i].name;
    if (r.variables.size() > 4) names += ", ...";
    return std::to_string(c.rows) + " rows of " + where + " (" + std::to_string(r.variables.size()) + " columns: " +
           names + ")";
}

}  // namespace

import::DetectionResult TableChoice::detect(const std::shared_ptr<io::xml::common::vcos::DocWrapper>& document,
                                            const vxArray* hints) {
    document_ = document;
    hints_.reset(vxShareArray(hints));
    if (options_.table > 0) return tables::choose_table(document, hints, options_.table);
    import::DetectionResult result = import::run_detect(document, hints);
    if (!tables::has_detection_hint(hints)) {
        // Advice only: whatever goes wrong while giving it leaves the result as the builtin gave it.
        try {
            advise(result, document, hints);
        } catch (const std::exception&) {
        }
    }
    return result;
}

void TableChoice::advise(const import::DetectionResult& builtin,
                         const std::shared_ptr<io::xml::common::vcos::DocWrapper>& document,
                         const vxArray* hints) const {
    if (verbosity_ > 0)
        for (const std::string& line : tables::explain_search(document, hints))
            err_ << "tolven-xml: search: " << line << '\n';

    const tables::TableList list(document, hints, builtin);
    if (list.candidates().empty()) return;
    const tables::TableCandidate& first = list.candidates().front();
    if (first.builtin || first.score.weak()) return;
    std::string how = "--table 1";
    if (first.kind == tables::CandidateKind::Rows || first.kind == tables::CandidateKind::SideBySide) {
        const auto words = first.hint.words();
        how += " (or";
        for (const auto& w : words) how += " " + shell_word(w);
        how += ")";
    }
    const std::string found = builtin.table_detected
                                  ? "the table found is " + (builtin.row_selector.empty() ? builtin.table_selector
                                                                                          : builtin.row_selector)
                                  : "no table was found";
    note_(found + ", but " + describe(first, list.result(0)) + " look more like the data; select them with " + how);
}

std::string TableChoice::message(const foundation::core::except::IMsgIDException& error) const {
    return user_message(error, options_, document_, hints_.get());
}

}  // namespace tolven::cli
