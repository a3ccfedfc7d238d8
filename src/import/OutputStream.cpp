#include "import/OutputStream.hpp"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "import/errors.hpp"

namespace tolven::import {

OutputStream::OutputStream(int fd, std::string name)
    : fd_(fd), name_(std::move(name)), buffer_(std::make_unique_for_overwrite<char[]>(kSize)) {
    struct stat status {};
    if (::fstat(fd_, &status) != 0) return;
    if (S_ISREG(status.st_mode)) start_ = ::lseek(fd_, 0, SEEK_CUR);
    // What goes to the null device is gone for everyone: there is nothing to take back, so a write
    // there can always be started over.
    struct stat null {};
    discards_ = S_ISCHR(status.st_mode) && ::stat("/dev/null", &null) == 0 && S_ISCHR(null.st_mode) &&
                status.st_rdev == null.st_rdev;
}

void OutputStream::rewind() {
    used_ = 0;
    if (discards_) return;
    if (::ftruncate(fd_, start_) != 0 || ::lseek(fd_, start_, SEEK_SET) != start_)
        vxErrMsgId(TOLVEN::import::OutputNotWritable(name_, std::string(std::strerror(errno))));
}

// Whatever is still buffered here belongs to a failed run: it is dropped, not written.
OutputStream::~OutputStream() = default;

void OutputStream::flush() { flush_buffer(); }

void OutputStream::append_long(std::string_view text) {
    flush_buffer();
    // A piece larger than the buffer goes out as it is.
    if (text.size() >= kSize) {
        write_all(text.data(), text.size());
        return;
    }
    std::memcpy(buffer_.get(), text.data(), text.size());
    used_ = text.size();
}

void OutputStream::flush_buffer() {
    const std::size_t size = used_;
    used_ = 0;
    write_all(buffer_.get(), size);
}

void OutputStream::write_all(const char* data, std::size_t left) {
    while (left > 0) {
        const ssize_t n = ::write(fd_, data, left);
        if (n < 0) {
            if (errno == EINTR) continue;
            const int error = errno;
            vxErrMsgId(TOLVEN::import::OutputNotWritable(name_, std::string(std::strerror(error))));
        }
        data += n;
        left -= static_cast<std::size_t>(n);
    }
}

}  // namespace tolven::import
