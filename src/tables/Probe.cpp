#include "tables/Probe.hpp"

namespace tolven::tables {

Probe::Probe(const io::xml::common::vcos::DocWrapper* document, const detection::options::DetectionOptions& options)
    : DetectionStrategy(document, options) {}

}  // namespace tolven::tables
