#include "tables/choose_table.hpp"

#include "detection/errors/errors.hpp"
#include "tables/CandidateHint.hpp"
#include "tables/TableList.hpp"

namespace tolven::tables {

import::DetectionResult choose_table(const std::shared_ptr<io::xml::common::vcos::DocWrapper>& document,
                                     const vxArray* hints, std::size_t number) {
    if (number == 0) return import::run_detect(document, hints);
    // A candidate is selected by a hint of its own, which a hint of the caller's would contradict.
    if (has_detection_hint(hints)) vxErrMsgId(TOLVEN::io::xml::detection::ProvideAtMostOneDetectionHint());
    const TableList list(document, hints);
    return list.result(list.index(number));
}

}  // namespace tolven::tables
