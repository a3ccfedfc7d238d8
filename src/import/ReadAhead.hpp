#pragma once
// Reads an input ahead on a thread of its own, in the chunks InputDocument::read hands out, so that
// decompressing a compressed input overlaps parsing it. Chunks, the end and a read fault come in the
// order read() gives them, so a pass sees exactly what it would reading the input itself.

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <exception>
#include <memory>
#include <mutex>
#include <string_view>
#include <thread>
#include <vector>

#include "import/InputDocument.hpp"

namespace tolven::import {

class ReadAhead {
public:
    // input must outlive the reader and is read by it alone until it is destroyed.
    explicit ReadAhead(InputDocument& input);
    // Stops reading; what was read ahead is dropped.
    ~ReadAhead();
    ReadAhead(const ReadAhead&) = delete;
    ReadAhead& operator=(const ReadAhead&) = delete;

    // The next chunk, valid until the next call; empty at the end (and after a fault). Rethrows what
    // read() raised, at the place it raised it.
    std::string_view next();
    // input_bytes() of the input after the chunk last given by next().
    std::uint64_t input_bytes() const noexcept { return input_bytes_; }

private:
    struct Chunk {
        std::vector<char> bytes;
        std::size_t size = 0;
        std::uint64_t input_bytes = 0;
        std::exception_ptr fault;
    };
    void work();

    InputDocument& input_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::unique_ptr<Chunk>> ready_;
    std::vector<std::unique_ptr<Chunk>> spare_;
    std::unique_ptr<Chunk> current_;  // the chunk last given out
    std::uint64_t input_bytes_ = 0;
    bool ended_ = false;  // the end or a fault was given out: the worker has stopped
    bool quit_ = false;
    std::thread worker_;
};

}  // namespace tolven::import
