#include "cli/SampleOptions.hpp"

#include "cli/OptionChecks.hpp"

namespace tolven::cli {

void add_sample_options(CLI::App& command, SampleOptions& options, const std::string& stream_help) {
    auto* stream = command.add_flag("--stream", options.stream, stream_help);
    auto* no_stream = command.add_flag("--no-stream", options.no_stream, "Always load the whole document as a tree");
    stream->excludes(no_stream);
    command
        .add_option("--sample-bytes", options.sample_bytes,
                    "Inputs larger than this are streamed, and detected on their first N bytes "
                    "(units k, M, G: 64KiB, 16MiB)")
        ->transform(Size())
        ->type_name("SIZE")
        ->default_str("2MiB");
}

}  // namespace tolven::cli
