#include "detection/Table.hpp"

#include "detection/variables/DetectionNode.hpp"

namespace tolven::io::xml::detection {
Table::Table() = default;
Table::Table(Table&&) noexcept = default;
Table& Table::operator=(Table&&) noexcept = default;
Table::~Table() = default;
}  // namespace tolven::io::xml::detection
