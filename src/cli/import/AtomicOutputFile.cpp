#include "cli/import/AtomicOutputFile.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "cli/errors.hpp"

namespace tolven::cli::import {

namespace {

// The temporary file a signal handler removes; one output file per process.
char pending_path[4096] = {};
constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};

extern "C" void remove_pending_and_reraise(int signal_number) {
    if (pending_path[0] != '\0') ::unlink(pending_path);
    std::signal(signal_number, SIG_DFL);
    std::raise(signal_number);
}

[[noreturn]] void raise_not_writable(const std::string& path, int error) {
    vxErrMsgId(TOLVEN::cli::OutputNotWritable(path, std::string(std::strerror(error))));
}

}  // namespace

AtomicOutputFile::AtomicOutputFile(std::string path) : path_(std::move(path)) {
    struct stat status {};
    const bool exists = ::stat(path_.c_str(), &status) == 0;
    if (exists && S_ISDIR(status.st_mode)) raise_not_writable(path_, EISDIR);
    if (exists && !S_ISREG(status.st_mode)) {
        // A device or a pipe (/dev/null, /dev/stdout, a FIFO) is written in place: renaming a file
        // over it would replace the device node itself.
        fd_ = ::open(path_.c_str(), O_WRONLY | O_CLOEXEC);
        if (fd_ < 0) raise_not_writable(path_, errno);
        return;
    }

    // Through a symbolic link the file it points to is replaced, not the link.
    std::error_code ignored;
    const std::filesystem::path target =
        exists ? std::filesystem::canonical(path_, ignored) : std::filesystem::path(path_);
    if (exists && target.empty()) raise_not_writable(path_, ENOENT);
    const std::filesystem::path folder = target.has_parent_path() ? target.parent_path() : ".";
    target_ = target.string();
    temporary_ = (folder / ("." + target.filename().string() + ".tolven-XXXXXX")).string();
    fd_ = ::mkostemp(temporary_.data(), O_CLOEXEC);
    if (fd_ < 0) {
        const int error = errno;
        temporary_.clear();
        raise_not_writable(path_, error);
    }
    // mkostemp makes the file private; the finished file keeps the mode of the file it replaces,
    // or gets the mode a new file would get.
    mode_t mode = status.st_mode & 07777;
    if (!exists) {
        const mode_t mask = ::umask(0);
        ::umask(mask);
        mode = 0666 & ~mask;
    }
    ::fchmod(fd_, mode);

    if (temporary_.size() < sizeof pending_path) {
        std::memcpy(pending_path, temporary_.c_str(), temporary_.size() + 1);
        for (const int s : kSignals) std::signal(s, &remove_pending_and_reraise);
    }
}

AtomicOutputFile::~AtomicOutputFile() { discard(); }

void AtomicOutputFile::commit() {
    const int fd = fd_;
    fd_ = -1;
    if (::close(fd) != 0 || (!temporary_.empty() && ::rename(temporary_.c_str(), target_.c_str()) != 0)) {
        const int error = errno;
        discard();
        raise_not_writable(path_, error);
    }
    temporary_.clear();
    discard();
}

void AtomicOutputFile::discard() noexcept {
    for (const int s : kSignals) std::signal(s, SIG_DFL);
    pending_path[0] = '\0';
    if (fd_ >= 0) ::close(fd_);
    fd_ = -1;
    if (!temporary_.empty()) ::unlink(temporary_.c_str());
    temporary_.clear();
}

}  // namespace tolven::cli::import
