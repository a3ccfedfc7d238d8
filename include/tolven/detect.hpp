#pragma once
// Detecting the table of a document: where its rows are and what its columns are.

#include <string>
#include <utility>
#include <vector>

#include "tolven/options.hpp"

namespace tolven::xml {

// One variable (column) of a detected table.
struct Variable {
    std::string name;      // as detection names it: an attribute's name starts with "@"
    std::string type;      // "double", "uint64", "datetime", "duration", "string", ...
    std::string selector;  // the XPath that selects its nodes
};

// What detection found, the fields of `tolven-xml detect --format json`.
struct Detection {
    bool table_detected = false;
    std::string table_selector;
    std::string row_selector;
    std::vector<Variable> variables;
    std::vector<std::pair<std::string, std::string>> namespaces;  // (prefix, URI) the selectors use
};

// Detects the table of the whole document as `tolven-xml detect` does (an input over 2 MiB on the
// tree of its first 2 MiB plus a streaming pass over the rest, in flat memory). Finding no table is not an
// error: table_detected is then false. Throws Error for unreadable or malformed input
// ("TOLVEN:io:xml:common:FileNotReadable", "...:MalformedDocument") and for bad hints (the
// "TOLVEN:io:xml:detection" identifiers). Safe to call on several threads at once.
Detection detect(const Source& source, const Hints& hints = {});

}  // namespace tolven::xml
