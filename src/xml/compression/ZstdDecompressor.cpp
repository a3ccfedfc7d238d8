#include "xml/compression/ZstdDecompressor.hpp"

#include <new>

namespace tolven::io::xml::common::compression {

// The decoder keeps its default window limit (128 MiB), which bounds its memory whatever a frame asks.
ZstdDecompressor::ZstdDecompressor(std::string_view start, ReadBytes raw, std::string source)
    : Decompressor(start, std::move(raw), std::move(source)), context_(ZSTD_createDCtx()) {
    if (context_ == nullptr) throw std::bad_alloc();
}

ZstdDecompressor::~ZstdDecompressor() { ZSTD_freeDCtx(context_); }

bool ZstdDecompressor::decode(Input& in, Output& out, bool) {
    ZSTD_inBuffer input{in.data, in.size, 0};
    ZSTD_outBuffer output{out.data, out.size, 0};
    const std::size_t status = ZSTD_decompressStream(context_, &output, &input);
    // What was decoded before a fault counts as handed out: the caller sees it before the fault.
    in = {in.data + input.pos, in.size - input.pos};
    out = {out.data + output.pos, out.size - output.pos};
    if (ZSTD_isError(status)) corrupt(ZSTD_getErrorName(status));
    return status == 0;  // a frame is decoded and all of it handed out
}

}  // namespace tolven::io::xml::common::compression
