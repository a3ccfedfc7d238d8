#include "cli/DetectCommand.hpp"

#include <iostream>
#include <sstream>

#include "import/ColumnNames.hpp"
#include "import/DetectionResult.hpp"
#include "import/InputDocument.hpp"
#include "import/TableReader.hpp"
#include "cli/TableChoice.hpp"
#include "cli/Verbosity.hpp"
#include "cli/output.hpp"
#include "detection/TableDetector.hpp"
#include "detection/options/make_detection_options.hpp"
#include "xml/log/getLogger.hpp"

namespace tolven::cli {

using import::DetectionResult;

namespace {

// The strategy detect chose for these hints. The hints are read a second time, so the log is
// muted meanwhile: the records of the real run have already been written.
std::string chosen_strategy(const vxArray* hints) {
    struct Muted {
        io::xml::common::log::Logger& logger = io::xml::common::log::getLogger();
        unsigned mask = logger.mask();
        Muted() { logger.set_mask(0); }
        ~Muted() { logger.set_mask(mask); }
    } muted;
    return io::xml::detection::TableDetector::ChosenStrategyName(
        io::xml::detection::options::make_detection_options(hints));
}

}  // namespace

DetectCommand::DetectCommand(CLI::App& app)
    : command_(app.add_subcommand("detect", "Find the table in an XML document and print how to import it")) {
    command_->add_option("file", input_, "The XML document; - or none reads standard input")->type_name("FILE");
    command_->add_option("--format", format_, "Output format")
        ->check(CLI::IsMember({"text", "json"}))
        ->capture_default_str();
    command_->add_flag("--huge", huge_,
                       "Lift the parser's limits (nesting deeper than 256 levels, text nodes over 10 MB, "
                       "entity expansion) for a document you trust");
    add_sample_options(*command_, sample_,
                       "Detect on a sample and a streaming pass over the whole document, whatever the size");
    add_hint_options(*command_, hints_);
    add_verbosity_option(*command_, verbosity_);
}

ExitCode DetectCommand::run() const {
    apply_verbosity(verbosity_);
    const bool json = format_ == "json";
    TableChoice choice(hints_, verbosity_, std::cerr,
                       [](std::string_view text) { std::cerr << "tolven-xml: note: " << text << '\n'; });
    try {
        const HintOptions given = with_hints_file(hints_);
        vxArrayPtr hints = build_hint_struct(given);
        import::ReadSettings settings;
        settings.mode = sample_.mode();
        settings.sample_bytes = sample_.sample_bytes;
        settings.huge = huge_;
        settings.detect_only = true;
        settings.parallel = true;  // the pass over a large input surveys on a second thread
        settings.detect = [&choice](const auto& document, const vxArray* h) { return choice.detect(document, h); };
        import::InputDocument input(input_);
        const import::TableReader reader(input, hints.get(), settings,
                                         [](std::string_view text) { std::cerr << "tolven-xml: note: " << text << '\n'; });
        const DetectionResult& result = reader.result();
        // Rendered whole, then written in one go, so a full disk or a closed pipe is an error.
        std::ostringstream text;
        if (json) {
            write_json(text, result);
        } else {
            if (verbosity_ > 0)
                text << "Strategy:       "
                     << (given.table > 0 ? "candidate " + std::to_string(given.table) + " of tolven-xml tables (--table)"
                                         : chosen_strategy(hints.get()))
                     << '\n';
            std::vector<std::string> names;
            for (const auto& v : result.variables) names.push_back(v.name);
            write_text(text, result, import::make_column_names(names, given.attribute_suffix));
        }
        write_standard_output(text.str());
        return ExitCode::Done;
    } catch (const foundation::core::except::IMsgIDException& error) {
        report_error(error, json, choice.message(error));
        return exit_code_for(error);
    }
}

}  // namespace tolven::cli
