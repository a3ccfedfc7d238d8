// A hints file and a document, separated by a line "~~": "{...hints...}\n~~\n<doc>...</doc>".
// The hints go through the command line's reader of hints files, then both read paths.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "cli/HintOptions.hpp"
#include "host/except/Exception.hpp"
#include "support/MemoryFile.hpp"
#include "support/compare_reads.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool quiet = (tolven::fuzzing::quiet_library(), true);
    (void)quiet;
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    constexpr std::string_view kSeparator = "\n~~\n";
    const std::size_t at = input.find(kSeparator);
    if (at == std::string_view::npos) return 0;
    vxArrayPtr hints;
    try {
        const tolven::fuzzing::MemoryFile file(input.substr(0, at));
        tolven::cli::HintOptions options;
        options.hints_file = file.path();
        hints = tolven::cli::build_hint_struct(options);
    } catch (const foundation::core::except::IMsgIDException&) {
        return 0;  // an unusable hints file is refused before any document is read
    }
    tolven::fuzzing::require_same_reads(input.substr(at + kSeparator.size()), hints.get());
    return 0;
}
