#pragma once
// The builtin's entry and the choice of one detection strategy from the hints.

#include <memory>

#include "detection/arguments/parse.hpp"
#include "detection/strategy/DetectionStrategy.hpp"

namespace tolven::io::xml::detection {

class TableDetector {
public:
    explicit TableDetector(const arguments::ParsedArguments& arguments);

    // Chooses a strategy, runs it and returns the result structure.
    ImportOptions Detect() const;
    // The strategy of the first given hint in the order TableSelector, TableNodeName, RowSelector,
    // RowNodeName, VariableSelectors, VariableNodeNames; DefaultStrategy without one.
    std::unique_ptr<strategy::DetectionStrategy> ChooseDetectionStrategy() const;
    // The class name of the strategy ChooseDetectionStrategy builds for options ("RowNodeNameStrategy").
    static const char* ChosenStrategyName(const options::DetectionOptions& options);

private:
    const common::vcos::DocWrapper* document_;
    options::DetectionOptions options_;
};

// The exported builtin: prhs[0] the document object, prhs[1] the hint structure; the result goes
// into plhs[0]. On error plhs[0] is left as it was and the error leaves through the host's error path.
void detect(int nlhs, std::unique_ptr<vxArray, matrix::detail::vxDestroy_deleter>* plhs, int nrhs,
            const vxArray** prhs);

}  // namespace tolven::io::xml::detection
