#pragma once
// Every table a document may hold, ranked so that the one a person most likely wants comes first,
// with what the builtin gives for each when it is pointed at it.

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

#include "host/vxArray.hpp"
#include "import/DetectionResult.hpp"
#include "tables/TableCandidate.hpp"
#include "xml/vcos/DocWrapper.hpp"

namespace tolven::tables {

class TableList {
public:
    // Finds and ranks the candidates of document. hints is a hint structure whose import settings
    // apply (its detection hints are ignored); builtin is what the builtin found with those settings
    // and no hint, when the caller already knows it. Raises the builtin's errors about the settings
    // (a pick the builtin cannot write is simply not marked).
    TableList(std::shared_ptr<io::xml::common::vcos::DocWrapper> document, const vxArray* hints,
              std::optional<import::DetectionResult> builtin = std::nullopt);

    // Best first; at most kMaxListed, the builtin's own pick always among them.
    const std::vector<TableCandidate>& candidates() const noexcept { return candidates_; }
    static constexpr std::size_t kMaxListed = 30;

    // The builtin's own pick: what detect finds without hints (TableDetected false when nothing).
    const import::DetectionResult& builtin_result() const noexcept { return builtin_; }
    // The position of the builtin's pick in candidates(); none when it found no table.
    std::optional<std::size_t> builtin_index() const;

    // The index in candidates() of candidate number (1 is the likeliest). Raises
    // "TOLVEN:import:NoSuchTable" (number, count, source) when there is no such candidate.
    std::size_t index(std::size_t number) const;

    // What the builtin gives for candidate index (0-based) pointed at by its hint, with the
    // candidate's own column names for cells and keyed rows: what --table index+1 yields.
    import::DetectionResult result(std::size_t index) const;

private:
    std::shared_ptr<io::xml::common::vcos::DocWrapper> document_;
    vxArrayPtr settings_;
    import::DetectionResult builtin_;
    std::vector<TableCandidate> candidates_;
};

}  // namespace tolven::tables
