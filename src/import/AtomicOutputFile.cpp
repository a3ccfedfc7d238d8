#include "import/AtomicOutputFile.hpp"

#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <ctime>

#include "import/OutputTarget.hpp"
#include "import/PendingOutputs.hpp"
#include "import/errors.hpp"

namespace tolven::import {

namespace {

constexpr std::string_view kMarker = ".tolven-";
constexpr std::size_t kRandomLetters = 6;

// ".NAME.tolven-XXXXXX", with NAME shortened (on a UTF-8 character boundary) to keep the whole
// within the folder's longest name.
std::string temporary_name(const std::string& name, long name_max) {
    const std::size_t fixed = 1 + kMarker.size() + kRandomLetters;
    const std::size_t limit = name_max > static_cast<long>(fixed) ? static_cast<std::size_t>(name_max) - fixed : 0;
    std::size_t keep = std::min(name.size(), limit);
    while (keep > 0 && keep < name.size() && (static_cast<unsigned char>(name[keep]) & 0xC0) == 0x80) --keep;
    std::string result = "." + name.substr(0, keep) + std::string(kMarker);
    unsigned char random[kRandomLetters];
    if (::getrandom(random, sizeof random, GRND_NONBLOCK) != static_cast<ssize_t>(sizeof random)) {
        const auto mix = static_cast<unsigned long>(std::time(nullptr)) ^ (static_cast<unsigned long>(::getpid()) << 16) ^
                         reinterpret_cast<std::uintptr_t>(&result);
        for (std::size_t i = 0; i < sizeof random; ++i) random[i] = static_cast<unsigned char>(mix >> (8 * i));
    }
    constexpr std::string_view kLetters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
    for (const unsigned char r : random) result += kLetters[r % kLetters.size()];
    return result;
}

// Blocks every signal for the life of the object: a file created and not yet registered, or
// registered and not yet removed, is never left behind by a handler that runs in between.
class SignalsHeld {
public:
    SignalsHeld() {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &saved_);
    }
    ~SignalsHeld() { pthread_sigmask(SIG_SETMASK, &saved_, nullptr); }
    SignalsHeld(const SignalsHeld&) = delete;
    SignalsHeld& operator=(const SignalsHeld&) = delete;

private:
    sigset_t saved_;
};

}  // namespace

AtomicOutputFile::AtomicOutputFile(std::string path) : path_(std::move(path)) {
    const OutputTarget target = resolve_output_target(path_);
    if (target.in_place) {
        // Renaming a file over a device (/dev/null) or a pipe would replace the node itself.
        fd_ = ::open(path_.c_str(), O_WRONLY | O_CLOEXEC);
        if (fd_ < 0) fail(errno);
        return;
    }
    folder_fd_ = ::open(target.folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    if (folder_fd_ < 0) fail(errno);
    name_ = target.name;
    create_temporary(target.exists ? target.status.st_mode & 0777 : 0666);
    // The kernel applied the umask to a new file; a replaced file keeps its permission bits exactly.
    if (target.exists && ::fchmod(fd_, target.status.st_mode & 0777) != 0) fail(errno);
}

void AtomicOutputFile::create_temporary(unsigned mode) {
    const long name_max = ::fpathconf(folder_fd_, _PC_NAME_MAX);
    SignalsHeld held;
    for (int attempt = 0; attempt < 100; ++attempt) {
        std::string name = temporary_name(name_, name_max > 0 ? name_max : 255);
        fd_ = ::openat(folder_fd_, name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode);
        if (fd_ >= 0) {
            temporary_ = std::move(name);
            pending_slot_ = register_pending_output(folder_fd_, temporary_.c_str());
            return;
        }
        if (errno != EEXIST) break;
    }
    fail(errno);
}

AtomicOutputFile::~AtomicOutputFile() { discard(); }

void AtomicOutputFile::commit() {
    const int fd = fd_;
    fd_ = -1;
    if (::close(fd) != 0) fail(errno);
    if (!temporary_.empty()) {
        if (::renameat(folder_fd_, temporary_.c_str(), folder_fd_, name_.c_str()) != 0) fail(errno);
        unregister_pending_output(pending_slot_);
        pending_slot_ = -1;
        temporary_.clear();
    }
    discard();
}

void AtomicOutputFile::fail(int error) {
    discard();
    vxErrMsgId(TOLVEN::import::OutputNotWritable(path_, std::string(std::strerror(error))));
}

void AtomicOutputFile::discard() noexcept {
    if (fd_ >= 0) ::close(fd_);
    fd_ = -1;
    if (!temporary_.empty()) {
        // Removed before it is forgotten: a handler that runs in between removes a name already gone.
        ::unlinkat(folder_fd_, temporary_.c_str(), 0);
        unregister_pending_output(pending_slot_);
        pending_slot_ = -1;
        temporary_.clear();
    }
    if (folder_fd_ >= 0) ::close(folder_fd_);
    folder_fd_ = -1;
}

}  // namespace tolven::import
