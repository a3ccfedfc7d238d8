#include "import/RowValues.hpp"

namespace tolven::import {

std::size_t RowValues::bytes() const noexcept {
    std::size_t total = 0;
    for (const auto& c : columns_)
        for (std::size_t k = 0; k < c.count; ++k) total += c.texts[k].size();
    return total;
}

}  // namespace tolven::import
