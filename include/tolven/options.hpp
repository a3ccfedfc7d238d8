#pragma once
// What to read and how: the document source, the detection hints and import settings, and the
// settings of an import.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tolven::xml {

// A document: a file, standard input, or bytes in memory.
struct Source {
    // The file at path; "-" is standard input. Nothing is opened until a call reads it.
    static Source file(std::string path) { return Source{false, std::move(path), {}}; }
    // The bytes of a whole document, borrowed: they must stay alive and unchanged while a call
    // reads them. name stands for the document in messages.
    static Source memory(std::string_view bytes, std::string name = "<memory>") {
        return Source{true, std::move(name), bytes};
    }

    bool in_memory = false;
    std::string name;        // the path of a file, the name of bytes in memory
    std::string_view bytes;  // the document when in_memory
};

// The detection hints and import settings, as the command line's options give them, with the same
// defaults. Text is UTF-8.
struct Hints {
    // Detection hints: give at most one ("TOLVEN:io:xml:detection:ProvideAtMostOneDetectionHint").
    std::string table_node_name;                  // name of the element that holds the rows
    std::string row_node_name;                    // name of the row element
    std::vector<std::string> variable_node_names; // names of the variables' elements or attributes
    std::string table_selector;                   // XPath selecting the element that holds the rows
    std::string row_selector;                     // XPath selecting the rows
    std::vector<std::string> variable_selectors;  // XPaths selecting each variable's nodes
    // Candidate table number `table` as tables() lists them (1 is the likeliest), instead of the
    // table detection finds; 0 for none. Not with the hints above; "TOLVEN:import:NoSuchTable"
    // (table, count, source) when the document has fewer candidates.
    std::size_t table = 0;

    // Import settings: they combine with any hint.
    std::string attribute_suffix = "Attribute";  // appended to attribute columns whose names collide
    std::string date_locale = "en_US";           // locale of month and weekday names in dates
    bool import_attributes = true;               // whether attributes count as variables
    bool detect_namespaces = true;               // register the document's namespace prefixes
    std::vector<std::pair<std::string, std::string>> registered_namespaces;  // (prefix, URI) for selectors
    std::string decimal_separator = ".";         // only its first character counts
    std::string thousands_separator;             // none by default; only its first character counts
    std::string exponent_character = "eEdD";     // characters that start an exponent
    bool trim_nonnumeric = false;                // strip non-numeric text around numbers
};

// How a table is imported.
struct ReadSettings {
    enum class Mode {
        Auto,    // stream inputs larger than sample_bytes, load the others as a tree
        Stream,  // detect on a sample and stream whatever the size
        Tree,    // always load the whole document as a tree
    };
    Mode mode = Mode::Auto;
    // Inputs larger than this are streamed, and their table is detected on their first bytes.
    std::uint64_t sample_bytes = std::uint64_t{2} << 20;
    // Import at most this many rows, and stop reading once they are found.
    std::optional<std::uint64_t> head;
    // A streamed import assembles and converts its rows on a second thread while the calling thread
    // parses, which takes less time where a core is free. A RowSink is then called on that thread
    // (one call at a time, in order); off, everything runs on the calling thread.
    bool parallel = false;
};

}  // namespace tolven::xml
