#pragma once
// Lists the rest of a document looks values up in: the styles its cells name, the channels or
// sensors its records refer to, the categories, parties or questions its rows give by code.

#include <libxml/tree.h>

#include <cstddef>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tolven::tables {

class References {
public:
    explicit References(const xmlNode* root) : root_(root) {}

    // True when rows are a short list whose keys (an attribute or a field each row has once, no two
    // rows alike, not numbers or dates) the rest of the document names, each named key three times or more on average.
    bool looked_up(const std::vector<const xmlNode*>& rows);

private:
    // How often value occurs in the document as an element's name, an attribute value or a leaf text.
    std::size_t mentioned(std::string_view value);

    const xmlNode* root_;
    std::unordered_map<std::string_view, std::size_t> mentions_;  // each one's count, once counted
    bool indexed_ = false;
    std::size_t asked_ = 0;  // candidates whose keys were counted
};

}  // namespace tolven::tables
