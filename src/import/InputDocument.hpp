#pragma once
// The input of read: a file, standard input or bytes in memory, whose first bytes can be looked at before it is
// parsed in one pass, without reading anything twice. Compressed input (gzip, bzip2, xz, zstd, told by its
// first bytes) is decompressed as it is read: every byte handed out is the document's own.

#include <cstdint>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "xml/compression/Decompressor.hpp"

namespace tolven::import {

class InputDocument {
public:
    // The bytes every pass reads and hands to the parser at a time. libxml2 reports some faults only
    // once it has looked ahead, so passes that parse the same chunks report the same fault first.
    static constexpr std::size_t kChunkBytes = std::size_t{64} << 10;

    // Opens path ("-" is standard input). Raises "TOLVEN:io:xml:common:FileNotReadable" (path, reason).
    explicit InputDocument(const std::string& path);
    // Reads bytes held by the caller, which must outlive this object; source names them in
    // messages. Like a pipe, it has no size, so it is loaded or streamed by how much fits the sample.
    InputDocument(std::string_view bytes, std::string source);
    ~InputDocument();
    InputDocument(const InputDocument&) = delete;
    InputDocument& operator=(const InputDocument&) = delete;

    // The path as given ("-" for standard input).
    const std::string& path() const noexcept { return path_; }
    // The name used in messages: the path, or "<stdin>".
    const std::string& source() const noexcept { return source_; }
    bool is_stdin() const noexcept { return is_stdin_; }
    // The size of a regular file (compressed, when it is); none for pipes and terminals.
    std::optional<std::uint64_t> size() const noexcept { return size_; }
    // The compression format ("gzip", ...); empty for a plain document.
    std::string_view compression() const noexcept;
    // True when the size of the document is known before it is read: a plain regular file.
    bool sized() const noexcept { return !is_stdin_ && size_ && !decompressor_; }

    // The same input read again from its start, when it can be: a regular file (compressed or not) or
    // bytes in memory. Null for standard input, pipes and terminals, which are read once.
    std::unique_ptr<InputDocument> reopen() const;
    // True when reopen() gives the input again.
    bool reopenable() const noexcept { return fd_ < 0 || (!is_stdin_ && size_); }

    // Reads the first bytes (up to limit, or one more to tell whether that is all) into memory, to be
    // served again by read(); a second call with a larger limit reads on. Raises FileNotReadable.
    void read_prefix(std::size_t limit);
    std::string_view prefix() const noexcept { return prefix_; }
    // True when the prefix holds the whole input.
    bool complete() const noexcept { return prefix_complete_; }

    // The next bytes of the input, the prefix first; 0 at the end. The buffer is filled whole but at
    // the end, so chunks do not depend on how the prefix was read. Raises FileNotReadable, on the
    // call after the one that hands out the bytes read before the fault.
    std::size_t read(char* buffer, std::size_t size);
    // Bytes handed out by read() so far.
    std::uint64_t consumed() const noexcept { return served_; }
    // Bytes of the input itself taken so far (the compressed ones, for compressed input), to set
    // against size().
    std::uint64_t input_bytes() const noexcept;

private:
    void open_compressed();
    std::size_t read_raw(char* buffer, std::size_t size);
    std::size_t read_fd(char* buffer, std::size_t size);
    std::string path_;
    std::string source_;
    bool is_stdin_;
    int fd_ = -1;
    std::string_view memory_;  // the bytes not yet read, when reading from memory
    std::string_view memory_all_;
    std::optional<std::uint64_t> size_;
    std::string prefix_;
    bool raw_end_ = false;
    bool at_end_ = false;
    std::unique_ptr<io::xml::common::compression::Decompressor> decompressor_;
    bool prefix_complete_ = false;
    std::uint64_t served_ = 0;
    std::exception_ptr fault_;
};

}  // namespace tolven::import
