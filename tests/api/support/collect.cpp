#include "api/support/collect.hpp"

namespace tolven::testing {

void Collect::begin(const std::vector<xml::Column>& columns) {
    for (const auto& c : columns) table.header.push_back(c.name + ":" + c.type);
}

void Collect::row(std::span<const xml::Cell> cells) {
    auto& row = table.rows.emplace_back();
    for (const auto& cell : cells) {
        row.push_back(cell.missing() ? "-"
                      : cell.kind == xml::Cell::Kind::Number ? "#" + std::string(cell.text)
                                                             : std::string(cell.text));
    }
}

Outcome read_outcome(const xml::Source& source, const xml::Hints& hints, const xml::ReadSettings& settings) {
    Outcome outcome;
    try {
        Collect sink;
        xml::read(source, sink, hints, settings);
        outcome.table = sink.table;
    } catch (const xml::Error& error) {
        outcome.error = "error " + error.identifier();
        for (const auto& a : error.arguments()) outcome.error += " " + a;
    }
    return outcome;
}

}  // namespace tolven::testing
