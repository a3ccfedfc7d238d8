#include "import/InputDocument.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "host/except/Exception.hpp"
#include "xml/errors.hpp"

namespace tolven::import {

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
    open_compressed();
}

InputDocument::InputDocument(std::string_view bytes, std::string source)
    : path_(source), source_(std::move(source)), is_stdin_(false), memory_(bytes), memory_all_(bytes) {
    open_compressed();
}

std::unique_ptr<InputDocument> InputDocument::reopen() const {
    if (fd_ < 0) return std::make_unique<InputDocument>(memory_all_, source_);
    if (is_stdin_ || !size_) return nullptr;
    return std::make_unique<InputDocument>(path_);
}

// The first bytes tell a compressed input; those of a plain one become the start of the prefix.
void InputDocument::open_compressed() {
    namespace compression = io::xml::common::compression;
    std::string start(compression::Decompressor::kMagicBytes, '\0');
    std::size_t have = 0;
    for (std::size_t n; have < start.size() && (n = read_raw(start.data() + have, start.size() - have)) > 0;) have += n;
    start.resize(have);
    decompressor_ = compression::Decompressor::open(
        start, [this](char* buffer, std::size_t size) { return read_raw(buffer, size); }, source_);
    if (!decompressor_) {
        prefix_ = std::move(start);
        at_end_ = raw_end_;
        prefix_complete_ = at_end_;
    }
}

std::string_view InputDocument::compression() const noexcept {
    return decompressor_ ? decompressor_->format() : std::string_view();
}

std::uint64_t InputDocument::input_bytes() const noexcept {
    return decompressor_ ? decompressor_->compressed_bytes() : served_;
}

InputDocument::~InputDocument() {
    if (!is_stdin_ && fd_ >= 0) ::close(fd_);
}

std::size_t InputDocument::read_raw(char* buffer, std::size_t size) {
    if (raw_end_ || size == 0) return 0;
    if (fd_ < 0) {
        const std::size_t n = std::min(size, memory_.size());
        std::memcpy(buffer, memory_.data(), n);
        memory_.remove_prefix(n);
        raw_end_ = n == 0;
        return n;
    }
    for (;;) {
        const ssize_t n = ::read(fd_, buffer, size);
        if (n > 0) return static_cast<std::size_t>(n);
        if (n == 0) {
            raw_end_ = true;
            return 0;
        }
        if (errno != EINTR) raise_not_readable(path_, errno);
    }
}

std::size_t InputDocument::read_fd(char* buffer, std::size_t size) {
    if (at_end_ || size == 0) return 0;
    const std::size_t n = decompressor_ ? decompressor_->read(buffer, size) : read_raw(buffer, size);
    at_end_ = n == 0;
    return n;
}

void InputDocument::read_prefix(std::size_t limit) {
    // Grown as the bytes come, so a large limit costs nothing on a small input.
    constexpr std::size_t kStep = std::size_t{64} << 10;
    while (prefix_.size() < limit && !at_end_) {
        const std::size_t have = prefix_.size();
        prefix_.resize(have + std::min(kStep, limit - have));
        prefix_.resize(have + read_fd(prefix_.data() + have, prefix_.size() - have));
    }
    // A prefix that fills the limit exactly may still be the whole input: look one byte further.
    if (prefix_.size() == limit && !at_end_) {
        char probe;
        if (read_fd(&probe, 1) == 1) prefix_.push_back(probe);
    }
    prefix_complete_ = at_end_;
}

std::size_t InputDocument::read(char* buffer, std::size_t size) {
    if (fault_) std::rethrow_exception(std::exchange(fault_, nullptr));
    std::size_t n = 0;
    try {
        while (n < size) {
            std::size_t got;
            if (served_ < prefix_.size()) {
                got = std::min<std::size_t>(size - n, prefix_.size() - static_cast<std::size_t>(served_));
                std::memcpy(buffer + n, prefix_.data() + served_, got);
            } else {
                got = read_fd(buffer + n, size - n);
                if (got == 0) break;
            }
            n += got;
            served_ += got;
        }
    } catch (...) {
        if (n == 0) throw;
        fault_ = std::current_exception();
    }
    return n;
}

}  // namespace tolven::import
