#include "cli/import/PathTracker.hpp"

namespace tolven::cli::import {

PathTracker::PathTracker(std::vector<const PathPattern*> patterns) {
    states_.reserve(patterns.size());
    for (const PathPattern* p : patterns) states_.push_back({p, 0, std::vector<unsigned>(p->elements.size(), 0)});
}

const std::vector<std::size_t>& PathTracker::reset() {
    matches_.clear();
    for (std::size_t i = 0; i < states_.size(); ++i) {
        State& s = states_[i];
        s.matched = 0;
        if (s.positions.empty()) matches_.push_back(i);
        else s.positions[0] = 0;
    }
    return matches_;
}

const std::vector<std::size_t>& PathTracker::open(std::size_t depth, const char* uri, const char* local) {
    matches_.clear();
    for (std::size_t i = 0; i < states_.size(); ++i) {
        State& s = states_[i];
        // Only a pattern matched down to the parent can go one step further.
        if (s.matched != depth || depth >= s.positions.size()) continue;
        const PathStep& step = s.pattern->elements[depth];
        if (!step.name.matches(uri, local)) continue;
        if (step.position != 0 && ++s.positions[depth] != step.position) continue;
        s.matched = depth + 1;
        if (s.matched < s.positions.size()) s.positions[s.matched] = 0;  // a new parent: count its children afresh
        else matches_.push_back(i);
    }
    return matches_;
}

void PathTracker::close(std::size_t depth) {
    for (State& s : states_)
        if (s.matched == depth + 1) s.matched = depth;
}

bool PathTracker::alive_below(std::size_t depth) const {
    for (const State& s : states_)
        if (s.matched == depth + 1 && s.matched < s.positions.size()) return true;
    return false;
}

}  // namespace tolven::cli::import
