#include "xml/vcos/load_document.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>
#include <vector>

#include "host/except/Exception.hpp"
#include "host/utf.hpp"
#include "xml/compression/Decompressor.hpp"
#include "xml/errors.hpp"
#include "xml/parser/PushParser.hpp"

namespace tolven::io::xml::common::vcos {

namespace {

// Bytes handed to the parser at a time: large enough that the calls cost nothing beside the parse.
constexpr std::size_t kChunkBytes = std::size_t{256} << 10;

class FileDescriptor {
public:
    explicit FileDescriptor(int fd, bool owned) : fd_(fd), owned_(owned) {}
    ~FileDescriptor() {
        if (owned_ && fd_ >= 0) ::close(fd_);
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    int get() const noexcept { return fd_; }

private:
    int fd_;
    bool owned_;
};

[[noreturn]] void raise_not_readable(const std::string& path, const std::string& reason) {
    vxErrMsgId(TOLVEN::io::xml::common::FileNotReadable(path, reason));
}

[[noreturn]] void raise_not_readable(const std::string& path, int error_number) {
    raise_not_readable(path, std::string(std::strerror(error_number)));
}

std::shared_ptr<DocWrapper> wrap(const std::string& source, parser::PushParser& parser) {
    return std::make_shared<DocWrapper>(fl::i18n::utf8_to_ustring(source), parser.take_document());
}

// The first bytes of an input, enough to tell a compressed one.
std::string start_of(const ReadBytes& read) {
    std::string start(compression::Decompressor::kMagicBytes, '\0');
    std::size_t have = 0;
    for (std::size_t n; have < start.size() && (n = read(start.data() + have, start.size() - have)) > 0;) have += n;
    start.resize(have);
    return start;
}

[[noreturn]] void raise_too_large(const std::string& source, bool compressed) {
    raise_not_readable(source, "it is larger than " + std::to_string(kMaxUnsizedTreeBytes >> 20) +
                                   " MiB, the most read from a pipe or compressed input into memory as a whole; " +
                                   (compressed ? "decompress" : "save") + " it to a file and give the file's name");
}

// What a compressed input expands to is not known beforehand: it is capped as a pipe is.
std::shared_ptr<DocWrapper> load_decompressed(compression::Decompressor& decompressor, const std::string& source,
                                              const parser::ParserSettings& settings) {
    std::uint64_t total = 0;
    return load_document_from(
        [&](char* buffer, std::size_t size) {
            const std::size_t n = decompressor.read(buffer, size);
            total += n;
            if (total > kMaxUnsizedTreeBytes) raise_too_large(source, true);
            return n;
        },
        source, settings);
}

// Loads an input whose first bytes, start, were already read from it; sized tells a regular file.
std::shared_ptr<DocWrapper> load_from(const std::string& start, const ReadBytes& read, const std::string& source,
                                      bool sized, const parser::ParserSettings& settings) {
    if (auto decompressor = compression::Decompressor::open(start, read, source))
        return load_decompressed(*decompressor, source, settings);
    std::string_view pending = start;
    std::uint64_t total = 0;
    return load_document_from(
        [&](char* buffer, std::size_t size) -> std::size_t {
            std::size_t n;
            if (!pending.empty()) {
                n = std::min(size, pending.size());
                std::memcpy(buffer, pending.data(), n);
                pending.remove_prefix(n);
            } else {
                n = read(buffer, size);
            }
            total += n;
            if (!sized && total > kMaxUnsizedTreeBytes) raise_too_large(source, false);
            return n;
        },
        source, settings);
}

}  // namespace

std::shared_ptr<DocWrapper> load_document_from(const ReadBytes& read, const std::string& source,
                                               const parser::ParserSettings& settings) {
    parser::PushParser parser(source, settings);
    std::vector<char> buffer(kChunkBytes);
    for (std::size_t n; (n = read(buffer.data(), buffer.size())) > 0;) parser.feed(buffer.data(), n);
    parser.finish();
    return wrap(source, parser);
}

std::shared_ptr<DocWrapper> load_document(const std::string& path, const parser::ParserSettings& settings) {
    const bool is_stdin = path == "-";
    const std::string source = is_stdin ? "<stdin>" : path;
    FileDescriptor file(is_stdin ? STDIN_FILENO : ::open(path.c_str(), O_RDONLY | O_CLOEXEC), !is_stdin);
    if (file.get() < 0) raise_not_readable(path, errno);
    struct stat status {};
    if (::fstat(file.get(), &status) != 0) raise_not_readable(source, errno);
    if (S_ISDIR(status.st_mode)) raise_not_readable(source, EISDIR);

    // Reading through the descriptor streams the file into the parser: no copy of it is made.
    const ReadBytes read_file = [&](char* buffer, std::size_t size) -> std::size_t {
        for (;;) {
            const ssize_t n = ::read(file.get(), buffer, size);
            if (n >= 0) return static_cast<std::size_t>(n);
            if (errno != EINTR) raise_not_readable(source, errno);
        }
    };
    return load_from(start_of(read_file), read_file, source, S_ISREG(status.st_mode), settings);
}

std::shared_ptr<DocWrapper> load_document_from_memory(std::string_view content, const std::string& source,
                                                      const parser::ParserSettings& settings) {
    const std::string_view start = content.substr(0, compression::Decompressor::kMagicBytes);
    std::string_view rest = content.substr(start.size());
    const auto read_rest = [&rest](char* buffer, std::size_t size) {
        const std::size_t n = std::min(size, rest.size());
        std::memcpy(buffer, rest.data(), n);
        rest.remove_prefix(n);
        return n;
    };
    if (auto decompressor = compression::Decompressor::open(start, read_rest, source))
        return load_decompressed(*decompressor, source, settings);
    parser::PushParser parser(source, settings);
    // In slices, so libxml2's own input buffer never holds a second copy of the whole content.
    for (std::size_t at = 0; at < content.size(); at += kChunkBytes) {
        const std::size_t n = std::min(kChunkBytes, content.size() - at);
        if (!parser.feed(content.data() + at, n)) break;
    }
    parser.finish();
    return wrap(source, parser);
}

}  // namespace tolven::io::xml::common::vcos
