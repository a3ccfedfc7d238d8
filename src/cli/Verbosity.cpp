#include "cli/Verbosity.hpp"

#include <iostream>

#include "xml/log/getLogger.hpp"

namespace tolven::cli {

namespace log = io::xml::common::log;

void add_verbosity_option(CLI::App& app, int& verbosity) {
    app.add_flag("-v,--verbose", verbosity,
                 "Diagnostics on standard error: -v progress, -vv also data dumps, -vvv also function traces");
}

void apply_verbosity(int verbosity) {
    unsigned mask = log::mask_of(log::Severity::error) | log::mask_of(log::Severity::warning);
    if (verbosity >= 1) mask |= log::kProgressMask | log::mask_of(log::Severity::info);
    if (verbosity >= 2) mask |= log::kDebugMask;
    if (verbosity >= 3) mask |= log::kTraceMask;
    log::set_stream_sink(&std::cerr);
    log::getLogger().set_mask(mask);
}

}  // namespace tolven::cli
