#include "tables/ColumnProfile.hpp"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <set>

#include "detection/variables/DetectionNode.hpp"
#include "detection/variables/variable_type.hpp"
#include "host/utf.hpp"

namespace tolven::tables {

namespace {

namespace detection = io::xml::detection;
constexpr std::string_view kBlank = " \t\n\r";

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(kBlank);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(kBlank) - first + 1);
}

std::size_t count_words(std::string_view text) {
    std::size_t words = 0;
    bool in_word = false;
    for (const char c : text) {
        const bool blank = kBlank.find(c) != std::string_view::npos;
        if (!blank && !in_word) ++words;
        in_word = !blank;
    }
    return words;
}

// Four or more distinct numbers with one step between neighbours.
bool evenly_spaced(const std::set<std::string_view>& values) {
    if (values.size() < 4) return false;
    std::vector<double> numbers;
    for (const std::string_view v : values) {
        const std::string text(v);
        char* end = nullptr;
        numbers.push_back(std::strtod(text.c_str(), &end));
        if (text.empty() || *end != '\0') return false;
    }
    std::sort(numbers.begin(), numbers.end());
    const double step = numbers[1] - numbers[0];
    for (std::size_t i = 2; i < numbers.size(); ++i)
        if (std::abs(numbers[i] - numbers[i - 1] - step) > 1e-9 * std::max(1.0, std::abs(step))) return false;
    return true;
}

bool is_typed(const std::u16string& type) {
    return type != u"string" && type != u"char" && type != u"categorical" && type != u"auto";
}

struct TreeWalk {
    const std::vector<detection::VariableStatistics>& statistics;
    std::size_t rows;
    const io::text::typedetection::TypeAnalyzerOptions& settings;
    TableProfile profile;
    std::size_t occurrences = 0, merged = 0;

    void column(const detection::TrackedName& entry) {
        const auto& record = statistics.at(entry.statistics_index);
        if (!record.is_variable()) return;
        std::string name = entry.node != nullptr ? reinterpret_cast<const char*>(entry.node->name) : "";
        profile.columns.push_back(profile_column(std::move(name), record.num_non_empty_samples, rows, entry.samples,
                                                 settings));
    }

    void walk(const detection::DetectionNode& entry, bool is_row) {
        if (entry.node != nullptr) column(entry);
        if (!is_row && entry.node != nullptr) {
            const auto& record = statistics.at(entry.statistics_index);
            occurrences += record.total_appearences;
            merged += record.total_appearences - record.num_row_appearances;
        }
        for (const auto& attribute : entry.attributes) column(attribute);
        for (const auto& child : entry.children) walk(*child, false);
    }
};

// Text and elements side by side in node or in its children: paragraphs with inline markup. Deeper
// markup (an entry's XHTML content) belongs to one value, not to the row's shape.
bool mixed(const xmlNode* node, int depth) {
    bool text = false, elements = false;
    for (const xmlNode* c = node->children; c != nullptr; c = c->next) {
        if (c->type == XML_ELEMENT_NODE) {
            elements = true;
            if (depth > 0 && mixed(c, depth - 1)) return true;
        } else if (c->type == XML_TEXT_NODE && c->content != nullptr &&
                   !trimmed(reinterpret_cast<const char*>(c->content)).empty()) {
            text = true;
        }
    }
    return text && elements;
}

}  // namespace

ColumnProfile profile_column(std::string name, std::size_t values, std::size_t rows,
                             const std::vector<std::string_view>& samples,
                             const io::text::typedetection::TypeAnalyzerOptions& settings) {
    ColumnProfile p;
    p.name = std::move(name);
    p.fill = rows == 0 ? 0.0 : std::min(1.0, static_cast<double>(values) / static_cast<double>(rows));
    if (samples.empty()) return p;
    p.typed = is_typed(detection::variables::detect_type_name(settings, samples));
    std::set<std::string_view> seen;
    std::size_t words = 0;
    for (const std::string_view s : samples) {
        seen.insert(trimmed(s));
        words += count_words(s);
    }
    p.varies = seen.size() > 1;
    p.regular = evenly_spaced(seen);
    for (const std::string_view v : samples) p.hashes.push_back(std::hash<std::string_view>()(trimmed(v)));
    p.unique = static_cast<double>(seen.size()) / static_cast<double>(samples.size());
    p.words = static_cast<double>(words) / static_cast<double>(samples.size());
    return p;
}

TableProfile profile_table(const detection::Table& table, std::size_t rows,
                           const io::text::typedetection::TypeAnalyzerOptions& settings) {
    TreeWalk w{table.statistics, rows, settings, {}};
    if (table.tree) w.walk(*table.tree, true);
    if (w.occurrences > 0) w.profile.collapse = static_cast<double>(w.merged) / static_cast<double>(w.occurrences);
    return std::move(w.profile);
}

double prose_share(const std::vector<const xmlNode*>& rows) {
    const std::size_t n = std::min<std::size_t>(rows.size(), 50);
    if (n == 0) return 0;
    std::size_t hits = 0;
    for (std::size_t i = 0; i < n; ++i)
        if (mixed(rows[i], 1)) ++hits;
    return static_cast<double>(hits) / static_cast<double>(n);
}

}  // namespace tolven::tables
