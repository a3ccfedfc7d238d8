#include "tables/CellRows.hpp"

#include <algorithm>
#include <map>
#include <tuple>

#include "detection/variables/node_helpers.hpp"
#include "host/utf.hpp"
#include "tables/node_text.hpp"

namespace tolven::tables {

namespace {

constexpr std::size_t kSampleRows = 500;
constexpr std::size_t kMaxColumns = 64;
constexpr std::size_t kMaxSamples = 250;

using Cells = std::vector<const xmlNode*>;

bool named(const xmlNode* node, std::string_view name) {
    return std::string_view(reinterpret_cast<const char*>(node->name)) == name;
}

// The cells of a row: its element children when they share one name (or are HTML's th and td).
std::optional<Cells> cells_of(const xmlNode* row) {
    Cells cells = element_children(row);
    if (cells.empty()) return std::nullopt;
    const bool html = std::all_of(cells.begin(), cells.end(), [](const xmlNode* c) { return named(c, "td") || named(c, "th"); });
    const bool alike = std::all_of(cells.begin(), cells.end(), [&](const xmlNode* c) { return same_name(c, cells.front()); });
    if (!html && !alike) return std::nullopt;
    return cells;
}

// A cell holds one value: its own text, or the text of a child (Cell/Data, td/a, td/b) that has no
// children of its own. Cells with more inside are records of their own, not cells.
bool holds_a_value(const xmlNode* cell, bool& with_text) {
    with_text = !first_text(cell).empty();
    for (const xmlNode* kid : element_children(cell)) {
        if (has_element_children(kid)) return false;
        with_text = with_text || !first_text(kid).empty();
    }
    return true;
}

// The cells of the first rows; none unless most rows are rows of several cells holding values.
std::optional<std::vector<Cells>> layout(const std::vector<const xmlNode*>& rows) {
    std::vector<Cells> out;
    std::size_t total = 0, cell_rows = 0, values = 0, with_text = 0;
    for (std::size_t i = 0; i < std::min(rows.size(), kSampleRows); ++i) {
        auto cells = cells_of(rows[i]);
        if (cells) {
            ++cell_rows;
            total += cells->size();
            for (const xmlNode* c : *cells) {
                bool text = false;
                values += holds_a_value(c, text) ? 1 : 0;
                with_text += text ? 1 : 0;
            }
        }
        out.push_back(cells ? std::move(*cells) : Cells());
    }
    // Two rows are too few to tell cells from two records of like-named parts.
    const bool cell_rows_mostly = out.size() >= 3 && cell_rows * 5 >= out.size() * 4 && total >= 2 * cell_rows;
    if (!cell_rows_mostly || values * 10 < total * 9 || with_text * 2 < total) return std::nullopt;
    return out;
}

// A row of cells in an element before the rows (HTML's thead), beside them or beside their parent
// (thead before tbody).
std::optional<Cells> header_before(const xmlNode* first_row) {
    const xmlNode* parent = first_row->parent;
    for (const xmlNode* start : {first_row, parent}) {
        if (start == nullptr || start->type != XML_ELEMENT_NODE) continue;
        for (const xmlNode* s = start->prev; s != nullptr; s = s->prev) {
            if (s->type != XML_ELEMENT_NODE || same_name(s, first_row)) continue;
            for (const xmlNode* r : element_children(s))
                if (same_name(r, first_row))
                    if (auto cells = cells_of(r)) return cells;
        }
    }
    return std::nullopt;
}

// The element below a column's cells that holds their text: none when the cells carry text
// themselves, else the most common first child with text ("Data", "a", "text:p").
const xmlNode* value_child(const std::vector<Cells>& rows, std::size_t begin, std::size_t j) {
    std::size_t direct = 0;
    std::map<std::pair<std::string_view, std::string_view>, std::pair<std::size_t, const xmlNode*>> children;
    for (std::size_t r = begin; r < rows.size(); ++r) {
        if (j >= rows[r].size()) continue;
        const xmlNode* cell = rows[r][j];
        if (!first_text(cell).empty()) {
            ++direct;
            continue;
        }
        const Cells kids = element_children(cell);
        const auto with_text = std::find_if(kids.begin(), kids.end(), [](const xmlNode* k) { return !first_text(k).empty(); });
        if (with_text == kids.end()) continue;
        const xmlNode* k = *with_text;
        auto& [count, node] = children[{k->ns ? reinterpret_cast<const char*>(k->ns->href) : "",
                                        reinterpret_cast<const char*>(k->name)}];
        ++count;
        node = k;
    }
    const xmlNode* best = nullptr;
    std::size_t most = direct;
    for (const auto& [key, entry] : children)
        if (entry.first > most) std::tie(most, best) = entry;
    return best;
}

std::string_view value_of(const xmlNode* cell, const xmlNode* child) {
    if (child == nullptr) return first_text(cell);
    for (const xmlNode* k : element_children(cell))
        if (same_name(k, child)) return first_text(k);
    return {};
}

// One column's non-blank values from row begin on, and its profile.
ColumnProfile column_profile(std::string name, const std::vector<Cells>& rows, std::size_t begin, std::size_t j,
                             const xmlNode* child, const Probe& probe) {
    std::vector<std::string_view> samples;
    std::size_t values = 0;
    for (std::size_t r = begin; r < rows.size(); ++r) {
        if (j >= rows[r].size()) continue;
        const std::string_view v = value_of(rows[r][j], child);
        if (v.empty()) continue;
        ++values;
        if (samples.size() < kMaxSamples) samples.push_back(v);
    }
    return profile_column(std::move(name), values, rows.size() - begin, samples, probe.analyzer_options());
}

bool all_text(const Cells& cells, const Probe& probe) {
    return !cells.empty() && std::all_of(cells.begin(), cells.end(), [&](const xmlNode* c) {
        const std::string text = flat_text(c);
        const std::vector<std::string_view> sample{text};
        return !text.empty() && !profile_column("", 1, 1, sample, probe.analyzer_options()).typed;
    });
}

bool marked(std::string_view text) { return text.find_first_of("0123456789@./:_#%$") != std::string_view::npos; }

// Below a plain word, values that hold digits or marks (e-mail addresses, codes, paths) in most rows.
bool marked_below(const std::vector<Cells>& rows, std::size_t j) {
    if (j >= rows[0].size() || marked(flat_text(rows[0][j]))) return false;
    std::size_t values = 0, hits = 0;
    for (std::size_t r = 1; r < rows.size(); ++r)
        if (j < rows[r].size())
            if (const std::string v = flat_text(rows[r][j]); !v.empty()) {
                ++values;
                hits += marked(v) ? 1 : 0;
            }
    return values > 0 && hits * 5 >= values * 4;
}

// The first row heads the others: th over td, or text over a column of numbers or dates, or plain
// words over a column of marked values.
bool first_row_heads(const std::vector<Cells>& rows, std::size_t width, const Probe& probe) {
    if (rows.size() < 2 || !all_text(rows.front(), probe)) return false;
    const auto th = [](const xmlNode* c) { return named(c, "th"); };
    if (std::all_of(rows[0].begin(), rows[0].end(), th) && !rows[1].empty() && !th(rows[1].back())) return true;
    for (std::size_t j = 0; j < width; ++j)
        if (column_profile("", rows, 1, j, value_child(rows, 1, j), probe).typed || marked_below(rows, j)) return true;
    return false;
}

}  // namespace

std::optional<CellColumns> read_cells(const std::vector<const xmlNode*>& rows, const Probe& probe) {
    const auto cells = layout(rows);
    if (!cells) return std::nullopt;
    std::size_t width = 0;
    for (const Cells& c : *cells) width = std::max(width, c.size());
    width = std::min(width, kMaxColumns);

    CellColumns out;
    Cells header;
    out.header_in_rows = first_row_heads(*cells, width, probe);
    if (out.header_in_rows) header = cells->front();
    else if (auto before = header_before(rows.front()); before && all_text(*before, probe)) header = *before;
    out.named = !header.empty();
    const std::size_t begin = out.header_in_rows ? 1 : 0;
    out.rows = rows.size() - begin;

    // The cells are written by their common name in the data rows, or as * when names mix.
    const xmlNode* cell = nullptr;
    bool uniform = true;
    for (std::size_t r = begin; r < cells->size(); ++r)
        for (const xmlNode* c : (*cells)[r]) {
            if (cell == nullptr) cell = c;
            uniform = uniform && same_name(c, cell);
        }
    const std::u16string cell_step =
        uniform && cell != nullptr ? io::xml::detection::variables::make_name_step(cell, probe.namespaces()) : u"*";

    for (std::size_t j = 0; j < width; ++j) {
        std::string name = j < header.size() ? flat_text(header[j]) : std::string();
        if (name.empty()) name = "Column" + std::to_string(j + 1);
        const xmlNode* child = value_child(*cells, begin, j);
        std::u16string step = cell_step + u"[" + fl::i18n::utf8_to_ustring(std::to_string(j + 1)) + u"]";
        if (child != nullptr) step += u"/" + io::xml::detection::variables::make_name_step(child, probe.namespaces());
        out.profile.columns.push_back(column_profile(name, *cells, begin, j, child, probe));
        out.names.push_back(std::move(name));
        out.steps.push_back(fl::i18n::ustring_to_utf8(step));
    }
    return out;
}

}  // namespace tolven::tables
