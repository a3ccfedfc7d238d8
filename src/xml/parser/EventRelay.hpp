#pragma once
// Overlaps parsing with what is done with its events, on two threads: the parser's thread records
// each event into a batch, and a worker thread replays the batches, in document order, to the
// handler. Names travel as the parse's interned pointers, which live as long as the parser; text
// and attribute values are copied, as they are valid only during a call.

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "xml/parser/SaxHandler.hpp"

namespace tolven::io::xml::common::parser {

class EventRelay final : public SaxHandler {
public:
    // handler must outlive the relay; source names the document in messages. after_batch, when
    // given, is called on the worker after each batch, with the handler at rest (to publish how far
    // it is).
    EventRelay(SaxHandler& handler, std::string source, std::function<void()> after_batch = {});
    // Stops the worker without replaying what is left.
    ~EventRelay();
    EventRelay(const EventRelay&) = delete;
    EventRelay& operator=(const EventRelay&) = delete;

    // Record an event. They return false once the handler has stopped (returned false or threw):
    // nothing further is wanted.
    bool start_element(const ElementEvent& element) override;
    bool end_element() override;
    bool text(std::string_view text) override;

    // Replays everything recorded and waits until the handler has taken it. Returns false when the
    // handler stopped the parse; rethrows what the handler threw, as PushParser does
    // ("TOLVEN:io:xml:common:OutOfMemory" (source) for std::bad_alloc). Call it before the parser
    // whose names the events carry is destroyed.
    bool finish();
    // Ends the worker at once, dropping what it has not replayed; for a parse that is abandoned.
    void stop() noexcept;

private:
    struct Batch {
        std::vector<unsigned char> bytes;  // the first used hold the records
        std::size_t used = 0;
        std::size_t last_text = kNoText;  // where the last record starts when it is text
    };
    static constexpr std::size_t kNoText = static_cast<std::size_t>(-1);
    // A batch is handed over once it holds this much: large enough that handing over costs little
    // beside replaying, small enough that the two threads start working together early.
    static constexpr std::size_t kBatchBytes = std::size_t{128} << 10;

    // size bytes more at the end of the current batch, to be written. Inline: several per event.
    unsigned char* room(std::size_t size) {
        Batch& batch = *current_;
        if (batch.used + size > batch.bytes.size()) [[unlikely]]
            grow(size);
        unsigned char* at = batch.bytes.data() + batch.used;
        batch.used += size;
        return at;
    }
    void grow(std::size_t size);
    // After an event: hands the batch over when full; false once the handler stopped. The stop is
    // looked at when a batch is handed over, not per event: a line the worker writes is not read here
    // on every event, and the parse runs on one batch at most past it.
    bool recorded() {
        if (current_->used >= kBatchBytes) [[unlikely]]
            hand_over(false);
        return going_;
    }
    // Hands the current batch to the worker once it is full enough (or at once with force).
    void hand_over(bool force);
    void work();
    // Replays one batch; false once the handler stopped.
    bool replay(const Batch& batch);

    SaxHandler& handler_;
    std::string source_;
    std::function<void()> after_batch_;
    std::unique_ptr<Batch> current_;
    bool going_ = true;  // the handler had not stopped when the last batch was handed over

    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::unique_ptr<Batch>> full_;    // handed over, not yet replayed
    std::vector<std::unique_ptr<Batch>> spare_;  // replayed, kept for their buffers
    std::size_t batches_ = 0;                    // made so far; bounded
    bool busy_ = false;                          // the worker is replaying a batch
    bool quit_ = false;
    std::atomic<bool> stopped_ = false;          // the handler stopped or threw; set by the worker
    std::exception_ptr failure_;
    std::vector<const xmlChar*> scratch_;  // the worker's attribute and namespace pointers
    std::thread worker_;
};

}  // namespace tolven::io::xml::common::parser
