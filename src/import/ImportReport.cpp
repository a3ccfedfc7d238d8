#include "import/ImportReport.hpp"

namespace tolven::import {

namespace {

std::string count(std::uint64_t n, const char* one, const char* many) {
    return std::to_string(n) + " " + (n == 1 ? one : many);
}

}  // namespace

std::vector<std::string> import_notes(const RowSink& sink) {
    std::vector<std::string> lines;
    for (std::size_t i = 0; i < sink.column_count(); ++i)
        if (!sink.note(i).empty()) lines.push_back(sink.note(i));
    return lines;
}

std::vector<std::string> import_warnings(const RowSink& sink) {
    std::vector<std::string> lines;
    for (std::size_t i = 0; i < sink.column_count(); ++i) {
        const std::string& name = sink.name(i);
        if (const auto& first = sink.first_unconvertible(i)) {
            const bool one = sink.unconvertible(i) == 1;
            lines.push_back("column '" + name + "': " + count(sink.unconvertible(i), "value", "values") +
                            (one ? " does" : " do") + " not convert to " + sink.type(i) +
                            (one ? " and is written as it stands (" : " and are written as they stand (the first, ") +
                            "'" + first->second + "', in row " + std::to_string(first->first) + "); --type " +
                            name + "=string imports the column as text");
        }
        if (sink.repeated(i) > 0 && !sink.all_repeated()) {
            lines.push_back("column '" + name + "': " + count(sink.repeated(i), "row holds", "rows hold") +
                            " more than one value, of which only the first is written; --repeated all writes "
                            "every value");
        }
    }
    return lines;
}

}  // namespace tolven::import
