#pragma once
// A catalog of N books shaped like examples/catalog.xml: a title, then one <book> row with an id
// attribute and six leaf elements per book. Deterministic, so runs are comparable.

#include <cstddef>
#include <string>

namespace tolven::bench {

inline std::string make_catalog(std::size_t rows) {
    static const char* const kGenres[] = {"Computer", "Fantasy", "Horror", "Romance", "Science Fiction"};
    std::string xml;
    xml.reserve(rows * 300 + 128);
    xml += "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<catalog>\n  <title>Generated list</title>\n";
    for (std::size_t i = 0; i < rows; ++i) {
        const std::string n = std::to_string(i + 1);
        const unsigned day = static_cast<unsigned>(i % 28) + 1;
        const unsigned month = static_cast<unsigned>(i % 12) + 1;
        xml += "  <book id=\"bk" + n + "\">\n";
        xml += "    <author>Author " + n + "</author>\n";
        xml += "    <title>Title number " + n + "</title>\n";
        xml += std::string("    <genre>") + kGenres[i % 5] + "</genre>\n";
        xml += "    <price>" + std::to_string(i % 100) + "." + std::to_string(10 + i % 90) + "</price>\n";
        xml += "    <publish_date>2000-" + std::string(month < 10 ? "0" : "") + std::to_string(month) + "-" +
               (day < 10 ? "0" : "") + std::to_string(day) + "</publish_date>\n";
        xml += "    <description>Book " + n + " of a generated catalog.</description>\n";
        xml += "  </book>\n";
    }
    xml += "</catalog>\n";
    return xml;
}

}  // namespace tolven::bench
