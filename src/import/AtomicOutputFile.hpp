#pragma once
#include <string>

namespace tolven::import {

// An output file that appears only when complete: the data goes to a temporary file in the same
// folder, renamed over the path by commit(). Until then an existing file of that name is untouched;
// on an exception the temporary file is removed, and it is registered with PendingOutputs so a
// signal handler can remove it too.
//
// Through a symbolic link the file the link leads to is replaced and the link kept (see
// OutputTarget for the links that are refused). The new file gets the permission bits of the file
// it replaces, never its set-user-ID, set-group-ID or sticky bits; a new path gets 0666 less the
// umask. A path that names a device, a pipe or a socket is written directly.
class AtomicOutputFile {
public:
    // Raises "TOLVEN:import:OutputNotWritable" (path, reason) when the path cannot take the file.
    explicit AtomicOutputFile(std::string path);
    ~AtomicOutputFile();
    AtomicOutputFile(const AtomicOutputFile&) = delete;
    AtomicOutputFile& operator=(const AtomicOutputFile&) = delete;

    int fd() const noexcept { return fd_; }
    // Closes the temporary file and renames it to the path. Raises OutputNotWritable.
    void commit();

private:
    void create_temporary(unsigned mode);
    [[noreturn]] void fail(int error);
    void discard() noexcept;

    std::string path_;       // as the user gave it, for messages
    std::string name_;       // the name replaced, in the folder
    std::string temporary_;  // the temporary name in the folder; empty when writing directly
    int folder_fd_ = -1;
    int fd_ = -1;
    int pending_slot_ = -1;
};

}  // namespace tolven::import
