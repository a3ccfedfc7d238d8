// Prints how many tables an XML document may hold and where the one detected is, then its rows as
// tab-separated lines.
//   print_table catalog.xml
#include <tolven/xml.hpp>

#include <iostream>

namespace tx = tolven::xml;

class PrintRows : public tx::RowSink {
public:
    void begin(const std::vector<tx::Column>& columns) override {
        for (const auto& c : columns) std::cout << c.name << " (" << c.type << ")\t";
        std::cout << '\n';
    }
    void row(std::span<const tx::Cell> cells) override {
        for (const auto& cell : cells) std::cout << (cell.missing() ? "-" : cell.text) << '\t';
        std::cout << '\n';
    }
};

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: print_table FILE.xml\n";
        return 2;
    }
    try {
        const auto source = tx::Source::file(argv[1]);
        std::cout << "candidate tables: " << tx::tables(source).size() << '\n';
        std::cout << "rows: " << tx::detect(source).row_selector << '\n';
        PrintRows sink;
        const tx::ReadSummary summary = tx::read(source, sink);
        std::cout << summary.rows << " rows, tolven-xml " << tx::version() << '\n';
    } catch (const tx::Error& error) {
        std::cerr << error.identifier() << ": " << error.message() << '\n';
        return 1;
    }
}
