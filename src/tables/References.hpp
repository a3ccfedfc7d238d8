#pragma once
// Lists the rest of a document looks values up in: the styles its cells name, the channels or
// sensors its records refer to, the categories, parties or questions its rows give by code.

#include <libxml/tree.h>

#include <cstddef>
#include <string_view>
#include <vector>

namespace tolven::tables {

class References {
public:
    explicit References(const xmlNode* root) : root_(root) {}

    // True when rows are a short list whose keys (an attribute or a field each row has once, no two
    // rows alike, not numbers or dates) the rest of the document names, each named key three times or more on average.
    bool looked_up(const std::vector<const xmlNode*>& rows) const;

private:
    const xmlNode* root_;
};

}  // namespace tolven::tables
