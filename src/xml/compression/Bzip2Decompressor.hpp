#pragma once
// bzip2 through libbz2; concatenated streams (as parallel compressors write) are read as one.

#include <bzlib.h>

#include "xml/compression/Decompressor.hpp"

namespace tolven::io::xml::common::compression {

class Bzip2Decompressor final : public Decompressor {
public:
    Bzip2Decompressor(std::string_view start, ReadBytes raw, std::string source);
    ~Bzip2Decompressor() override;
    std::string_view format() const noexcept override { return "bzip2"; }

private:
    bool decode(Input& in, Output& out, bool input_ended) override;
    void restart() override;
    void begin();
    bz_stream stream_{};
};

}  // namespace tolven::io::xml::common::compression
