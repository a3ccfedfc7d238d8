#include "tables/CandidateFinder.hpp"

#include <algorithm>

#include "detection/clustering/cluster.hpp"
#include "detection/variables/node_helpers.hpp"
#include "host/except/Exception.hpp"
#include "host/utf.hpp"
#include "tables/CandidateScore.hpp"
#include "tables/CellRows.hpp"
#include "tables/KeyedRows.hpp"
#include "tables/node_text.hpp"
#include "xml/errors.hpp"
#include "xml/xpath/NodeList.hpp"

namespace tolven::tables {

namespace {

namespace xpath = io::xml::common::xpath;
using fl::i18n::ustring_to_utf8;

// Row groups of one name path tried at most this often, and kept at most this often: a name
// repeated under every one of 40,000 records is one table taken together, not 40,000.
constexpr std::size_t kGroupsTried = 12;
constexpr std::size_t kGroupsKept = 3;

// How much the way rows are formed adds to their score.
constexpr double kNamedCells = 2.0;     // cells under a header: the document's own table
constexpr double kKeyedRows = 1.3;      // keys name every column
constexpr double kSideBySide = 0.85;    // rows with no element of their own are easily coincidences
constexpr double kTakenTogether = 1.15;  // like rows under like parents (suites, series, days) are one table
constexpr double kUnlikeParents = 0.8;   // lists under unlike parents (a legend's and the bars' rects) only share a name
// A list the rest of the document looks values up in (styles, channels, categories) describes the data.
constexpr double kLookupList = 0.5;
// Lists inside records (a product's variants or images, an entry's categories): the records are the
// table, their lists are details of each.
constexpr double kDetailList = 0.6;
// Records whose repeated children are this small a share of their elements hold details, not groups.
constexpr double kRecordCollapse = 0.4;
// Cells without a header in rows much wider than the table is long are more likely records laid out
// one per child (a sensor's readings) than a table of values.
constexpr double kWideUnnamedCells = 0.5;

std::string_view chars(const xmlChar* text) { return reinterpret_cast<const char*>(text); }

// The names of an element's children, each once, in a fixed order.
std::vector<std::pair<std::string_view, std::string_view>> child_names(const xmlNode* parent) {
    std::vector<std::pair<std::string_view, std::string_view>> names;
    for (const xmlNode* c : element_children(parent))
        names.emplace_back(c->ns != nullptr ? chars(c->ns->href) : std::string_view(), chars(c->name));
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
}

// True when the rows' parents hold the same names: parts of one table (suites of test cases), not
// lists that happen to share a name (an axis's lines and a grid's lines).
bool alike_parents(const std::vector<const xmlNode*>& rows) {
    const auto first = child_names(rows.front()->parent);
    const xmlNode* seen = rows.front()->parent;
    for (const xmlNode* row : rows) {
        if (row->parent == seen) continue;
        seen = row->parent;
        if (child_names(seen) != first) return false;
    }
    return true;
}

// The share of a side-by-side cluster's names that are fields (text, nothing else) rather than
// records of their own: grid lines beside data points are two lists, not one table.
double field_share(const detection::clustering::Cluster& cluster) {
    std::size_t fields = 0;
    for (const detection::NodeSet& group : cluster) {
        const xmlNode* n = group.front();
        fields += n->properties == nullptr && !has_element_children(n) && !first_text(n).empty() ? 1 : 0;
    }
    return static_cast<double>(fields) / static_cast<double>(cluster.size());
}

std::optional<std::string> written(const xpath::LazyXPath& path, xpath::XPathIndexStyle style) {
    try {
        return ustring_to_utf8(path.materialize(style));
    } catch (const io::xml::common::error::XMLInvalidXPathExpression&) {
        return std::nullopt;  // a namespace without a registered prefix
    }
}

std::string child_selector(const xmlNode* node, const std::string& parent, const xpath::NamespaceMap& namespaces) {
    return ustring_to_utf8(
        io::xml::detection::variables::make_child_selector(node, fl::i18n::utf8_to_ustring(parent), namespaces));
}

std::vector<std::string> below(const std::string& row_selector, const std::vector<std::string>& steps) {
    std::vector<std::string> out;
    for (const auto& step : steps) out.push_back("(" + row_selector + ")/" + step);
    return out;
}

}  // namespace

std::vector<TableCandidate> CandidateFinder::find(const xmlNode* root) {
    if (root == nullptr) return {};
    xpath::LazyXPath path(probe_.namespaces());
    path.push_back(root, 1);
    paths_.emplace_back();  // the document, parent of the root element
    references_.emplace(root);
    visit(root, path, name_path(0, root));
    add_unions();
    return std::move(out_);
}

std::size_t CandidateFinder::name_path(std::size_t parent, const xmlNode* element) {
    const Key key{parent, element->ns != nullptr ? chars(element->ns->href) : std::string_view(), chars(element->name)};
    const auto [it, added] = ids_.try_emplace(key, paths_.size());
    if (added) {
        paths_.emplace_back();
        paths_.back().parent = parent;
    }
    return it->second;
}

void CandidateFinder::visit(const xmlNode* node, xpath::LazyXPath& path, std::size_t id) {
    const std::size_t order = visited_++;
    // Each child's name path, its position among like-named siblings, and whether any name repeats.
    struct Child {
        const xmlNode* node;
        std::size_t id, position;
    };
    std::vector<Child> children;
    bool repeats = false;
    for (const xmlNode* c = node->children; c != nullptr; c = c->next) {
        if (c->type != XML_ELEMENT_NODE) continue;
        const std::size_t child = name_path(id, c);
        NamePath& p = paths_[child];
        if (p.count == 0) {
            p.order = order;
            if (const auto plain = written(path, xpath::XPathIndexStyle::NoIndex))
                p.selector = child_selector(c, *plain, probe_.namespaces());
        }
        ++p.count;
        if (p.last_parent == node) {
            repeats = true;
            ++p.position;
        } else {
            ++p.parents;
            p.last_parent = node;
            p.position = 1;
        }
        children.push_back({c, child, p.position});
    }
    // The cells of a row of cells are not rows themselves.
    if (repeats && !cell_rows_.contains(id)) visit_level(node, path, id, order);

    for (const Child& c : children) {
        path.push_back(c.node, c.position);
        visit(c.node, path, c.id);
        path.pop_back();
    }
}

void CandidateFinder::visit_level(const xmlNode* node, const xpath::LazyXPath& path, std::size_t id,
                                  std::size_t order) {
    const auto table_selector = written(path, xpath::XPathIndexStyle::IndexRepeated);
    if (!table_selector) return;
    xpath::UniqueNodeNameMap<detection::NodeSet> groups;
    for (const xmlNode* c = node->children; c != nullptr; c = c->next)
        if (c->type == XML_ELEMENT_NODE) groups[groups.find_or_insert(c).first].push_back(c);

    // The clusters in the builtin's order: a side-by-side table is reachable through --table-selector
    // only when no cluster before it is accepted here.
    bool accepted_before = false;
    const auto try_rows = [&](const detection::NodeSet& rows) {
        const std::size_t child = ids_.at({id, rows.front()->ns != nullptr ? chars(rows.front()->ns->href) : std::string_view(),
                                           chars(rows.front()->name)});
        auto& [tried, accepted] = paths_[child].groups;
        // Not tried again: taken for accepted, which at worst hides a side-by-side table.
        if (tried >= kGroupsTried || accepted >= kGroupsKept) return true;
        ++tried;
        const bool ok = add_rows(rows, child, *table_selector,
                                 child_selector(rows.front(), *table_selector, probe_.namespaces()), path, false, order);
        accepted += ok ? 1 : 0;
        return ok;
    };
    for (const detection::clustering::Cluster& cluster : detection::clustering::cluster(groups)) {
        if (cluster.size() == 1) {
            if (cluster.front().size() >= 2 && try_rows(cluster.front())) accepted_before = true;
            continue;
        }
        for (const detection::NodeSet& group : cluster)
            if (group.size() >= 2) try_rows(group);
        if (cluster.front().size() < 3) continue;
        const auto table = probe_.getNonRowGroupedTable(cluster, path);
        if (table && !accepted_before)
            add_side_by_side(*table, cluster.front(), *table_selector, order, field_share(cluster));
        accepted_before = accepted_before || table.has_value();
    }
}

bool CandidateFinder::add_rows(const std::vector<const xmlNode*>& rows, std::size_t id,
                               const std::string& table_selector,
                               const std::string& row_selector, const xpath::LazyXPath& parent,
                               bool several_parents, std::size_t order) {
    const double prose = prose_share(rows);
    const double together = !several_parents ? 1.0 : alike_parents(rows) ? kTakenTogether : kUnlikeParents;
    const auto kept = [&](CandidateKind kind) {
        TableCandidate c;
        c.kind = kind;
        c.table_selector = several_parents ? std::string() : table_selector;
        c.row_selector = row_selector;
        c.rows = rows.size();
        c.order = order;
        return c;
    };

    // Cells are read per parent: each table of cells has its own header row.
    if (auto cells = several_parents ? std::nullopt : read_cells(rows, probe_)) {
        // Under a header these are surely cells: their cells are not tried as rows of their own.
        if (cells->named) cell_rows_.insert(id);
        TableCandidate c = kept(CandidateKind::Cells);
        if (cells->header_in_rows)
            c.row_selector = row_selector + "[position()>1]";
        c.rows = cells->rows;
        c.hint = {CandidateHint::Kind::VariableSelectors, below(c.row_selector, cells->steps)};
        c.column_names = std::move(cells->names);
        const bool wide = !cells->named && cells->profile.columns.size() > 2 * c.rows;
        c.score = make_score(c.kind, c.rows, cells->profile, prose,
                             cells->named ? kNamedCells : wide ? kWideUnnamedCells : 1.0);
        out_.push_back(std::move(c));
    }
    if (auto keyed = read_keyed(rows, probe_)) {
        TableCandidate c = kept(CandidateKind::Keyed);
        c.hint = {CandidateHint::Kind::VariableSelectors, below(row_selector, keyed->steps)};
        c.column_names = std::move(keyed->names);
        c.score = make_score(c.kind, c.rows, keyed->profile, prose, kKeyedRows * together);
        out_.push_back(std::move(c));
    }

    std::optional<detection::Table> table;
    try {
        table = probe_.getRowGroupedTable(rows, parent);
    } catch (const foundation::core::except::IMsgIDException&) {
        return false;  // its selector cannot be written
    }
    if (!table) return false;
    TableCandidate c = kept(CandidateKind::Rows);
    c.hint = {CandidateHint::Kind::RowSelector, {row_selector}};
    const double lookup = references_->looked_up(rows) ? kLookupList : 1.0;
    c.score = make_score(c.kind, c.rows, profile_table(*table, rows.size(), probe_.analyzer_options()), prose,
                         together * lookup);
    out_.push_back(std::move(c));
    return true;
}

void CandidateFinder::add_side_by_side(const detection::Table& table, const std::vector<const xmlNode*>& first_names,
                                       const std::string& table_selector, std::size_t order, double fields) {
    TableCandidate c;
    c.kind = CandidateKind::SideBySide;
    c.table_selector = table_selector;
    c.rows = first_names.size();
    c.order = order;
    c.hint = {CandidateHint::Kind::TableSelector, {table_selector}};
    c.score = make_score(c.kind, c.rows, profile_table(table, c.rows, probe_.analyzer_options()), prose_share(first_names),
                         kSideBySide * (0.4 + 0.6 * fields));
    out_.push_back(std::move(c));
}

void CandidateFinder::add_unions() {
    const xpath::LazyXPath nowhere(probe_.namespaces());
    for (std::size_t id = 1; id < paths_.size(); ++id) {
        const NamePath& p = paths_[id];
        // Taken together only when the name repeats under its parents: a column of many records
        // (one per record) is not a table of its own.
        const bool repeats = p.parents >= 2 && p.count >= 3 && 2 * p.count >= 3 * p.parents;
        if (!repeats || p.selector.empty() || cell_rows_.contains(p.parent)) continue;
        // The elements are gathered again only now, for the few name paths that qualify.
        std::vector<const xmlNode*> rows;
        try {
            const xpath::NodeList nodes(probe_.context(), fl::i18n::utf8_to_ustring(p.selector));
            for (std::size_t i = 0; i < nodes.size(); ++i) rows.push_back(nodes.get_node_at_index(i));
        } catch (const io::xml::common::error::XMLException&) {
            continue;  // a name the path cannot be written with
        }
        if (rows.size() != p.count) continue;
        const std::size_t first = out_.size();
        add_rows(rows, id, {}, p.selector, nowhere, true, p.order);
        if (const TableCandidate* record = enclosing_record(id))
            for (std::size_t i = first; i < out_.size(); ++i)
                if (record->score.breadth > out_[i].score.breadth) out_[i].score.shape *= kDetailList;
    }
}

const TableCandidate* CandidateFinder::enclosing_record(std::size_t id) const {
    // Suites, sensors and journeys are mostly their lists (a large share merged away); a record with
    // fields of its own and a short list beside them is the row a person reads.
    for (std::size_t a = paths_[id].parent; a != 0; a = paths_[a].parent) {
        if (paths_[a].selector.empty()) continue;
        for (const TableCandidate& c : out_)
            if (c.kind == CandidateKind::Rows && c.row_selector == paths_[a].selector)
                return c.score.collapse < kRecordCollapse && !c.score.weak() ? &c : nullptr;
    }
    return nullptr;
}

}  // namespace tolven::tables
