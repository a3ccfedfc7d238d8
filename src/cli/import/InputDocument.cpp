#include "cli/import/InputDocument.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "host/except/Exception.hpp"
#include "xml/errors.hpp"

namespace tolven::cli::import {

namespace {

[[noreturn]] void raise_not_readable(const std::string& path, int error) {
    vxErrMsgId(TOLVEN::io::xml::common::FileNotReadable(path, std::string(std::strerror(error))));
}

}  // namespace

InputDocument::InputDocument(const std::string& path)
    : path_(path), source_(path == "-" ? "<stdin>" : path), is_stdin_(path == "-") {
    fd_ = is_stdin_ ? STDIN_FILENO : ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd_ < 0) raise_not_readable(path_, errno);
    struct stat status {};
    if (::fstat(fd_, &status) != 0) raise_not_readable(path_, errno);
    if (S_ISDIR(status.st_mode)) raise_not_readable(path_, EISDIR);
    if (S_ISREG(status.st_mode)) size_ = static_cast<std::uint64_t>(status.st_size);
}

InputDocument::~InputDocument() {
    if (!is_stdin_ && fd_ >= 0) ::close(fd_);
}

std::size_t InputDocument::read_fd(char* buffer, std::size_t size) {
    if (at_end_ || size == 0) return 0;
    for (;;) {
        const ssize_t n = ::read(fd_, buffer, size);
        if (n > 0) return static_cast<std::size_t>(n);
        if (n == 0) {
            at_end_ = true;
            return 0;
        }
        if (errno != EINTR) raise_not_readable(path_, errno);
    }
}

void InputDocument::read_prefix(std::size_t limit) {
    prefix_.resize(limit);
    std::size_t have = 0;
    while (have < limit) {
        const std::size_t n = read_fd(prefix_.data() + have, limit - have);
        if (n == 0) break;
        have += n;
    }
    prefix_.resize(have);
    // A prefix that fills the limit exactly may still be the whole input: look one byte further.
    if (have == limit && !at_end_) {
        char probe;
        if (read_fd(&probe, 1) == 1) prefix_.push_back(probe);
    }
    prefix_complete_ = at_end_;
}

std::size_t InputDocument::read(char* buffer, std::size_t size) {
    if (served_ < prefix_.size()) {
        const std::size_t n = std::min<std::size_t>(size, prefix_.size() - static_cast<std::size_t>(served_));
        std::memcpy(buffer, prefix_.data() + served_, n);
        served_ += n;
        return n;
    }
    const std::size_t n = read_fd(buffer, size);
    served_ += n;
    return n;
}

std::string InputDocument::read_all() {
    std::string all = std::move(prefix_);
    prefix_.clear();
    served_ = 0;
    char chunk[1 << 16];
    for (std::size_t n; (n = read_fd(chunk, sizeof chunk)) > 0;) all.append(chunk, n);
    served_ = all.size();
    return all;
}

}  // namespace tolven::cli::import
