// Accepting or rejecting a candidate table by how well its variables cover the rows.

#include <cstdio>

#include "detection/diagnostics/TraceScope.hpp"
#include "detection/strategy/DetectionStrategy.hpp"

namespace tolven::io::xml::detection::strategy {

std::size_t DetectionStrategy::evaluateTable(const std::vector<VariableStatistics>& stats, std::size_t max_num_rows,
                                             double tabular_threshold) const {
    TOLVEN_TRACE_SCOPE(
        "std::size_t tolven::io::xml::detection::strategy::DetectionStrategy::evaluateTable(const "
        "std::vector<tolven::io::xml::detection::VariableStatistics>&, std::size_t, double) const",
        "strategy/DetectionStrategy");
    if (diagnostics::debug_enabled()) {
        char threshold[64];
        std::snprintf(threshold, sizeof threshold, "%f", tabular_threshold);
        diagnostics::debug("Evaluating detected table statistics...\nmax_num_rows = " + std::to_string(max_num_rows) +
                           "\ntabular_threshold = " + threshold + "\nVariableStatistics = " +
                           print_statistics(stats));
    }

    // One variable covering enough rows accepts the table; every variable is then counted, however sparse.
    std::size_t variables = 0;
    bool accepted = false;
    for (const VariableStatistics& s : stats) {
        if (!s.is_variable()) continue;
        ++variables;
        if (accepted) continue;
        // Leaf elements are judged by the rows that hold them; attributes (recorded as leaves too) and
        // elements with children by the rows where they carry text, so that an attribute that is
        // present everywhere but always empty cannot make a table on its own.
        const bool by_presence = s.is_leaf && !s.is_attribute;
        const std::size_t coverage = by_presence ? s.num_row_appearances : s.num_non_empty_samples;
        const double ratio = static_cast<double>(coverage) / static_cast<double>(max_num_rows);
        accepted = ratio > tabular_threshold;
    }
    return accepted ? variables : 0;
}

}  // namespace tolven::io::xml::detection::strategy
