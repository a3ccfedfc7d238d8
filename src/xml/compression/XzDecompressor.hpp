#pragma once
// xz through liblzma; concatenated streams and their padding are read as one.

#include <lzma.h>

#include "xml/compression/Decompressor.hpp"

namespace tolven::io::xml::common::compression {

class XzDecompressor final : public Decompressor {
public:
    XzDecompressor(std::string_view start, ReadBytes raw, std::string source);
    ~XzDecompressor() override;
    std::string_view format() const noexcept override { return "xz"; }

private:
    bool decode(Input& in, Output& out, bool input_ended) override;
    void restart() override {}  // the decoder goes from one stream to the next itself
    lzma_stream stream_ = LZMA_STREAM_INIT;
};

}  // namespace tolven::io::xml::common::compression
