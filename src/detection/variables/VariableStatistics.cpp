#include "detection/variables/VariableStatistics.hpp"

#include "detection/diagnostics/printers.hpp"

namespace tolven::io::xml::detection {

std::string print_statistics(const std::vector<VariableStatistics>& statistics) {
    using diagnostics::kIndent;
    using diagnostics::kLineBreak;
    std::string out;
    out.append("{").append(kLineBreak);
    for (const auto& s : statistics) {
        out.append(kIndent).append("{").append(kLineBreak);
        auto line = [&](std::string_view label, const std::string& value) {
            out.append(kIndent).append(kIndent).append(label).append(value).append(",").append(kLineBreak);
        };
        line("total_appearences = ", std::to_string(s.total_appearences));
        line("num_row_appearances = ", std::to_string(s.num_row_appearances));
        line("num_non_empty_samples = ", std::to_string(s.num_non_empty_samples));
        line("is_variable = ", diagnostics::print_bool(s.is_variable()));
        line("is_attribute = ", diagnostics::print_bool(s.is_attribute));
        line("is_leaf = ", diagnostics::print_bool(s.is_leaf));
        out.append(kIndent).append("}").append(",").append(kLineBreak);
    }
    out.append("}");
    return out;
}

}  // namespace tolven::io::xml::detection
