// Writes a generated catalog document: gen_catalog ROWS [FILE] (standard output without FILE).

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>

#include "catalog_document.hpp"

int main(int argc, char** argv) {
    if (argc < 2 || argc > 3) {
        std::cerr << "usage: gen_catalog ROWS [FILE]\n";
        return 2;
    }
    char* end = nullptr;
    const unsigned long long rows = std::strtoull(argv[1], &end, 10);
    if (end == argv[1] || *end != '\0') {
        std::cerr << "gen_catalog: ROWS must be a number\n";
        return 2;
    }
    const std::string xml = tolven::bench::make_catalog(rows);
    if (argc == 2) {
        std::cout << xml;
        return std::cout ? 0 : 1;
    }
    std::ofstream out(argv[2], std::ios::binary);
    out << xml;
    return out ? 0 : 1;
}
