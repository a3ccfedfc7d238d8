#pragma once
#include "detection/strategy/DetectionStrategy.hpp"

namespace tolven::io::xml::detection::strategy {

// No hint: the hint-free search from the document's root element.
class DefaultStrategy : public DetectionStrategy {
public:
    DefaultStrategy(const common::vcos::DocWrapper* document, const options::DetectionOptions& options);
    ~DefaultStrategy() override;

    std::optional<Table> DetectTable() const override;
};

}  // namespace tolven::io::xml::detection::strategy
