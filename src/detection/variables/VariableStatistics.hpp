#pragma once
#include <cstddef>
#include <string>
#include <vector>

namespace tolven::io::xml::detection {

// What scoring weighs for one distinct element or attribute name below a candidate's rows.
struct VariableStatistics {
    std::size_t num_row_appearances = 0;    // rows in which the name occurs at least once
    std::size_t num_non_empty_samples = 0;  // rows in which it carried non-blank text (one per row at most)
    std::size_t total_appearences = 0;      // occurrences over all rows, repeats included
    bool is_leaf = true;                    // no occurrence had element children (or, for elements, attributes)
    bool is_attribute = false;

    bool is_variable() const noexcept { return num_non_empty_samples != 0 || is_attribute || is_leaf; }
};

// The statistics dump: "{\n" then one indented block per record, then "}".
std::string print_statistics(const std::vector<VariableStatistics>& statistics);

}  // namespace tolven::io::xml::detection
