#include "tables/CandidateScore.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <string_view>

namespace tolven::tables {

namespace {

// A column holds a value in at least this share of the rows to count as one of a record's fields.
constexpr double kFull = 0.5;
// Values of this many words on average are sentences, not fields.
constexpr double kRunningText = 12;

// Names under which documents list settings, properties and parameters rather than records.
bool names_a_key(std::string_view name) {
    constexpr std::array<std::string_view, 9> keys{"name", "key", "id", "property", "param",
                                                   "parameter", "field", "attribute", "label"};
    return std::find(keys.begin(), keys.end(), name) != keys.end();
}

// A column's worth: how often it has a value, and how much its values differ from row to row (a
// constant style or unit attribute is worth less than a measurement, and so are evenly spaced
// numbers, which lay out ticks and grid lines more often than they measure anything).
// A column holding one value in every row (a font, a line style) tells the rows apart not at all.
double worth(const ColumnProfile& c) {
    if (!c.varies) return 0.15 * c.fill;
    return c.fill * (0.4 + 0.6 * c.unique) * (c.regular ? 0.5 : 1.0);
}
// A column repeating another one (y2 of a horizontal line, a value kept twice) adds little.
constexpr double kRepeatedColumn = 0.2;

// Two full columns sampled row by row alike and equal in at least half of the rows: the x2 of ticks
// and the y2 of grid lines taken together repeat their x1 and y1 in most rows.
bool repeats(const ColumnProfile& a, const ColumnProfile& b) {
    if (a.hashes.size() != b.hashes.size() || a.hashes.empty()) return false;
    std::size_t same = 0;
    for (std::size_t i = 0; i < a.hashes.size(); ++i) same += a.hashes[i] == b.hashes[i] ? 1 : 0;
    return 2 * same >= a.hashes.size();
}

}  // namespace

double CandidateScore::total() const {
    const double quality = (0.5 + 0.5 * fill) * (0.75 + 0.5 * typed) * (1.0 - 0.8 * collapse);
    const double list = single ? 0.6 : 1.0;
    const double rarity = few_rows ? 0.35 : 1.0;
    const double doubt = weak() ? 0.3 : 1.0;
    return rows * breadth * quality * shape * pairs * list * rarity * doubt;
}

bool CandidateScore::weak() const {
    // Sections of paragraphs: running text in a column, and most of the rows' elements repeats that
    // no column reaches (the second and later paragraphs).
    const bool sections = running > 0 && collapse >= 0.5;
    const bool text = prose >= 0.3 || running == 1.0 || single_text || sections;
    return text || few_rows || fill < 0.3 || breadth == 0;
}

CandidateScore make_score(CandidateKind kind, std::size_t rows, const TableProfile& profile, double prose,
                          double shape) {
    CandidateScore s;
    s.rows = std::log2(1.0 + static_cast<double>(rows));
    s.few_rows = rows < 3;
    s.collapse = profile.collapse;
    s.prose = prose;
    s.shape = shape;

    double useful = 0;
    std::size_t full = 0, varying = 0, typed = 0, running = 0, any_typed = 0;
    const ColumnProfile* first_full = nullptr;
    std::vector<double> fills;
    std::vector<const ColumnProfile*> earlier;  // the full columns so far
    for (const ColumnProfile& c : profile.columns) {
        fills.push_back(c.fill);
        const bool repeated = std::any_of(earlier.begin(), earlier.end(), [&](const ColumnProfile* e) {
            return e->fill == c.fill && repeats(*e, c);
        });
        if (c.fill >= kFull) earlier.push_back(&c);
        useful += worth(c) * (repeated ? kRepeatedColumn : 1.0);
        // A link's address goes with its text: a list of links is a list of words.
        if (c.fill >= kFull && c.name != "href") {
            if (first_full == nullptr) first_full = &c;
            ++full;
            varying += c.varies ? 1 : 0;
            typed += c.varies && c.typed ? 1 : 0;
            any_typed += c.typed ? 1 : 0;
            running += c.words >= kRunningText ? 1 : 0;
        }
    }
    // Optional columns (a failure message, a second link) are normal: the fuller half says how
    // regular the rows are.
    std::sort(fills.begin(), fills.end(), std::greater<>());
    fills.resize((fills.size() + 1) / 2);
    for (const double f : fills) s.fill += f / static_cast<double>(fills.size());

    s.breadth = std::log2(1.0 + useful);
    s.typed = varying == 0 ? 0.0 : static_cast<double>(typed) / static_cast<double>(varying);
    s.running = full == 0 ? 0.0 : static_cast<double>(running) / static_cast<double>(full);
    s.single = full <= 1;
    s.single_text = full == 1 && any_typed == 0;
    // Rows of two full columns, the first a name or key: properties, settings or attribute/value
    // lists, rather than records.
    if (kind == CandidateKind::Rows && full == 2 && names_a_key(first_full->name))
        s.pairs = 0.5;
    return s;
}

}  // namespace tolven::tables
