#include "tables/SearchExplanation.hpp"

#include <cstdio>

#include "detection/clustering/cluster.hpp"
#include "detection/options/make_detection_options.hpp"
#include "detection/variables/DetectionNode.hpp"
#include "detection/variables/collect_statistics.hpp"
#include "host/utf.hpp"
#include "tables/CandidateHint.hpp"
#include "tables/Probe.hpp"
#include "tables/QuietLog.hpp"
#include "xml/errors.hpp"
#include "xml/xpath/names.hpp"

namespace tolven::tables {

namespace {

namespace xpath = io::xml::common::xpath;
using detection::NodeSet;

// The builtin's thresholds and minimum sizes, as its cluster evaluation applies them.
constexpr double kRowsThreshold = 0.5;
constexpr double kSideBySideThreshold = 0.7;

std::string percent(double ratio) {
    char text[16];
    std::snprintf(text, sizeof text, "%.0f%%", 100 * ratio);
    return text;
}

std::string name_of(const xmlNode* node) {
    return fl::i18n::ustring_to_utf8(xpath::written_name(node));
}

std::string describe(const detection::clustering::Cluster& cluster) {
    std::string out = "[";
    for (const NodeSet& group : cluster) {
        if (out.size() > 1) out += ", ";
        out += name_of(group.front()) + " x" + std::to_string(group.size());
    }
    return out + "]";
}

class Explainer {
public:
    explicit Explainer(const Probe& probe) : probe_(probe) {}

    // Depth first, this level before its children, until a level yields a table.
    bool visit(const xmlNode* node, xpath::LazyXPath& path) {
        const std::string where = written(path);
        if (auto groups = probe_.hasRepeatingChildrenNodes(node)) {
            for (const auto& cluster : detection::clustering::cluster(*groups))
                if (evaluate(where, cluster)) return true;
            say(where + ": no cluster of repeated names makes a table here; searching its children");
        } else {
            say(where + ": no child element name repeats here; searching its children");
        }
        xpath::UniqueNodeNameMap<std::size_t> positions;
        for (const xmlNode* c = node->children; c != nullptr; c = c->next) {
            if (c->type != XML_ELEMENT_NODE) continue;
            path.push_back(c, ++positions[positions.find_or_insert(c).first]);
            const bool found = visit(c, path);
            path.pop_back();
            if (found) return true;
        }
        return false;
    }

    std::vector<std::string> take() {
        if (skipped_ > 0) lines_.push_back("... and " + std::to_string(skipped_) + " more lines");
        return std::move(lines_);
    }

private:
    static std::string written(const xpath::LazyXPath& path) {
        try {
            return fl::i18n::ustring_to_utf8(path.materialize(xpath::XPathIndexStyle::IndexRepeated));
        } catch (const io::xml::common::error::XMLInvalidXPathExpression& e) {
            return e.strings().empty() ? std::string("?") : fl::i18n::ustring_to_utf8(e.strings().front());
        }
    }

    void say(std::string line) {
        if (lines_.size() < kMaxExplanationLines) lines_.push_back(std::move(line));
        else ++skipped_;
    }

    // Whether the builtin takes this cluster; says why or why not.
    bool evaluate(const std::string& where, const detection::clustering::Cluster& cluster) {
        if (cluster.empty()) return false;
        const bool rows = cluster.size() == 1;
        const std::size_t count = cluster.front().size();
        const std::string head = where + ": " + describe(cluster);
        if (rows && count < 2) {
            say(head + " skipped: a name that occurs once is no rows (2 needed)");
            return false;
        }
        if (!rows && count < 3) {
            say(head + " skipped: names side by side need 3 occurrences of the most frequent (" +
                std::to_string(count) + " here)");
            return false;
        }
        // Laid out as the builtin lays out the candidate, to name the column that decided.
        detection::DetectionNode tree;
        std::vector<detection::VariableStatistics> stats;
        detection::variables::StatisticsCollector collector(stats, probe_.options().ImportAttributes);
        for (std::size_t i = 0; i < count; ++i) {
            if (rows) collector.collect_into(tree, cluster.front()[i], i + 1);
            else
                for (const NodeSet& group : cluster)
                    if (i < group.size()) collector.collect_row_statistics(group[i], tree, i + 1);
        }
        const double threshold = rows ? kRowsThreshold : kSideBySideThreshold;
        const bool accepted = probe_.evaluateTable(stats, count, threshold) != 0;

        std::string best_name;
        std::size_t best = 0;
        bool best_by_presence = true;
        find_best(tree, stats, best_name, best, best_by_presence);
        const std::string kind = rows ? " as rows" : " side by side";
        std::string reason;
        if (best_name.empty()) {
            reason = "no column holds a value";
        } else {
            reason = "the fullest column '" + best_name + "' " + (best_by_presence ? "is in " : "has a value in ") +
                     std::to_string(best) + " of " + std::to_string(count) + " rows (" +
                     percent(static_cast<double>(best) / static_cast<double>(count)) + "; more than " +
                     percent(threshold) + " needed)";
        }
        say(head + kind + (accepted ? ": taken, " : ": rejected, ") + reason);
        return accepted;
    }

    // The variable that covers most rows, by the builtin's measure: leaf elements by the rows that
    // hold them, attributes and elements with children by the rows where they carry text.
    void find_best(const detection::TrackedName& entry, const std::vector<detection::VariableStatistics>& stats,
                   bool attribute, std::string& name, std::size_t& best, bool& by_presence) {
        if (entry.node == nullptr) return;
        const auto& s = stats.at(entry.statistics_index);
        if (!s.is_variable()) return;
        const bool presence = s.is_leaf && !s.is_attribute;
        const std::size_t coverage = presence ? s.num_row_appearances : s.num_non_empty_samples;
        if (name.empty() || coverage > best) {
            name = (attribute ? "@" : "") + name_of(entry.node);
            best = coverage;
            by_presence = presence;
        }
    }
    void find_best(const detection::DetectionNode& entry, const std::vector<detection::VariableStatistics>& stats,
                   std::string& name, std::size_t& best, bool& by_presence) {
        find_best(static_cast<const detection::TrackedName&>(entry), stats, false, name, best, by_presence);
        for (const auto& a : entry.attributes) find_best(a, stats, true, name, best, by_presence);
        for (const auto& c : entry.children) find_best(*c, stats, name, best, by_presence);
    }

    const Probe& probe_;
    std::vector<std::string> lines_;
    std::size_t skipped_ = 0;
};

}  // namespace

std::vector<std::string> explain_search(const std::shared_ptr<io::xml::common::vcos::DocWrapper>& document,
                                        const vxArray* hints) {
    const QuietLog quiet;
    const vxArrayPtr settings = with_hint(hints, {});
    const Probe probe(document.get(), detection::options::make_detection_options(settings.get()));
    const xmlNode* root = xmlDocGetRootElement(document->doc().get());
    if (root == nullptr) return {};
    Explainer explainer(probe);
    xpath::LazyXPath path(probe.namespaces());
    path.push_back(root, 1);
    const bool found = explainer.visit(root, path);
    std::vector<std::string> lines = explainer.take();
    if (!found) lines.emplace_back("no level of the document makes a table");
    return lines;
}

}  // namespace tolven::tables
