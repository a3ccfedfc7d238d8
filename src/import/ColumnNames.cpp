#include "import/ColumnNames.hpp"

#include <unordered_map>
#include <unordered_set>

namespace tolven::import {

std::vector<std::string> make_column_names(const std::vector<std::string>& variable_names,
                                           std::string_view attribute_suffix) {
    std::vector<std::string> names;
    std::vector<bool> attribute;
    names.reserve(variable_names.size());
    for (const auto& v : variable_names) {
        attribute.push_back(!v.empty() && v.front() == '@');
        names.push_back(attribute.back() ? v.substr(1) : v);
    }

    std::unordered_map<std::string, std::size_t> count;
    for (const auto& n : names) ++count[n];
    for (std::size_t i = 0; i < names.size(); ++i)
        if (attribute[i] && count[names[i]] > 1) names[i] += attribute_suffix;

    // Numbers must not land on a name that is taken already, by any column.
    std::unordered_set<std::string> taken(names.begin(), names.end());
    std::unordered_set<std::string> seen;
    for (auto& n : names) {
        if (seen.insert(n).second) continue;
        for (unsigned k = 2;; ++k) {
            std::string candidate = n + "_" + std::to_string(k);
            if (taken.insert(candidate).second) {
                n = std::move(candidate);
                seen.insert(n);
                break;
            }
        }
    }
    return names;
}

}  // namespace tolven::import
