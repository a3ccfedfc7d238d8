#pragma once
// --stream, --no-stream and --sample-bytes, shared by read and detect so that both choose between a
// tree of the whole document and a sample plus a streaming pass the same way.

#include <CLI/CLI.hpp>

#include <cstdint>
#include <string>

#include "import/TableReader.hpp"

namespace tolven::cli {

struct SampleOptions {
    bool stream = false;
    bool no_stream = false;
    std::uint64_t sample_bytes = import::ReadSettings::kDefaultSampleBytes;

    import::ReadSettings::Mode mode() const {
        return stream ? import::ReadSettings::Mode::Stream
               : no_stream ? import::ReadSettings::Mode::Tree
                           : import::ReadSettings::Mode::Auto;
    }
};

// Adds the three options; stream_help says what --stream does for the command.
void add_sample_options(CLI::App& command, SampleOptions& options, const std::string& stream_help);

}  // namespace tolven::cli
