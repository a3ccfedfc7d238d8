#pragma once
// The detected table and the small types the search hands around.

#include <libxml/tree.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "detection/variables/VariableStatistics.hpp"

namespace tolven::io::xml::detection {

// One XPath expression.
using Selector = std::u16string;
// The nodes of one name, in document order.
using NodeSet = std::vector<const xmlNode*>;

struct DetectionNode;

struct Table {
    Table();
    Table(Table&&) noexcept;
    Table& operator=(Table&&) noexcept;
    ~Table();

    // The number of variables scoring counted (never 0 for an accepted table).
    std::size_t num_variables = 0;
    std::optional<Selector> table_selector;
    std::optional<Selector> row_selector;
    // The merged tree of the rows' descendants: the variables and their samples.
    std::unique_ptr<DetectionNode> tree;
    // One record per distinct name below the rows, indexed by the tree's entries.
    std::vector<VariableStatistics> statistics;
};

}  // namespace tolven::io::xml::detection
