#include "text/typedetection/detect_variable_type.hpp"

#include <algorithm>
#include <array>
#include <cstdint>

#include "text/ConvertDetectionTypeToTolvenType.hpp"
#include "text/textio/MutableField.hpp"

namespace tolven::io::text::typedetection {

namespace {

struct Tally {
    std::uint64_t count = 0;
    std::uint64_t first = 0;  // index in the sample list of the first sample of this type
};

struct Ranked {
    TolvenType type;
    std::uint64_t count;
    std::uint64_t first;
};

std::size_t slot(TolvenType type) noexcept { return static_cast<std::size_t>(type); }

}  // namespace

TolvenType detect_variable_type(const TypeAnalyzerOptions& options, const std::vector<std::string_view>& samples,
                                std::size_t limit) {
    if (samples.empty()) return TolvenType::String;

    // The type is one byte, so a table indexed by it serves as the vote map.
    std::array<Tally, 256> votes{};
    textio::MutableField value;  // one buffer for all samples

    // Batches: each classifies as many samples as non-empty ones are still wanted; empty samples
    // found in a batch leave room for another batch.
    std::size_t next = 0;
    std::size_t seen = 0;
    for (;;) {
        const std::size_t batch_end = next + std::min(limit - seen, samples.size() - next);
        for (std::size_t i = next; i < batch_end; ++i) {
            value.assign_utf8(samples[i]);
            Tally& tally = votes[slot(ConvertDetectionTypeToTolvenType(classify(options, value.text())))];
            if (tally.count++ == 0) tally.first = i;
        }
        seen = batch_end - votes[slot(TolvenType::Empty)].count;
        if (seen >= limit || batch_end >= samples.size()) break;
        next = batch_end;
    }

    std::vector<Ranked> ranking;
    for (std::size_t type = 0; type < votes.size(); ++type) {
        if (votes[type].count > 0) {
            ranking.push_back({static_cast<TolvenType>(type), votes[type].count, votes[type].first});
        }
    }
    std::sort(ranking.begin(), ranking.end(), [](const Ranked& a, const Ranked& b) {
        return a.count != b.count ? a.count > b.count : a.first < b.first;
    });
    // Nothing classified happens only with a limit of zero.
    if (ranking.empty()) return TolvenType::String;
    if (ranking.front().type != TolvenType::Empty) return ranking.front().type;
    return ranking.size() == 1 ? TolvenType::String : ranking[1].type;
}

}  // namespace tolven::io::text::typedetection
