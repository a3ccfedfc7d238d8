#pragma once
#include <string>

namespace tolven::cli::import {

// An output file that appears only when complete: the data goes to a temporary file in the same
// folder, renamed over the path by commit(). Until then an existing file of that name is untouched,
// and on any failure (an exception, or SIGINT, SIGTERM or SIGHUP) the temporary file is removed.
// A path that names a device or a pipe is written directly.
class AtomicOutputFile {
public:
    // Raises "TOLVEN:cli:OutputNotWritable" (path, reason) when the folder does not take a new file
    // or the path is a folder.
    explicit AtomicOutputFile(std::string path);
    ~AtomicOutputFile();
    AtomicOutputFile(const AtomicOutputFile&) = delete;
    AtomicOutputFile& operator=(const AtomicOutputFile&) = delete;

    int fd() const noexcept { return fd_; }
    // Closes the temporary file and renames it to the path. Raises OutputNotWritable.
    void commit();

private:
    void discard() noexcept;
    std::string path_;
    std::string target_;     // the file renamed over: the path, or where its symbolic link leads
    std::string temporary_;  // empty when writing directly
    int fd_ = -1;
};

}  // namespace tolven::cli::import
