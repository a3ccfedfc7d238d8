#include "text/typedetection/TypeVote.hpp"

#include <algorithm>

#include "text/ConvertDetectionTypeToTolvenType.hpp"
#include "text/typedetection/classify.hpp"

namespace tolven::io::text::typedetection {

void TypeVote::add(const TypeAnalyzerOptions& options, std::string_view sample, textio::MutableField& scratch) {
    scratch.assign_utf8(sample);
    const TolvenType type = ConvertDetectionTypeToTolvenType(classify(options, scratch.text()));
    const auto it = std::find_if(tallies_.begin(), tallies_.end(), [type](const Tally& t) { return t.type == type; });
    if (it == tallies_.end()) tallies_.push_back({type, 1, samples_});
    else ++it->count;
    ++samples_;
}

TolvenType TypeVote::result() const {
    // The same ranking as detect_variable_type: most votes, ties to the type seen first; empty values
    // win only alone, and nothing at all is text.
    // Each type is first seen at its own sample, so this order is total: a plain sort is stable.
    std::vector<Tally> ranking = tallies_;
    std::sort(ranking.begin(), ranking.end(), [](const Tally& a, const Tally& b) {
        return a.count != b.count ? a.count > b.count : a.first < b.first;
    });
    if (ranking.empty()) return TolvenType::String;
    if (ranking.front().type != TolvenType::Empty) return ranking.front().type;
    return ranking.size() == 1 ? TolvenType::String : ranking[1].type;
}

}  // namespace tolven::io::text::typedetection
