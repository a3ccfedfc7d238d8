#pragma once
// The base of the seven detection strategies: everything one detection run needs, the driver of
// one run, and the hint-free table search that every strategy may start.

#include <libxml/tree.h>
#include <libxml/xpath.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "detection/Table.hpp"
#include "detection/clustering/cluster.hpp"
#include "detection/options/DetectionOptions.hpp"
#include "host/vxArray.hpp"
#include "text/TypeAnalyzerOptions.hpp"
#include "xml/vcos/DocWrapper.hpp"
#include "xml/xpath/LazyXPath.hpp"
#include "xml/xpath/NodeList.hpp"
#include "xml/xpath/UniqueNodeNameMap.hpp"
#include "xml/xpath/register_detected_namespaces.hpp"

namespace tolven::io::xml::detection {
// The result structure handed to the host.
using ImportOptions = vxArrayPtr;
}  // namespace tolven::io::xml::detection

namespace tolven::io::xml::detection::strategy {

// A node and the lazily written path that addresses it.
struct NodeLazyXPathPair {
    const xmlNode* node;
    common::xpath::LazyXPath xpath;
};

// A node and a written selector.
struct NodeSelectorPair {
    const xmlNode* node;
    Selector selector;
};

class DetectionStrategy {
public:
    // Copies the options, makes the XPath context, registers the caller's (and, if asked, the
    // document's) namespaces, and raises "TOLVEN:io:xml:detection:ProvideAtMostOneDetectionHint"
    // when more than one hint is given.
    DetectionStrategy(const common::vcos::DocWrapper* document, const options::DetectionOptions& options);
    virtual ~DetectionStrategy();
    DetectionStrategy(const DetectionStrategy&) = delete;
    DetectionStrategy& operator=(const DetectionStrategy&) = delete;

    // One run: DetectTable, then the result structure.
    virtual ImportOptions Detect() const;
    // Where and how the table is sought; no value means no table (not an error).
    virtual std::optional<Table> DetectTable() const = 0;
    // Selectors a strategy imposes on the result whatever the search finds; none by default.
    virtual std::optional<Selector> GetTableSelector() const;
    virtual std::optional<Selector> GetRowSelector() const;
    virtual std::optional<std::vector<Selector>> GetVariableSelectors() const;

protected:
    // ---- Run state --------------------------------------------------------------------------
    const std::u16string& document_source() const noexcept { return source_; }
    const options::DetectionOptions& options() const noexcept { return options_; }
    xmlDoc* document() const noexcept { return document_->get(); }
    const std::shared_ptr<xmlXPathContext>& context() const noexcept { return context_; }
    // Prefix by URI of every namespace registered for this run; every LazyXPath writes with it.
    const common::xpath::NamespaceMap& namespaces() const noexcept { return namespaces_.prefixes; }
    const common::xpath::DetectionResult& namespace_registration() const noexcept { return namespaces_; }
    const text::typedetection::TypeAnalyzerOptions& analyzer_options() const noexcept { return analyzer_; }

    // ---- Driver -----------------------------------------------------------------------------
    // The root element and a path addressing it (position 1); a null node when there is none.
    NodeLazyXPathPair GetDocumentRootNode() const;
    // The hint-free search from node (xpath addresses node and is left as it was found).
    std::optional<Table> DetectTableRecursive(const xmlNode* node, common::xpath::LazyXPath& xpath) const;
    // The result structure for a table or for none.
    ImportOptions MakeImportOptions(const std::optional<Table>& table) const;

    // ---- Recursive search -------------------------------------------------------------------
    std::optional<common::xpath::UniqueNodeNameMap<NodeSet>> hasRepeatingChildrenNodes(const xmlNode* node) const;
    std::optional<Table> DetectTableRecursiveImpl(const xmlNode* node, common::xpath::LazyXPath& xpath) const;

    // ---- Cluster evaluation -----------------------------------------------------------------
    std::optional<Table> evaulateClusters(const clustering::Clusters& clusters,
                                          const common::xpath::LazyXPath& xpath) const;
    std::optional<Table> getRowGroupedTable(const NodeSet& rows, const common::xpath::LazyXPath& xpath) const;
    std::optional<Table> getNonRowGroupedTable(const clustering::Cluster& cluster,
                                               const common::xpath::LazyXPath& xpath) const;
    // A table whose rows are the listed nodes (rows 1, 2, 3, ...), merged into one row entry.
    // When the RowSelector hint is given, every listed node must be an element:
    // an attribute raises "TOLVEN:io:xml:detection:RowSelectorAttributeSelected" (the hint),
    // any other kind "TOLVEN:io:xml:detection:RowSelectorInvalidSelection".
    std::optional<Table> getRowListTable(const Selector& row_selector, std::optional<Selector> table_selector,
                                         const common::xpath::NodeList& rows) const;

    // ---- Scoring ----------------------------------------------------------------------------
    // The number of variables when a variable covers more than tabular_threshold of the rows, else 0.
    std::size_t evaluateTable(const std::vector<VariableStatistics>& stats, std::size_t max_num_rows,
                              double tabular_threshold) const;

private:
    std::u16string source_;
    options::DetectionOptions options_;
    const common::libxml2::DocPtr* document_;
    std::shared_ptr<xmlXPathContext> context_;
    common::xpath::DetectionResult namespaces_;
    text::typedetection::TypeAnalyzerOptions analyzer_;
};

}  // namespace tolven::io::xml::detection::strategy
