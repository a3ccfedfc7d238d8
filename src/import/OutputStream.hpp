#pragma once
// A buffered writer on a file descriptor: the hot path appends to memory, the system sees large writes.

#include <cstddef>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include "host/copy_bytes.hpp"

namespace tolven::import {

class OutputStream {
public:
    // name is used in messages ("<stdout>" or the path the user gave). The descriptor is not owned.
    OutputStream(int fd, std::string name);
    ~OutputStream();
    OutputStream(const OutputStream&) = delete;
    OutputStream& operator=(const OutputStream&) = delete;

    // A plain array and a count: most pieces are a few bytes, and a string's append costs more than
    // their copy.
    void append(std::string_view text) {
        if (text.size() > kSize - used_) {
            append_long(text);
            return;
        }
        copy(buffer_.get() + used_, text.data(), text.size());
        used_ += text.size();
    }
    void put(char c) {
        if (used_ == kSize) flush_buffer();
        buffer_[used_++] = c;
    }
    // For a writer that fills the buffer in place, sparing a check of room per piece: where the
    // next byte goes and the end of the buffer. What is written there counts once commit() is
    // given its end.
    char* position() noexcept { return buffer_.get() + used_; }
    char* limit() noexcept { return buffer_.get() + kSize; }
    void commit(const char* end) noexcept { used_ = static_cast<std::size_t>(end - buffer_.get()); }
    // The position, flushing first when fewer than n bytes are free after it; nullptr when n is
    // more than the whole buffer holds.
    char* room(std::size_t n) {
        if (n > kSize - used_) {
            if (n > kSize) return nullptr;
            flush_buffer();
        }
        return position();
    }
    // Writes everything buffered. Raises "TOLVEN:import:OutputNotWritable" (name, reason) on failure.
    void flush();
    // True when what was written can be taken back: the descriptor is a regular file, or the null
    // device.
    bool rewindable() const noexcept { return start_ >= 0 || discards_; }
    // Drops the buffer and cuts the file back to where this stream started writing. Raises
    // OutputNotWritable.
    void rewind();

    // memcpy without a call for the short pieces most fields are.
    static void copy(char* to, const char* from, std::size_t n) noexcept { fl::bytes::copy(to, from, n); }

private:
    static constexpr std::size_t kSize = std::size_t{1} << 20;
    void append_long(std::string_view text);
    void flush_buffer();
    void write_all(const char* data, std::size_t size);
    int fd_;
    std::string name_;
    long long start_ = -1;  // the file's offset when the stream began; -1 when not a regular file
    bool discards_ = false;  // the null device
    std::unique_ptr<char[]> buffer_;
    std::size_t used_ = 0;
};

}  // namespace tolven::import
