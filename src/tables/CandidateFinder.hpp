#pragma once
// Finds every candidate table below the root element in one walk: the repeated children of each
// element as rows (what the builtin would try there), the same elements under several parents taken
// together, names repeated side by side, rows of cells and rows of key/value pairs.

#include <libxml/tree.h>

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "tables/Probe.hpp"
#include "tables/References.hpp"
#include "tables/TableCandidate.hpp"

namespace tolven::tables {

class CandidateFinder {
public:
    explicit CandidateFinder(const Probe& probe) : probe_(probe) {}

    // The candidates of the document below root, unranked.
    std::vector<TableCandidate> find(const xmlNode* root);

private:
    // One name path ("/a/b/c" by namespace URI and local name): how often its elements occur and
    // under how many parents.
    struct NamePath {
        std::size_t parent = 0;  // the parents' name path
        std::size_t count = 0;   // elements
        std::size_t parents = 0;  // distinct parents
        std::size_t position = 0;  // of the latest element among its like-named siblings
        const xmlNode* last_parent = nullptr;
        std::string selector;  // the path without positions; empty when it cannot be written
        std::size_t order = 0;
        std::pair<std::size_t, std::size_t> groups;  // row groups tried and accepted as tables
    };
    struct Key {
        std::size_t parent;
        std::string_view uri, local;
        bool operator==(const Key&) const = default;
    };
    struct KeyHash {
        std::size_t operator()(const Key& k) const noexcept {
            return std::hash<std::string_view>()(k.local) ^ (std::hash<std::string_view>()(k.uri) << 1) ^ (k.parent * 31);
        }
    };

    std::size_t name_path(std::size_t parent, const xmlNode* element);
    void visit(const xmlNode* node, io::xml::common::xpath::LazyXPath& path, std::size_t id);
    void visit_level(const xmlNode* node, const io::xml::common::xpath::LazyXPath& path, std::size_t id,
                     std::size_t order);
    // The candidates the rows give (cells, keyed and plain rows) under row_selector; id is their
    // name path, parent addresses their common parent (an empty path when they have several).
    // Returns whether the builtin accepts the plain rows as a table.
    bool add_rows(const std::vector<const xmlNode*>& rows, std::size_t id, const std::string& table_selector,
                  const std::string& row_selector, const io::xml::common::xpath::LazyXPath& parent,
                  bool several_parents, std::size_t order);
    // fields: the share of the cluster's names that are plain text fields.
    void add_side_by_side(const detection::Table& table, const std::vector<const xmlNode*>& first_names,
                          const std::string& table_selector, std::size_t order, double fields);
    void add_unions();
    // The nearest enclosing rows (of name path id's ancestors) that are records of their own, when
    // there are such.
    const TableCandidate* enclosing_record(std::size_t id) const;

    const Probe& probe_;
    std::vector<NamePath> paths_;
    std::unordered_map<Key, std::size_t, KeyHash> ids_;
    std::unordered_set<std::size_t> cell_rows_;  // name paths of rows read as cells under a header
    std::vector<TableCandidate> out_;
    std::size_t visited_ = 0;
    std::optional<References> references_;
};

}  // namespace tolven::tables
