#pragma once
// A file that lives in memory (memfd), reachable by a path, so the fuzz targets hand bytes to code
// that opens paths without touching the disk.

#include <string>
#include <string_view>

namespace tolven::fuzzing {

class MemoryFile {
public:
    explicit MemoryFile(std::string_view content = {});
    ~MemoryFile();
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    int fd() const noexcept { return fd_; }
    // "/proc/self/fd/N": opening it gives a new description of the same file, read from its start.
    std::string path() const;
    // Everything written to the file so far.
    std::string contents() const;

private:
    int fd_;
};

}  // namespace tolven::fuzzing
