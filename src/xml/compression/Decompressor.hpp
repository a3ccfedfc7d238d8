#pragma once
// Compressed input read as the bytes it holds: one decoder per format, told apart by the first bytes
// (never the file name, so standard input works alike). A decoder pulls compressed bytes as it needs
// them and hands out what they decode to in the caller's buffer, so memory stays flat however large
// the input or what it expands to.

#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tolven::io::xml::common::compression {

// Reads the next bytes into buffer (at most size); 0 at the end.
using ReadBytes = std::function<std::size_t(char* buffer, std::size_t size)>;

class Decompressor {
public:
    // The most first bytes looked at to tell a format.
    static constexpr std::size_t kMagicBytes = 6;

    // The decoder for the format whose magic bytes start (the first bytes of an input, up to kMagicBytes)
    // begins with, reading start and then the rest of the input from raw; null when start is no
    // compressed format (so the input is plain). source names the input in messages.
    static std::unique_ptr<Decompressor> open(std::string_view start, ReadBytes raw, std::string source);

    virtual ~Decompressor();
    Decompressor(const Decompressor&) = delete;
    Decompressor& operator=(const Decompressor&) = delete;

    // The format's name, as users know it ("gzip").
    virtual std::string_view format() const noexcept = 0;

    // Decompresses the next bytes into buffer (at most size); 0 at the end of the input. Streams that
    // follow one another (concatenated files) are read as one. Raises "TOLVEN:io:xml:common:FileNotReadable"
    // (source, reason) when the data is corrupt or breaks off before its end; the bytes decoded before
    // the fault are handed out first, and the next call raises it, so that a reader meets the faults of
    // the document and of its compression in the order they lie, however large its buffer.
    std::size_t read(char* buffer, std::size_t size);

    // Compressed bytes taken from the input so far.
    std::uint64_t compressed_bytes() const noexcept { return compressed_bytes_; }

protected:
    explicit Decompressor(std::string_view start, ReadBytes raw, std::string source);

    // Compressed bytes not yet decoded.
    struct Input {
        const char* data;
        std::size_t size;
    };
    // Room left for decoded bytes.
    struct Output {
        char* data;
        std::size_t size;
    };
    // Decodes from in into out, advancing both; input_ended tells that in holds the last bytes there
    // are. True when a stream ended (more may follow).
    virtual bool decode(Input& in, Output& out, bool input_ended) = 0;
    // Prepares for the next of several concatenated streams.
    virtual void restart() = 0;
    // Raises FileNotReadable: the data is not valid for the format; detail says how, when known.
    [[noreturn]] void corrupt(std::string_view detail) const;

private:
    void refill();
    // Decodes into out until it holds something (out.size below size) or the input ends.
    void decode_into(Output& out, std::size_t size);

    ReadBytes raw_;
    std::string source_;
    std::vector<char> buffer_;
    Input in_{nullptr, 0};
    bool raw_ended_ = false;
    bool in_stream_ = true;  // a stream has begun and not ended
    std::uint64_t compressed_bytes_ = 0;
    std::exception_ptr fault_;  // met after bytes that were handed out; raised by the next read
    std::vector<char> decoded_;  // decoded bytes, handed out from decoded_at_ to decoded_end_
    std::size_t decoded_at_ = 0;
    std::size_t decoded_end_ = 0;
};

}  // namespace tolven::io::xml::common::compression
