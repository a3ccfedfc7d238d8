#include "detection/diagnostics/TraceScope.hpp"
#include "detection/strategy/DetectionStrategy.hpp"
#include "detection/strategy/ImportOptionsStruct.hpp"
#include "detection/variables/DetectionNode.hpp"
#include "detection/variables/VariableWalk.hpp"

namespace tolven::io::xml::detection::strategy {

ImportOptions DetectionStrategy::MakeImportOptions(const std::optional<Table>& table) const {
    TOLVEN_TRACE_SCOPE(
        "tolven::io::xml::detection::ImportOptions tolven::io::xml::detection::strategy::DetectionStrategy::"
        "MakeImportOptions(const std::optional<tolven::io::xml::detection::Table>&) const",
        "strategy/DetectionStrategy");
    diagnostics::progress("Creating ImportOptions struct to return to TOLVEN...");

    ImportOptionsFields fields;
    fields.table_detected = table.has_value();
    fields.registered_namespaces = namespace_registration().registered;
    // A selector the strategy holds from its hint wins over the table's own.
    fields.table_selector = GetTableSelector();
    fields.row_selector = GetRowSelector();
    if (table) {
        if (!fields.table_selector) fields.table_selector = table->table_selector;
        if (!fields.row_selector) fields.row_selector = table->row_selector;
        // The variables are addressed from the rows when there are any, else from the table.
        const Selector base = table->row_selector     ? *table->row_selector
                              : table->table_selector ? *table->table_selector
                                                      : Selector(u"/");
        variables::VariableWalk walk(table->statistics, namespaces(), analyzer_options(), table->num_variables);
        const std::size_t stored = table->tree ? walk.walk(*table->tree, 0, base) : 0;
        variables::VariableColumns columns = walk.take(stored);
        fields.variable_names = std::move(columns.names);
        fields.variable_types = std::move(columns.types);
        fields.variable_selectors = std::move(columns.selectors);
    }
    return make_import_options_struct(fields);
}

}  // namespace tolven::io::xml::detection::strategy
