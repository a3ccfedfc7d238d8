#include "import/ReadAhead.hpp"

namespace tolven::import {

namespace {

// Chunks read ahead at most: enough to ride out an uneven decompressor.
constexpr std::size_t kChunksAhead = 4;

}  // namespace

ReadAhead::ReadAhead(InputDocument& input) : input_(input) {
    for (std::size_t i = 0; i < kChunksAhead; ++i) {
        spare_.push_back(std::make_unique<Chunk>());
        spare_.back()->bytes.resize(InputDocument::kChunkBytes);
    }
    worker_ = std::thread([this] { work(); });
}

ReadAhead::~ReadAhead() {
    {
        const std::lock_guard lock(mutex_);
        quit_ = true;
    }
    changed_.notify_all();
    worker_.join();
}

void ReadAhead::work() {
    for (bool done = false; !done;) {
        std::unique_ptr<Chunk> chunk;
        {
            std::unique_lock lock(mutex_);
            changed_.wait(lock, [this] { return !spare_.empty() || quit_; });
            if (quit_) return;
            chunk = std::move(spare_.back());
            spare_.pop_back();
        }
        chunk->fault = nullptr;
        try {
            chunk->size = input_.read(chunk->bytes.data(), chunk->bytes.size());
            done = chunk->size == 0;
        } catch (...) {
            chunk->size = 0;
            chunk->fault = std::current_exception();
            done = true;
        }
        chunk->input_bytes = input_.input_bytes();
        {
            const std::lock_guard lock(mutex_);
            ready_.push_back(std::move(chunk));
        }
        changed_.notify_all();
    }
}

std::string_view ReadAhead::next() {
    if (ended_) return {};
    std::unique_lock lock(mutex_);
    if (current_) spare_.push_back(std::move(current_));
    changed_.notify_all();
    changed_.wait(lock, [this] { return !ready_.empty(); });
    current_ = std::move(ready_.front());
    ready_.pop_front();
    lock.unlock();
    input_bytes_ = current_->input_bytes;
    ended_ = current_->size == 0;
    if (current_->fault) std::rethrow_exception(current_->fault);
    return {current_->bytes.data(), current_->size};
}

}  // namespace tolven::import
