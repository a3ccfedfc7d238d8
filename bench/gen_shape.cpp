// Writes a generated table of a given shape: gen_shape SHAPE ROWS FILE, SHAPE being catalog, nodes,
// wide-N (N columns) or deep (see shape_documents.hpp).

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>

#include "catalog_document.hpp"
#include "shape_documents.hpp"

int main(int argc, char** argv) {
    if (argc != 4) {
        std::cerr << "usage: gen_shape catalog|nodes|wide-N|deep ROWS FILE\n";
        return 2;
    }
    const std::string shape = argv[1];
    char* end = nullptr;
    const unsigned long long rows = std::strtoull(argv[2], &end, 10);
    if (end == argv[2] || *end != '\0') {
        std::cerr << "gen_shape: ROWS must be a number\n";
        return 2;
    }
    std::ofstream out(argv[3], std::ios::binary);
    if (shape == "catalog") {
        out << tolven::bench::make_catalog(rows);
    } else if (shape == "nodes") {
        tolven::bench::write_nodes(out, rows);
    } else if (shape == "deep") {
        tolven::bench::write_deep(out, rows);
    } else if (shape.rfind("wide-", 0) == 0 && std::atoi(shape.c_str() + 5) > 0) {
        tolven::bench::write_wide(out, rows, static_cast<std::size_t>(std::atoi(shape.c_str() + 5)));
    } else {
        std::cerr << "gen_shape: unknown shape '" << shape << "'\n";
        return 2;
    }
    return out ? 0 : 1;
}
