#include "import/OutputTarget.hpp"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "import/errors.hpp"

namespace tolven::import {

namespace {

namespace fs = std::filesystem;

// As many links as the kernel follows in one path.
constexpr int kMaxLinks = 40;

[[noreturn]] void refuse(const std::string& path, const std::string& reason) {
    vxErrMsgId(TOLVEN::import::OutputNotWritable(path, reason));
}

std::string folder_of(const std::string& path) {
    const fs::path parent = fs::path(path).parent_path();
    return parent.empty() ? std::string(".") : parent.string();
}

// The protected-symlinks rule: in a sticky world-writable folder (/tmp) a link is followed only
// when it belongs to the follower or to the folder's owner, so nobody can plant one for root.
void check_not_planted(const std::string& path, const std::string& link, const struct stat& link_status) {
    struct stat folder {};
    if (::stat(folder_of(link).c_str(), &folder) != 0) return;
    const bool shared = (folder.st_mode & S_ISVTX) != 0 && (folder.st_mode & S_IWOTH) != 0;
    if (!shared || link_status.st_uid == ::geteuid() || link_status.st_uid == folder.st_uid) return;
    refuse(path, "the symbolic link '" + link + "' is in a sticky, world-writable folder and belongs to another "
                 "user (uid " + std::to_string(link_status.st_uid) + "); such a link is not followed");
}

}  // namespace

OutputTarget resolve_output_target(const std::string& path) {
    OutputTarget target;
    // What the kernel reaches, to recognise devices and pipes behind links of /proc such as
    // /dev/stdout, whose text ("pipe:[123]") is no path.
    struct stat reached {};
    const bool reachable = ::stat(path.c_str(), &reached) == 0;
    if (reachable && S_ISDIR(reached.st_mode)) refuse(path, std::strerror(EISDIR));

    std::string current = path;
    std::string previous;
    for (int links = 0;; ++links) {
        struct stat status {};
        if (::lstat(current.c_str(), &status) != 0) {
            const int error = errno;
            if (links > 0 && reachable) break;  // a link of /proc: the kernel knows where it leads
            if (links > 0 && error == ENOENT) {
                refuse(path, "the symbolic link '" + previous + "' leads to '" + current + "', which does not exist");
            }
            if (error != ENOENT) refuse(path, std::strerror(error));
            break;  // a new file
        }
        if (!S_ISLNK(status.st_mode)) {
            target.exists = true;
            target.status = status;
            break;
        }
        if (links == kMaxLinks) {
            refuse(path, "its symbolic links form a loop (or a chain of more than " + std::to_string(kMaxLinks) +
                             " links)");
        }
        check_not_planted(path, current, status);
        std::error_code error;
        const fs::path next = fs::read_symlink(current, error);
        if (error) refuse(path, error.message());
        previous = current;
        current = next.is_absolute() ? next.string() : (fs::path(folder_of(current)) / next).string();
    }

    if (reachable && !S_ISREG(reached.st_mode)) {
        target.in_place = true;
        return target;
    }
    if (reachable && !target.exists) refuse(path, "the file its symbolic links lead to cannot be named");
    target.folder = folder_of(current);
    target.name = fs::path(current).filename().string();
    if (target.name.empty() || target.name == "." || target.name == "..") refuse(path, std::strerror(EISDIR));
    return target;
}

}  // namespace tolven::import
