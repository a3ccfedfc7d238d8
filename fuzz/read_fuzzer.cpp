// Any bytes as a document, read with the default hints through the tree and the stream path.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "cli/HintOptions.hpp"
#include "support/compare_reads.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // The defaults of the command line: its options fill the structure, none given.
    static const vxArrayPtr hints = [] {
        tolven::fuzzing::quiet_library();
        CLI::App app;
        tolven::cli::HintOptions options;
        tolven::cli::add_hint_options(app, options);
        return tolven::cli::build_hint_struct(options);
    }();
    tolven::fuzzing::require_same_reads(std::string_view(reinterpret_cast<const char*>(data), size), hints.get());
    return 0;
}
