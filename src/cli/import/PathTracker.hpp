#pragma once
// Follows compiled paths along a walk of elements given as open and close events, so that a tree
// walk and a streaming read match exactly the same nodes.

#include <cstddef>
#include <vector>

#include "cli/import/PathMatcher.hpp"

namespace tolven::cli::import {

class PathTracker {
public:
    // The patterns must outlive the tracker; results refer to them by their index in this list.
    explicit PathTracker(std::vector<const PathPattern*> patterns);

    // Starts over below a new base element (the document for absolute paths, a row for relative ones).
    // Returns the patterns without element steps: they match the base itself.
    const std::vector<std::size_t>& reset();
    // An element opens at depth (0: a child of the base). Returns the patterns whose element steps
    // it completes; a pattern with an attribute step then selects that element's attribute.
    const std::vector<std::size_t>& open(std::size_t depth, const char* uri, const char* local);
    // The element at depth closes.
    void close(std::size_t depth);
    // True when some pattern can still match below the element open at depth.
    bool alive_below(std::size_t depth) const;
    std::size_t size() const noexcept { return states_.size(); }

private:
    struct State {
        const PathPattern* pattern;
        std::size_t matched = 0;          // element steps matched along the open elements
        std::vector<unsigned> positions;  // per step: siblings so far that pass its name test
    };
    std::vector<State> states_;
    std::vector<std::size_t> matches_;
};

}  // namespace tolven::cli::import
