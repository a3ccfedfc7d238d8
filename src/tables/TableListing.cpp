#include "tables/TableListing.hpp"

#include "host/except/Exception.hpp"

namespace tolven::tables {

ListedTable listed_table(const TableList& list, std::size_t index) {
    const TableCandidate& c = list.candidates().at(index);
    ListedTable t;
    t.rank = index + 1;
    t.rows = c.rows;
    t.hint = c.hint.words();
    t.builtin = c.builtin;
    t.weak = c.score.weak();
    import::DetectionResult r;
    try {
        r = list.result(index);
    } catch (const foundation::core::except::IMsgIDException&) {
        return t;
    }
    t.table_selector = std::move(r.table_selector);
    t.row_selector = std::move(r.row_selector);
    for (auto& v : r.variables) t.variable_names.push_back(std::move(v.name));
    t.namespaces = std::move(r.namespaces);
    return t;
}

std::vector<ListedTable> listed_tables(const TableList& list) {
    std::vector<ListedTable> out;
    out.reserve(list.candidates().size());
    for (std::size_t i = 0; i < list.candidates().size(); ++i) out.push_back(listed_table(list, i));
    return out;
}

}  // namespace tolven::tables
