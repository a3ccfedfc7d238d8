#include "import/PathTracker.hpp"

#include <algorithm>
#include <cstring>

namespace tolven::import {

namespace {

bool same_step(const PathStep& a, const PathStep& b) {
    return a.position == b.position && a.name.kind == b.name.kind && a.name.local == b.name.local &&
           a.name.uri == b.name.uri;
}

}  // namespace

PathTracker::PathTracker(std::vector<const PathPattern*> patterns) : nodes_(1), size_(patterns.size()) {
    for (std::size_t p = 0; p < patterns.size(); ++p) {
        Index at = 0;
        for (const PathStep& step : patterns[p]->elements) {
            Node& parent = nodes_[at];
            auto& siblings = step.name.kind == NameTest::Kind::Any ? parent.any : parent.named[step.name.local];
            const auto found = std::find_if(siblings.begin(), siblings.end(),
                                            [&](Index child) { return same_step(*nodes_[child].step, step); });
            if (found != siblings.end()) {
                at = *found;
                continue;
            }
            const auto child = static_cast<Index>(nodes_.size());
            siblings.push_back(child);
            if (step.position != 0) parent.positioned.push_back(child);
            nodes_.emplace_back();  // invalidates parent
            nodes_.back().step = &step;
            nodes_.back().position = step.position;
            nodes_.back().qualified = step.name.kind == NameTest::Kind::Qualified;
            at = child;
        }
        nodes_[at].ends.push_back(p);
    }
    counts_.assign(nodes_.size(), 0);
    leaf_.reserve(nodes_.size());
    for (const Node& node : nodes_) leaf_.push_back(node.leaf());
}

void PathTracker::bind(const std::function<const char*(std::string_view)>& intern) {
    for (Node& node : nodes_) {
        node.interned.clear();
        if (!node.named.empty()) {
            std::size_t size = 2;
            while (size < 2 * node.named.size()) size *= 2;
            node.interned.assign(size, {nullptr, nullptr});
            for (const auto& [local, children] : node.named) {
                const char* key = intern(local);
                std::size_t at = slot(key, size);
                while (node.interned[at].first != nullptr) at = (at + 1) & (size - 1);
                node.interned[at] = {key, &children};
            }
        }
        if (node.step != nullptr && node.step->name.kind == NameTest::Kind::Qualified && node.step->name.uri)
            node.uri = intern(*node.step->name.uri);
    }
    bound_ = true;
}

bool PathTracker::passes(const Node& node, const char* uri, const char* local) const {
    if (!bound_) return node.step->name.matches(uri, local);
    // The local name was matched by the index; a qualified name also needs its namespace.
    return !node.qualified || node.uri == uri;
}

void PathTracker::enter(Index node) {
    const auto& positioned = nodes_[node].positioned;
    if (positioned.empty()) return;
    for (const Index child : positioned) counts_[child] = 0;
}

const std::vector<std::size_t>& PathTracker::reset() {
    if (active_.empty()) active_.emplace_back();
    active_[0].assign(1, 0);
    // Below the base: depth 0 is open to matching, and nothing deeper until an element matches.
    frontier_ = 0;
    enter(0);
    matches_ = nodes_[0].ends;
    return matches_;
}

void PathTracker::try_children(const std::vector<Index>& children, std::vector<Index>& next, const char* uri,
                               const char* local) {
    for (const Index child : children) {
        const Node& node = nodes_[child];
        if (!passes(node, uri, local)) continue;
        if (node.position != 0 && ++counts_[child] != node.position) continue;
        next.push_back(child);
        enter(child);
        // One at a time: a node ends one pattern or none, and a range insert costs more.
        for (const std::size_t p : node.ends) matches_.push_back(p);
    }
}

const std::vector<std::size_t>& PathTracker::open_matching(std::size_t depth, const char* uri, const char* local) {
    matches_.clear();
    if (active_.size() < depth + 2) active_.resize(depth + 2);
    std::vector<Index>& next = active_[depth + 1];
    next.clear();
    for (const Index parent : active_[depth]) {
        const Node& node = nodes_[parent];
        if (!node.any.empty()) try_children(node.any, next, uri, local);
        if (bound_) {
            if (node.interned.empty()) continue;
            const std::size_t mask = node.interned.size() - 1;
            for (std::size_t at = slot(local, node.interned.size()); node.interned[at].first != nullptr;
                 at = (at + 1) & mask) {
                if (node.interned[at].first == local) {
                    try_children(*node.interned[at].second, next, uri, local);
                    break;
                }
            }
        } else if (!node.named.empty()) {
            if (const auto found = node.named.find(local); found != node.named.end())
                try_children(found->second, next, uri, local);
        }
    }
    frontier_ = has_children(next) ? depth + 1 : depth;
    if (matches_.size() > 1) std::sort(matches_.begin(), matches_.end());
    return matches_;
}

bool PathTracker::has_children(const std::vector<Index>& level) const {
    for (const Index node : level)
        if (!leaf_[node]) return true;
    return false;
}

}  // namespace tolven::import
