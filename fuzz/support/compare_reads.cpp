#include "support/compare_reads.hpp"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "host/except/Exception.hpp"
#include "import/CsvWriter.hpp"
#include "import/InputDocument.hpp"
#include "import/OutputStream.hpp"
#include "import/TableReader.hpp"
#include "support/MemoryFile.hpp"
#include "xml/log/getLogger.hpp"

namespace tolven::fuzzing {

namespace {

struct Outcome {
    std::string error;  // the message identifier, empty on success
    std::string message;
    std::string csv;
    bool operator==(const Outcome& other) const { return error == other.error && csv == other.csv; }
};

Outcome read_as(const MemoryFile& input_file, const vxArray* hints, import::ReadSettings::Mode mode,
                std::uint64_t sample_bytes, bool parallel = false) {
    Outcome outcome;
    try {
        import::InputDocument input(input_file.path());
        import::ReadSettings settings;
        settings.mode = mode;
        settings.sample_bytes = sample_bytes;
        settings.parallel = parallel;
        import::TableReader reader(input, hints, settings);
        MemoryFile output;
        import::OutputStream out(output.fd(), "<memory>");
        import::CsvWriter writer(out, ',');
        reader.read(writer);
        out.flush();
        outcome.csv = output.contents();
    } catch (const foundation::core::except::IMsgIDException& error) {
        outcome.error = error.GetID();
        outcome.message = error.message_utf8();
    }
    return outcome;
}

void print(const char* path, const Outcome& outcome) {
    std::fprintf(stderr, "--- %s: %s %s\n%s\n", path, outcome.error.empty() ? "done" : outcome.error.c_str(),
                 outcome.message.c_str(), outcome.csv.c_str());
}

}  // namespace

void quiet_library() { io::xml::common::log::getLogger().set_mask(0); }

void require_same_reads(std::string_view document, const vxArray* hints) {
    const MemoryFile input(document);
    // The sample holds the whole document, so both paths detect on the same bytes.
    const std::uint64_t whole = document.size() + 1;
    const Outcome tree = read_as(input, hints, import::ReadSettings::Mode::Tree, whole);
    const Outcome stream = read_as(input, hints, import::ReadSettings::Mode::Stream, whole);
    const Outcome cut = read_as(input, hints, import::ReadSettings::Mode::Stream, document.size() / 2 + 1);
    // Parsing on one thread and importing on another changes nothing, faults included.
    const Outcome cut_parallel =
        read_as(input, hints, import::ReadSettings::Mode::Stream, document.size() / 2 + 1, true);
    const char* internal = "TOLVEN:io:xml:common:Internal";
    static const bool verbose = std::getenv("TOLVEN_FUZZ_VERBOSE") != nullptr;
    if (verbose) {
        print("tree", tree);
        print("stream", stream);
    }
    if (tree == stream && cut == cut_parallel && tree.error != internal && cut.error != internal) return;
    print("tree", tree);
    print("stream", stream);
    print("stream from half the document", cut);
    print("the same on two threads", cut_parallel);
    std::abort();
}

}  // namespace tolven::fuzzing
