#pragma once
// The input of read: a file or standard input, whose first bytes can be looked at before it is
// parsed in one pass, without reading anything twice.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tolven::cli::import {

class InputDocument {
public:
    // Opens path ("-" is standard input). Raises "TOLVEN:io:xml:common:FileNotReadable" (path, reason).
    explicit InputDocument(const std::string& path);
    ~InputDocument();
    InputDocument(const InputDocument&) = delete;
    InputDocument& operator=(const InputDocument&) = delete;

    // The name used in messages: the path, or "<stdin>".
    const std::string& source() const noexcept { return source_; }
    bool is_stdin() const noexcept { return is_stdin_; }
    // The size of a regular file; none for pipes and terminals.
    std::optional<std::uint64_t> size() const noexcept { return size_; }

    // Reads the first bytes (up to limit) into memory, to be served again by read().
    // Raises FileNotReadable.
    void read_prefix(std::size_t limit);
    std::string_view prefix() const noexcept { return prefix_; }
    // True when the prefix holds the whole input.
    bool complete() const noexcept { return prefix_complete_; }

    // The next bytes of the input, the prefix first; 0 at the end. Raises FileNotReadable.
    std::size_t read(char* buffer, std::size_t size);
    // Bytes handed out by read() so far.
    std::uint64_t consumed() const noexcept { return served_; }
    // The whole input in memory (the prefix and the rest); only before read(). Raises FileNotReadable.
    std::string read_all();

private:
    std::size_t read_fd(char* buffer, std::size_t size);
    std::string path_;
    std::string source_;
    bool is_stdin_;
    int fd_ = -1;
    std::optional<std::uint64_t> size_;
    std::string prefix_;
    bool at_end_ = false;
    bool prefix_complete_ = false;
    std::uint64_t served_ = 0;
};

}  // namespace tolven::cli::import
