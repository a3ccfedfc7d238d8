#pragma once
// A row sink that keeps everything it is given, as text, for comparisons.

#include <tolven/xml.hpp>

#include <cstdint>
#include <string>
#include <vector>

namespace tolven::testing {

struct Collected {
    std::vector<std::string> header;  // "name:type"
    std::vector<std::vector<std::string>> rows;  // "-" for missing, "#" before numbers
    bool ended = false;
    bool operator==(const Collected&) const = default;
};

class Collect : public xml::RowSink {
public:
    Collected table;
    void begin(const std::vector<xml::Column>& columns) override;
    void row(std::span<const xml::Cell> cells) override;
    void end() override { table.ended = true; }
};

// The outcome of reading source: the table, or "error <identifier> <arguments...>".
struct Outcome {
    Collected table;
    std::string error;
    bool operator==(const Outcome&) const = default;
};
// Settings that read in one mode (and from a sample of sample_bytes when streaming).
inline xml::ReadSettings in_mode(xml::ReadSettings::Mode mode, std::uint64_t sample_bytes = xml::ReadSettings{}.sample_bytes) {
    xml::ReadSettings settings;
    settings.mode = mode;
    settings.sample_bytes = sample_bytes;
    return settings;
}

Outcome read_outcome(const xml::Source& source, const xml::Hints& hints = {}, const xml::ReadSettings& settings = {});

}  // namespace tolven::testing
