#pragma once
// The detection tree: the rows' descendants merged by name. Each entry tracks one distinct
// element or attribute name below its parent entry and points at that name's statistics record.

#include <libxml/tree.h>

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

#include "xml/xpath/UniqueNodeNameMap.hpp"

namespace tolven::io::xml::detection {

// At most this many text samples are kept per name; further values are counted, not kept.
inline constexpr std::size_t kMaxSamples = 250;

// What is tracked for one name. Attribute entries are nothing more than this.
struct TrackedName {
    // The first node met under this name; an attribute is held cast to xmlNode (the leading
    // fields match). Null for the entry above the rows of a non-row-grouped table.
    const xmlNode* node = nullptr;
    std::size_t statistics_index = 0;  // its record in Table::statistics
    std::size_t last_row = 0;          // the last row in which it was counted
    bool sampled_in_row = false;       // it already gave a sample in last_row
    std::vector<std::string_view> samples;  // views into the document, at most kMaxSamples
};

struct DetectionNode : TrackedName {
    common::xpath::UniqueNodeNameMap<std::unique_ptr<DetectionNode>> children;
    common::xpath::UniqueNodeNameMap<TrackedName> attributes;
};

}  // namespace tolven::io::xml::detection
