#include "detection/variables/collect_statistics.hpp"

#include <string_view>

namespace tolven::io::xml::detection::variables {

namespace {

constexpr std::string_view kBlank = " \t\n\r";

std::string_view view(const xmlChar* text) {
    return text != nullptr ? std::string_view(reinterpret_cast<const char*>(text)) : std::string_view();
}

}  // namespace

DetectionNode& StatisticsCollector::collect_row_statistics(const xmlNode* member, DetectionNode& parent,
                                                           std::size_t row) {
    const auto [index, added] = parent.children.find_or_insert(member);
    std::unique_ptr<DetectionNode>& slot = parent.children[index];
    if (added) {
        slot = std::make_unique<DetectionNode>();
        start(*slot, member, row, false);
    } else {
        count(*slot, row);
    }
    DetectionNode& entry = *slot;
    descend(entry, member, row);
    return entry;
}

void StatisticsCollector::collect_into(DetectionNode& entry, const xmlNode* member, std::size_t row) {
    if (entry.node == nullptr)
        start(entry, member, row, false);
    else
        count(entry, row);
    descend(entry, member, row);
}

void StatisticsCollector::collect_attribute_statistics(const xmlNode* node, DetectionNode& entry, std::size_t row) {
    for (const xmlAttr* attr = node->properties; attr != nullptr; attr = attr->next) {
        const auto [index, added] = entry.attributes.find_or_insert(attr);
        TrackedName& tracked = entry.attributes[index];
        if (added)
            start(tracked, reinterpret_cast<const xmlNode*>(attr), row, true);
        else
            count(tracked, row);
        sample(tracked, attr->children != nullptr ? attr->children->content : nullptr);
    }
}

void StatisticsCollector::start(TrackedName& entry, const xmlNode* node, std::size_t row, bool is_attribute) {
    entry.node = node;
    entry.last_row = row;
    entry.sampled_in_row = false;
    entry.statistics_index = statistics_.size();
    VariableStatistics& record = statistics_.emplace_back();
    record.num_row_appearances = 1;
    record.num_non_empty_samples = 0;
    record.total_appearences = 1;
    record.is_leaf = true;
    record.is_attribute = is_attribute;
}

void StatisticsCollector::count(TrackedName& entry, std::size_t row) {
    VariableStatistics& record = statistics_[entry.statistics_index];
    if (entry.last_row < row) {
        entry.last_row = row;
        entry.sampled_in_row = false;
        ++record.num_row_appearances;
    }
    ++record.total_appearences;
}

void StatisticsCollector::sample(TrackedName& entry, const xmlChar* text) {
    // One sample per row: later values of the same name in the row are ignored.
    if (entry.sampled_in_row) return;
    const std::string_view value = view(text);
    if (value.find_first_not_of(kBlank) == std::string_view::npos) return;
    // Built in place: GCC 12 at -O3 takes a copy of the local view for a dangling pointer.
    if (entry.samples.size() < kMaxSamples) entry.samples.emplace_back(value.data(), value.size());
    entry.sampled_in_row = true;
    ++statistics_[entry.statistics_index].num_non_empty_samples;
}

void StatisticsCollector::descend(DetectionNode& entry, const xmlNode* node, std::size_t row) {
    // An element with attributes is never a leaf, whether or not its attributes are imported.
    bool leaf = node->properties == nullptr;
    if (import_attributes_) collect_attribute_statistics(node, entry, row);

    for (const xmlNode* child = node->children; child != nullptr; child = child->next) {
        switch (child->type) {
            case XML_ELEMENT_NODE:
                collect_row_statistics(child, entry, row);
                leaf = false;
                break;
            case XML_TEXT_NODE:
            case XML_CDATA_SECTION_NODE:
                sample(entry, child->content);
                break;
            default:
                break;
        }
    }
    // Once seen with children (or attributes) a name is never a leaf again.
    VariableStatistics& record = statistics_[entry.statistics_index];
    record.is_leaf = record.is_leaf && leaf;
}

}  // namespace tolven::io::xml::detection::variables
