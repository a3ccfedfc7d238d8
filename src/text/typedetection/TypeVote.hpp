#pragma once
// detect_variable_type's vote taken one sample at a time, for a streaming pass that cannot keep its
// samples: each is classified on arrival and only the tallies are kept.

#include <cstdint>
#include <string_view>
#include <vector>

#include "text/TypeAnalyzerOptions.hpp"
#include "text/enums.hpp"
#include "text/textio/MutableField.hpp"

namespace tolven::io::text::typedetection {

class TypeVote {
public:
    // Classifies sample (UTF-8) under options; scratch is a buffer to reuse between calls.
    void add(const TypeAnalyzerOptions& options, std::string_view sample, textio::MutableField& scratch);
    std::uint64_t samples() const noexcept { return samples_; }
    // The type detect_variable_type gives for the same samples with a limit of at least their number.
    TolvenType result() const;

private:
    struct Tally {
        TolvenType type;
        std::uint64_t count;
        std::uint64_t first;  // the index of the first sample of this type
    };
    std::vector<Tally> tallies_;  // in order of first sample
    std::uint64_t samples_ = 0;
};

}  // namespace tolven::io::text::typedetection
