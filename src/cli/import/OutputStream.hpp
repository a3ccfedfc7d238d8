#pragma once
// A buffered writer on a file descriptor: the hot path appends to memory, the system sees large writes.

#include <string>
#include <string_view>

namespace tolven::cli::import {

class OutputStream {
public:
    // name is used in messages ("<stdout>" or the path the user gave). The descriptor is not owned.
    OutputStream(int fd, std::string name);
    ~OutputStream();
    OutputStream(const OutputStream&) = delete;
    OutputStream& operator=(const OutputStream&) = delete;

    void append(std::string_view text) {
        if (buffer_.size() + text.size() > kFlushAt) flush_buffer();
        buffer_.append(text);
    }
    void put(char c) {
        if (buffer_.size() >= kFlushAt) flush_buffer();
        buffer_.push_back(c);
    }
    // Writes everything buffered. Raises "TOLVEN:cli:OutputNotWritable" (name, reason) on failure.
    void flush();

private:
    static constexpr std::size_t kFlushAt = std::size_t{1} << 20;
    void flush_buffer();
    int fd_;
    std::string name_;
    std::string buffer_;
};

}  // namespace tolven::cli::import
