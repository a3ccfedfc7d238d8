#include "cli/import/OutputStream.hpp"

#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "cli/errors.hpp"

namespace tolven::cli::import {

OutputStream::OutputStream(int fd, std::string name) : fd_(fd), name_(std::move(name)) {
    buffer_.reserve(kFlushAt + 4096);
}

// Whatever is still buffered here belongs to a failed run: it is dropped, not written.
OutputStream::~OutputStream() = default;

void OutputStream::flush() { flush_buffer(); }

void OutputStream::flush_buffer() {
    const char* data = buffer_.data();
    std::size_t left = buffer_.size();
    while (left > 0) {
        const ssize_t n = ::write(fd_, data, left);
        if (n < 0) {
            if (errno == EINTR) continue;
            const int error = errno;
            buffer_.clear();
            vxErrMsgId(TOLVEN::cli::OutputNotWritable(name_, std::string(std::strerror(error))));
        }
        data += n;
        left -= static_cast<std::size_t>(n);
    }
    buffer_.clear();
}

}  // namespace tolven::cli::import
