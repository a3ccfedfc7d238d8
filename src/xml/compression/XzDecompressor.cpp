#include "xml/compression/XzDecompressor.hpp"

#include <new>

namespace tolven::io::xml::common::compression {

namespace {
// The most memory the decoder may take. The highest preset needs 65 MiB; a file whose header asks for
// much more is refused rather than allowed to take the machine's memory.
constexpr std::uint64_t kMemoryLimit = std::uint64_t{256} << 20;
}  // namespace

XzDecompressor::XzDecompressor(std::string_view start, ReadBytes raw, std::string source)
    : Decompressor(start, std::move(raw), std::move(source)) {
    if (lzma_stream_decoder(&stream_, kMemoryLimit, LZMA_CONCATENATED) != LZMA_OK) throw std::bad_alloc();
}

XzDecompressor::~XzDecompressor() { lzma_end(&stream_); }

bool XzDecompressor::decode(Input& in, Output& out, bool input_ended) {
    stream_.next_in = reinterpret_cast<const std::uint8_t*>(in.data);
    stream_.avail_in = in.size;
    stream_.next_out = reinterpret_cast<std::uint8_t*>(out.data);
    stream_.avail_out = out.size;
    // With concatenated streams the decoder can tell the end only once told no more input follows.
    const lzma_ret status = lzma_code(&stream_, input_ended ? LZMA_FINISH : LZMA_RUN);
    in = {reinterpret_cast<const char*>(stream_.next_in), stream_.avail_in};
    out = {reinterpret_cast<char*>(stream_.next_out), stream_.avail_out};
    switch (status) {
        case LZMA_STREAM_END: return true;
        case LZMA_OK:
        case LZMA_BUF_ERROR: return false;  // no progress: more input is needed
        case LZMA_MEM_ERROR: throw std::bad_alloc();
        case LZMA_MEMLIMIT_ERROR:
            corrupt("it needs more than " + std::to_string(kMemoryLimit >> 20) + " MiB of memory to decompress");
        case LZMA_FORMAT_ERROR: corrupt("a stream does not start with the xz signature");
        case LZMA_OPTIONS_ERROR: corrupt("it uses options this decoder does not support");
        default: corrupt("");
    }
}

}  // namespace tolven::io::xml::common::compression
