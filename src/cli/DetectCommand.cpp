#include "cli/DetectCommand.hpp"

#include <iostream>

#include "cli/DetectionResult.hpp"
#include "cli/Verbosity.hpp"
#include "cli/output.hpp"
#include "detection/TableDetector.hpp"
#include "detection/options/make_detection_options.hpp"
#include "xml/log/getLogger.hpp"
#include "xml/vcos/load_document.hpp"

namespace tolven::cli {

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
    command_->add_option("file", input_, "The XML document; - reads standard input")->capture_default_str();
    command_->add_option("--format", format_, "Output format")
        ->check(CLI::IsMember({"text", "json"}))
        ->capture_default_str();
    add_hint_options(*command_, hints_);
    add_verbosity_option(*command_, verbosity_);
}

ExitCode DetectCommand::run() const {
    apply_verbosity(verbosity_);
    const bool json = format_ == "json";
    try {
        vxArrayPtr hints = build_hint_struct(hints_);
        auto document = io::xml::common::vcos::load_document(input_);
        const DetectionResult result = run_detect(document, hints.get());
        if (json) {
            write_json(std::cout, result);
        } else {
            if (verbosity_ > 0) std::cout << "Strategy:       " << chosen_strategy(hints.get()) << '\n';
            write_text(std::cout, result);
        }
        return ExitCode::Done;
    } catch (const foundation::core::except::IMsgIDException& error) {
        if (json) write_json_error(std::cout, error);
        else write_text_error(std::cerr, error);
        return exit_code_for(error);
    }
}

}  // namespace tolven::cli
