#include "xml/compression/Decompressor.hpp"

#include <algorithm>
#include <cstring>
#include <utility>

#include "host/except/Exception.hpp"
#include "xml/compression/Bzip2Decompressor.hpp"
#include "xml/compression/GzipDecompressor.hpp"
#include "xml/compression/XzDecompressor.hpp"
#include "xml/compression/ZstdDecompressor.hpp"
#include "xml/errors.hpp"

namespace tolven::io::xml::common::compression {

namespace {
// Compressed bytes read from the input at a time.
constexpr std::size_t kBufferBytes = std::size_t{64} << 10;

bool starts_with(std::string_view start, std::string_view magic) { return start.substr(0, magic.size()) == magic; }
}  // namespace

std::unique_ptr<Decompressor> Decompressor::open(std::string_view start, ReadBytes raw, std::string source) {
    using namespace std::string_view_literals;
    // None of these can start a document: XML starts with '<', white space or a byte order mark.
    if (starts_with(start, "\x1F\x8B"sv)) return std::make_unique<GzipDecompressor>(start, std::move(raw), std::move(source));
    if (starts_with(start, "BZh"sv)) return std::make_unique<Bzip2Decompressor>(start, std::move(raw), std::move(source));
    if (starts_with(start, "\xFD" "7zXZ\0"sv))
        return std::make_unique<XzDecompressor>(start, std::move(raw), std::move(source));
    if (starts_with(start, "\x28\xB5\x2F\xFD"sv))
        return std::make_unique<ZstdDecompressor>(start, std::move(raw), std::move(source));
    return nullptr;
}

Decompressor::Decompressor(std::string_view start, ReadBytes raw, std::string source)
    : raw_(std::move(raw)), source_(std::move(source)), buffer_(std::max(kBufferBytes, start.size())) {
    std::memcpy(buffer_.data(), start.data(), start.size());
    in_ = {buffer_.data(), start.size()};
    compressed_bytes_ = start.size();
}

Decompressor::~Decompressor() = default;

void Decompressor::refill() {
    const std::size_t n = raw_(buffer_.data(), buffer_.size());
    in_ = {buffer_.data(), n};
    compressed_bytes_ += n;
    raw_ended_ = n == 0;
}

std::size_t Decompressor::read(char* buffer, std::size_t size) {
    if (size == 0) return 0;
    if (decoded_at_ == decoded_end_) {
        if (fault_) std::rethrow_exception(std::exchange(fault_, nullptr));
        // Decoded always in the same steps, whatever room the reader asks for: on corrupt data a
        // decoder stops where its steps take it, and every reader must meet the same bytes and fault.
        decoded_.resize(kBufferBytes);
        Output out{decoded_.data(), decoded_.size()};
        try {
            decode_into(out, decoded_.size());
        } catch (...) {
            if (out.size == decoded_.size()) throw;
            fault_ = std::current_exception();
        }
        decoded_at_ = 0;
        decoded_end_ = decoded_.size() - out.size;
    }
    const std::size_t n = std::min(size, decoded_end_ - decoded_at_);
    std::memcpy(buffer, decoded_.data() + decoded_at_, n);
    decoded_at_ += n;
    return n;
}

void Decompressor::decode_into(Output& out, std::size_t size) {
    while (out.size == size && size > 0) {
        if (in_.size == 0 && !raw_ended_) refill();
        if (!in_stream_) {
            if (in_.size == 0) break;  // the input ended between two streams
            restart();
            in_stream_ = true;
        }
        const std::size_t before = in_.size;
        if (decode(in_, out, raw_ended_)) {
            in_stream_ = false;
        } else if (out.size == size && in_.size == before) {
            // Nothing moved: only more input can help, and there is none.
            if (raw_ended_)
                vxErrMsgId(TOLVEN::io::xml::common::FileNotReadable(
                    source_, "its " + std::string(format()) +
                                 " data breaks off before the end of the compressed stream (is the file truncated?)"));
            if (in_.size > 0) corrupt("the decoder stopped on it");
        }
    }
}

void Decompressor::corrupt(std::string_view detail) const {
    std::string reason = "its " + std::string(format()) + " data is corrupt";
    if (!detail.empty()) reason += " (" + std::string(detail) + ")";
    vxErrMsgId(TOLVEN::io::xml::common::FileNotReadable(source_, reason));
}

}  // namespace tolven::io::xml::common::compression
