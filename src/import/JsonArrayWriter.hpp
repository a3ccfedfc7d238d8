#pragma once
#include "import/JsonLinesWriter.hpp"

namespace tolven::import {

// One JSON array of the row objects of JsonLinesWriter, one object per line.
class JsonArrayWriter : public JsonLinesWriter {
public:
    using JsonLinesWriter::JsonLinesWriter;
    void begin(const std::vector<Column>& columns) override;
    void write_row(std::span<const Cell> cells) override;
    void end() override;

private:
    bool first_ = true;
};

}  // namespace tolven::import
