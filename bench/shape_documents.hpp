#pragma once
// Generated tables of other shapes than the catalog, written row by row to a stream. Deterministic,
// so runs are comparable.
//   nodes     map-like data: one empty element per row, its nine values in attributes
//   wide-N    N leaf elements per row (numbers, words and dates in turn)
//   deep      rows five wrappers down, each value wrapped in an element of its own

#include <cstddef>
#include <ostream>
#include <string>

namespace tolven::bench {

inline std::string padded(std::size_t n, std::size_t width) {
    std::string digits = std::to_string(n);
    return digits.size() < width ? std::string(width - digits.size(), '0') + digits : digits;
}

inline std::string date_of(std::size_t i) {
    return "20" + padded(10 + i % 14, 2) + "-" + padded(1 + i % 12, 2) + "-" + padded(1 + i % 28, 2);
}

inline void write_nodes(std::ostream& out, std::size_t rows) {
    out << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<map version=\"0.6\" generator=\"gen_shape\">\n";
    std::string row;
    for (std::size_t i = 0; i < rows; ++i) {
        row = "  <node id=\"" + std::to_string(100000 + i) + "\" lat=\"51." + padded(i * 7919 % 10000000, 7) +
              "\" lon=\"-0." + padded(i * 104729 % 10000000, 7) + "\" version=\"" + std::to_string(1 + i % 9) +
              "\" timestamp=\"" + date_of(i) + "T" + padded(i % 24, 2) + ":" + padded(i % 60, 2) +
              ":00Z\" changeset=\"" + std::to_string(5000000 + i / 7) + "\" user=\"mapper" + std::to_string(i % 997) +
              "\" uid=\"" +
              std::to_string(i % 997 + 17) + "\" visible=\"true\"/>\n";
        out << row;
    }
    out << "</map>\n";
}

inline void write_wide(std::ostream& out, std::size_t rows, std::size_t columns) {
    out << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<table>\n";
    std::string row;
    for (std::size_t i = 0; i < rows; ++i) {
        row = "  <row>";
        for (std::size_t c = 0; c < columns; ++c) {
            const std::string name = "c" + padded(c + 1, 3);
            std::string value;
            switch (c % 3) {
                case 0: value = std::to_string((i * 31 + c) % 100000) + "." + std::to_string(c % 10); break;
                case 1: value = "w" + std::to_string((i + c) % 5000); break;
                default: value = date_of(i + c); break;
            }
            row += "<" + name + ">" + value + "</" + name + ">";
        }
        row += "</row>\n";
        out << row;
    }
    out << "</table>\n";
}

inline void write_deep(std::ostream& out, std::size_t rows) {
    out << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<export><body><dataset><records><page>\n";
    std::string row;
    for (std::size_t i = 0; i < rows; ++i) {
        const std::string n = std::to_string(i + 1);
        row = "<record><header><key><value>r" + n + "</value></key></header><fields>" +
              "<name><value>Name " + n + "</value></name>" + "<amount><value>" + std::to_string(i % 1000) + "." +
              std::to_string(i % 100) + "</value></amount>" + "<date><value>" + date_of(i) + "</value></date>" +
              "<city><value>City " + std::to_string(i % 300) + "</value></city>" + "<count><value>" +
              std::to_string(i % 77) + "</value></count></fields></record>\n";
        out << row;
    }
    out << "</page></records></dataset></body></export>\n";
}

}  // namespace tolven::bench
