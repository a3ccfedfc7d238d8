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
        std::size_t used = 0;              // set when the batch is handed over
    };
    // A batch is handed over once it holds this much: large enough that handing over costs little
    // beside replaying, small enough that the two threads start working together early.
    static constexpr std::size_t kBatchBytes = std::size_t{128} << 10;

    // size bytes more at the end of the current batch, to be written. Inline: one or two per event,
    // and the parsing thread is what a parallel read waits for.
    unsigned char* room(std::size_t size) {
        if (static_cast<std::size_t>(end_ - at_) < size) [[unlikely]]
            grow(size);
        unsigned char* at = at_;
        at_ += size;
        return at;
    }
    void grow(std::size_t size);
    // Writing starts on an empty batch.
    void begin(std::unique_ptr<Batch> batch);
    // After an event: hands the batch over when full; false once the handler stopped. The stop is
    // looked at when a batch is handed over, not per event: a line the worker writes is not read here
    // on every event, and the parse runs on one batch at most past it.
    bool recorded() {
        if (at_ >= full_at_) [[unlikely]]
            hand_over(false);
        return going_;
    }
    // A text right after a text: appended to it when its size field holds the sum.
    bool append_text(std::string_view text);
    // The start of an element with a namespace, a prefix, attributes or declarations.
    bool start_with_parts(const ElementEvent& element);
    // Hands the current batch to the worker once it is full enough (or at once with force).
    void hand_over(bool force);
    void work();
    // Replays one batch; false once the handler stopped.
    bool replay(const Batch& batch);

    SaxHandler& handler_;
    std::string source_;
    std::function<void()> after_batch_;
    // The batch being written, where its next record goes, where its storage ends, where it is full
    // enough to hand over, and its last record when that is a text.
    std::unique_ptr<Batch> current_;
    unsigned char* at_ = nullptr;
    unsigned char* end_ = nullptr;
    unsigned char* full_at_ = nullptr;
    unsigned char* last_text_ = nullptr;
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
