#pragma once
// Gathering the per-name statistics and samples of a candidate table's rows into its detection tree.

#include <libxml/tree.h>

#include <cstddef>
#include <vector>

#include "detection/variables/DetectionNode.hpp"
#include "detection/variables/VariableStatistics.hpp"

namespace tolven::io::xml::detection::variables {

// Merges row members into a detection tree, appending one VariableStatistics record per new name.
// Rows are numbered by the caller; a name counts once per row however often it occurs there.
// Nothing is copied: names and samples stay views into the document.
class StatisticsCollector {
public:
    StatisticsCollector(std::vector<VariableStatistics>& statistics, bool import_attributes)
        : statistics_(statistics), import_attributes_(import_attributes) {}

    // Counts member under parent's entry of the same name (made on first sight) as part of row,
    // then merges its subtree. Returns that entry.
    DetectionNode& collect_row_statistics(const xmlNode* member, DetectionNode& parent, std::size_t row);

    // Counts member as an occurrence of entry whatever its name, then merges its subtree. An entry
    // without node is made the member's (so the first member names it).
    void collect_into(DetectionNode& entry, const xmlNode* member, std::size_t row);

    // Counts and samples the attributes of node under entry's attribute map.
    void collect_attribute_statistics(const xmlNode* node, DetectionNode& entry, std::size_t row);

private:
    // A new record for a name seen for the first time in row.
    void start(TrackedName& entry, const xmlNode* node, std::size_t row, bool is_attribute);
    // One more occurrence of a known name in row.
    void count(TrackedName& entry, std::size_t row);
    // Keeps text as the entry's sample for the row when it is its first non-blank one.
    void sample(TrackedName& entry, const xmlChar* text);
    // Merges a counted element's attributes, children and text into entry, then settles its leaf flag.
    void descend(DetectionNode& entry, const xmlNode* node, std::size_t row);

    std::vector<VariableStatistics>& statistics_;
    bool import_attributes_;
};

}  // namespace tolven::io::xml::detection::variables
