#include "cli/TablesCommand.hpp"

#include <iostream>

#include "cli/TablesOutput.hpp"
#include "cli/output.hpp"
#include "tables/CandidateHint.hpp"
#include "tables/TableList.hpp"
#include "xml/vcos/load_document.hpp"

namespace tolven::cli {

TablesCommand::TablesCommand(CLI::App& app)
    : command_(app.add_subcommand("tables", "List every table the XML document may hold, the likeliest first")) {
    command_->add_option("file", input_, "The XML document; - reads standard input")->capture_default_str();
    command_->add_option("--format", format_, "Output format")
        ->check(CLI::IsMember({"text", "json"}))
        ->capture_default_str();
    add_hint_options(*command_, hints_);
}

ExitCode TablesCommand::run() const {
    const bool json = format_ == "json";
    try {
        const vxArrayPtr hints = build_hint_struct(hints_);
        if (tables::has_detection_hint(hints.get()))
            std::cerr << "tolven-xml: note: tables lists every candidate; the detection hints given are ignored\n";
        const auto document = io::xml::common::vcos::load_document(input_);
        const tables::TableList list(document, hints.get());
        std::optional<std::size_t> only;
        if (hints_.table > 0) only = list.index(hints_.table);
        if (json) write_tables_json(std::cout, list, only);
        else write_tables_text(std::cout, list, only);
        return ExitCode::Done;
    } catch (const foundation::core::except::IMsgIDException& error) {
        if (json) write_json_error(std::cout, error);
        else write_text_error(std::cerr, error);
        return exit_code_for(error);
    }
}

}  // namespace tolven::cli
