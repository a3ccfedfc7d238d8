#pragma once
// Zstandard through libzstd; concatenated frames are read as one stream.

#include <zstd.h>

#include "xml/compression/Decompressor.hpp"

namespace tolven::io::xml::common::compression {

class ZstdDecompressor final : public Decompressor {
public:
    ZstdDecompressor(std::string_view start, ReadBytes raw, std::string source);
    ~ZstdDecompressor() override;
    std::string_view format() const noexcept override { return "zstd"; }

private:
    bool decode(Input& in, Output& out, bool input_ended) override;
    void restart() override {}  // the decoder goes from one frame to the next itself
    ZSTD_DCtx* context_;
};

}  // namespace tolven::io::xml::common::compression
