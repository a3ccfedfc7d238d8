#pragma once
// gzip (RFC 1952) through zlib; concatenated members are read as one stream.

#include <zlib.h>

#include "xml/compression/Decompressor.hpp"

namespace tolven::io::xml::common::compression {

class GzipDecompressor final : public Decompressor {
public:
    GzipDecompressor(std::string_view start, ReadBytes raw, std::string source);
    ~GzipDecompressor() override;
    std::string_view format() const noexcept override { return "gzip"; }

private:
    bool decode(Input& in, Output& out, bool input_ended) override;
    void restart() override;
    z_stream stream_{};
};

}  // namespace tolven::io::xml::common::compression
