#include "xml/compression/GzipDecompressor.hpp"

#include <algorithm>
#include <new>

namespace tolven::io::xml::common::compression {

namespace {
// zlib's window bits, plus 16 for a gzip header and trailer rather than a zlib one.
constexpr int kGzipWindowBits = 15 + 16;
// The library counts in 32 bits.
constexpr std::size_t kMaxStep = std::size_t{1} << 30;
}  // namespace

GzipDecompressor::GzipDecompressor(std::string_view start, ReadBytes raw, std::string source)
    : Decompressor(start, std::move(raw), std::move(source)) {
    if (inflateInit2(&stream_, kGzipWindowBits) != Z_OK) throw std::bad_alloc();
}

GzipDecompressor::~GzipDecompressor() { inflateEnd(&stream_); }

bool GzipDecompressor::decode(Input& in, Output& out, bool) {
    stream_.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(in.data));
    stream_.avail_in = static_cast<uInt>(std::min<std::size_t>(in.size, kMaxStep));
    stream_.next_out = reinterpret_cast<Bytef*>(out.data);
    stream_.avail_out = static_cast<uInt>(std::min<std::size_t>(out.size, kMaxStep));
    const int status = inflate(&stream_, Z_NO_FLUSH);
    const auto used_in = static_cast<std::size_t>(reinterpret_cast<const char*>(stream_.next_in) - in.data);
    const auto used_out = static_cast<std::size_t>(reinterpret_cast<char*>(stream_.next_out) - out.data);
    in = {in.data + used_in, in.size - used_in};
    out = {out.data + used_out, out.size - used_out};
    switch (status) {
        case Z_STREAM_END: return true;
        case Z_OK:
        case Z_BUF_ERROR: return false;  // no progress: more input is needed
        case Z_MEM_ERROR: throw std::bad_alloc();
        default: corrupt(stream_.msg != nullptr ? stream_.msg : "");
    }
}

void GzipDecompressor::restart() { inflateReset(&stream_); }

}  // namespace tolven::io::xml::common::compression
