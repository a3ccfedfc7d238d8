#include "tolven/tables.hpp"

#include "api/host_hints.hpp"
#include "api/translate_errors.hpp"
#include "tables/TableListing.hpp"
#include "xml/vcos/load_document.hpp"

namespace tolven::xml {

std::vector<TableCandidate> tables(const Source& source, const Hints& hints) {
    return api::translating_errors([&] {
        namespace vcos = io::xml::common::vcos;
        const vxArrayPtr host_hints = api::make_hint_struct(hints);
        const auto document = source.in_memory ? vcos::load_document_from_memory(source.bytes, source.name)
                                               : vcos::load_document(source.name);
        std::vector<TableCandidate> out;
        for (auto& l : tolven::tables::listed_tables(tolven::tables::TableList(document, host_hints.get()))) {
            const std::size_t columns = l.variable_names.size();
            out.push_back({l.rank, std::move(l.table_selector), std::move(l.row_selector), l.rows, columns,
                           std::move(l.variable_names), std::move(l.hint), l.builtin, l.weak, std::move(l.namespaces)});
        }
        return out;
    });
}

}  // namespace tolven::xml
