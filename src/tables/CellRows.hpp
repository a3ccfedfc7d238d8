#pragma once
// Rows whose cells are like-named siblings (a spreadsheet's Row/Cell/Data, an HTML page's tr/td):
// one column per cell position, named from a header row when there is one.

#include <libxml/tree.h>

#include <optional>
#include <string>
#include <vector>

#include "tables/ColumnProfile.hpp"
#include "tables/Probe.hpp"

namespace tolven::tables {

struct CellColumns {
    bool header_in_rows = false;     // the first row names the columns and is not data
    std::vector<std::string> names;  // the header's texts, "Column<j>" where there is none
    std::vector<std::string> steps;  // below a row: "td[2]", "ns:Cell[3]/ns:Data"
    bool named = false;              // a header row was found
    std::size_t rows = 0;            // data rows
    TableProfile profile;
};

// The positional reading of rows, or none when their children are not cells.
std::optional<CellColumns> read_cells(const std::vector<const xmlNode*>& rows, const Probe& probe);

}  // namespace tolven::tables
