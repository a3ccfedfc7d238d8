#include "xml/compression/Bzip2Decompressor.hpp"

#include <algorithm>
#include <new>

namespace tolven::io::xml::common::compression {

namespace {
// The library counts in 32 bits.
constexpr std::size_t kMaxStep = std::size_t{1} << 30;
}  // namespace

Bzip2Decompressor::Bzip2Decompressor(std::string_view start, ReadBytes raw, std::string source)
    : Decompressor(start, std::move(raw), std::move(source)) {
    begin();
}

Bzip2Decompressor::~Bzip2Decompressor() { BZ2_bzDecompressEnd(&stream_); }

void Bzip2Decompressor::begin() {
    stream_ = bz_stream{};
    if (BZ2_bzDecompressInit(&stream_, 0, 0) != BZ_OK) throw std::bad_alloc();
}

bool Bzip2Decompressor::decode(Input& in, Output& out, bool) {
    stream_.next_in = const_cast<char*>(in.data);
    stream_.avail_in = static_cast<unsigned>(std::min<std::size_t>(in.size, kMaxStep));
    stream_.next_out = out.data;
    stream_.avail_out = static_cast<unsigned>(std::min<std::size_t>(out.size, kMaxStep));
    const int status = BZ2_bzDecompress(&stream_);
    in = {stream_.next_in, in.size - static_cast<std::size_t>(stream_.next_in - in.data)};
    out = {stream_.next_out, out.size - static_cast<std::size_t>(stream_.next_out - out.data)};
    switch (status) {
        case BZ_STREAM_END: return true;
        case BZ_OK: return false;
        case BZ_MEM_ERROR: throw std::bad_alloc();
        case BZ_DATA_ERROR_MAGIC: corrupt("a stream does not start with the bzip2 signature");
        default: corrupt("");
    }
}

void Bzip2Decompressor::restart() {
    BZ2_bzDecompressEnd(&stream_);
    begin();
}

}  // namespace tolven::io::xml::common::compression
