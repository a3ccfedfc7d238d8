#pragma once
// Follows compiled paths along a walk of elements given as open and close events, so that a tree
// walk and a streaming read match exactly the same nodes. The paths are merged into a tree of steps
// indexed by local name, so an element costs the same whatever the number of paths: only the steps
// open at its depth that can take its name are tried.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "import/PathMatcher.hpp"

namespace tolven::import {

class PathTracker {
public:
    // The patterns must outlive the tracker; results refer to them by their index in this list.
    explicit PathTracker(std::vector<const PathPattern*> patterns);

    // Names given to open() from now on are interned by intern (a parse's dictionary, which gives one
    // pointer per name): they are then compared by pointer. Without it names are compared as text.
    void bind(const std::function<const char*(std::string_view)>& intern);

    // Starts over below a new base element (the document for absolute paths, a row for relative ones).
    // Returns the patterns without element steps: they match the base itself.
    const std::vector<std::size_t>& reset();
    // An element opens at depth (0: a child of the base). Returns the patterns whose element steps
    // it completes, in the order of the list; a pattern with an attribute step then selects that
    // element's attribute.
    const std::vector<std::size_t>& open(std::size_t depth, const char* uri, const char* local) {
        // Below the frontier nothing can match: most elements of a row, for the absolute paths.
        if (depth > frontier_) {
            matches_.clear();
            return matches_;
        }
        return open_matching(depth, uri, local);
    }
    // The element at depth closes.
    void close(std::size_t depth) {
        if (depth < frontier_) frontier_ = depth;
    }
    // True when some pattern can still match below the element open at depth.
    bool alive_below(std::size_t depth) const { return frontier_ > depth; }
    std::size_t size() const noexcept { return size_; }
    // Where an interned name starts its probe in an open-addressing table of size slots (a power of
    // two).
    static std::size_t slot(const char* name, std::size_t size) noexcept {
        // Interned names are distinct addresses; the multiplication spreads their low bits.
        return static_cast<std::size_t>((reinterpret_cast<std::uintptr_t>(name) >> 3) * 0x9E3779B97F4A7C15ull >> 32) &
               (size - 1);
    }

private:
    using Index = std::uint32_t;
    // One step shared by the patterns that start with the same steps; nodes_[0] is the base.
    struct Node {
        const PathStep* step = nullptr;
        // The step's position and whether its name is qualified, read on every element without
        // going through step.
        unsigned position = 0;
        bool qualified = false;
        const char* uri = nullptr;    // once bound: the interned namespace URI of a qualified name
        std::vector<std::size_t> ends;  // the patterns whose element steps end here
        std::vector<Index> any;         // children that take any name
        std::unordered_map<std::string_view, std::vector<Index>> named;  // the others, by local name
        // The same once bound, in a table addressed by the interned pointer (open addressing, its
        // size a power of two): an element's name finds its children in about one probe.
        std::vector<std::pair<const char*, const std::vector<Index>*>> interned;
        std::vector<Index> positioned;  // children that count their siblings
        bool leaf() const { return any.empty() && named.empty(); }
    };

    const std::vector<std::size_t>& open_matching(std::size_t depth, const char* uri, const char* local);
    bool passes(const Node& node, const char* uri, const char* local) const;
    bool has_children(const std::vector<Index>& level) const;
    void enter(Index node);
    void try_children(const std::vector<Index>& children, std::vector<Index>& next, const char* uri, const char* local);

    std::vector<Node> nodes_;
    std::vector<unsigned> counts_;
    std::vector<char> leaf_;  // per node: no children, as Node::leaf says; read on every element  // per node: siblings so far under the current parent that pass its test
    std::size_t size_ = 0;
    bool bound_ = false;
    // Undo list per depth: the nodes the open element at each depth matched (active_[0]: the base).
    std::vector<std::vector<Index>> active_;
    // The deepest depth whose active nodes have children: deeper elements cannot match, and cost
    // nothing but this comparison.
    std::size_t frontier_ = 0;
    std::vector<std::size_t> matches_;
};

}  // namespace tolven::import
