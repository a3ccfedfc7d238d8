#include "support/MemoryFile.hpp"

#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <stdexcept>

namespace tolven::fuzzing {

MemoryFile::MemoryFile(std::string_view content) : fd_(::memfd_create("tolven-fuzz", MFD_CLOEXEC)) {
    if (fd_ < 0) throw std::runtime_error("memfd_create failed");
    for (std::size_t done = 0; done < content.size();) {
        const ssize_t n = ::write(fd_, content.data() + done, content.size() - done);
        if (n <= 0) throw std::runtime_error("cannot write the memory file");
        done += static_cast<std::size_t>(n);
    }
}

MemoryFile::~MemoryFile() { ::close(fd_); }

std::string MemoryFile::path() const { return "/proc/self/fd/" + std::to_string(fd_); }

std::string MemoryFile::contents() const {
    struct stat status {};
    if (::fstat(fd_, &status) != 0) throw std::runtime_error("cannot stat the memory file");
    std::string text(static_cast<std::size_t>(status.st_size), '\0');
    for (std::size_t done = 0; done < text.size();) {
        const ssize_t n = ::pread(fd_, text.data() + done, text.size() - done, static_cast<off_t>(done));
        if (n <= 0) throw std::runtime_error("cannot read the memory file");
        done += static_cast<std::size_t>(n);
    }
    return text;
}

}  // namespace tolven::fuzzing
