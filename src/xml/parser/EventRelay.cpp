#include "xml/parser/EventRelay.hpp"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <new>
#include <utility>

#include "host/copy_bytes.hpp"
#include "host/except/Exception.hpp"
#include "xml/errors.hpp"

namespace tolven::io::xml::common::parser {

namespace {

// Batches in flight at most: the parser waits when it is this far ahead.
constexpr std::size_t kMostBatches = 4;

// A record's first byte: its kind in the low two bits and, for a start, which of its optional parts
// follow. An element with no namespace, no prefix, no attributes and no declarations (most of them)
// is then nine bytes: the tag and its name.
enum Tag : unsigned char { kEnd = 0, kText = 1, kStart = 2 };
constexpr unsigned char kKind = 3;
constexpr unsigned char kHasUri = 4;
constexpr unsigned char kHasPrefix = 8;
constexpr unsigned char kHasLists = 16;  // attributes or namespace declarations
// No attribute has a prefix or a namespace (most have none): each is its name, size and value.
constexpr unsigned char kPlainAttributes = 32;
// libxml2 measures a piece of text and an attribute value in an int: four bytes hold either.
using TextSize = std::uint32_t;

// Reads the records of a batch in order.
class Reader {
public:
    Reader(const unsigned char* bytes, std::size_t size) : at_(bytes), end_(bytes + size) {}
    bool done() const noexcept { return at_ == end_; }
    template <class T>
    T get() noexcept {
        T value;
        std::memcpy(&value, at_, sizeof value);
        at_ += sizeof value;
        return value;
    }
    const unsigned char* take(std::size_t size) noexcept {
        const unsigned char* start = at_;
        at_ += size;
        return start;
    }

private:
    const unsigned char* at_;
    const unsigned char* end_;
};

}  // namespace

EventRelay::EventRelay(SaxHandler& handler, std::string source, std::function<void()> after_batch)
    : handler_(handler), source_(std::move(source)), after_batch_(std::move(after_batch)) {
    begin(std::make_unique<Batch>());
    batches_ = 1;
    worker_ = std::thread([this] { work(); });
}

EventRelay::~EventRelay() { stop(); }

void EventRelay::stop() noexcept {
    {
        const std::lock_guard lock(mutex_);
        quit_ = true;
        full_.clear();
    }
    changed_.notify_all();
    if (worker_.joinable()) worker_.join();
}

void EventRelay::begin(std::unique_ptr<Batch> batch) {
    current_ = std::move(batch);
    // A batch that grew around a long text gives its memory back.
    if (current_->bytes.size() > 8 * kBatchBytes) std::vector<unsigned char>().swap(current_->bytes);
    // Room past the handing-over mark for the event that crosses it.
    if (current_->bytes.size() < kBatchBytes + 4096) current_->bytes.resize(kBatchBytes + 4096);
    at_ = current_->bytes.data();
    end_ = at_ + current_->bytes.size();
    full_at_ = at_ + kBatchBytes;
    last_text_ = nullptr;
}

void EventRelay::grow(std::size_t size) {
    std::vector<unsigned char>& bytes = current_->bytes;
    const auto used = static_cast<std::size_t>(at_ - bytes.data());
    const std::ptrdiff_t last_text = last_text_ != nullptr ? last_text_ - bytes.data() : -1;
    bytes.resize(std::max(2 * bytes.size(), used + size));
    at_ = bytes.data() + used;
    end_ = bytes.data() + bytes.size();
    full_at_ = bytes.data() + kBatchBytes;
    last_text_ = last_text >= 0 ? bytes.data() + last_text : nullptr;
}

namespace {

template <class T>
unsigned char* write(unsigned char* at, const T& value) {
    std::memcpy(at, &value, sizeof value);
    return at + sizeof value;
}

}  // namespace

bool EventRelay::start_element(const ElementEvent& element) {
    last_text_ = nullptr;
    if (element.uri != nullptr || element.prefix != nullptr || element.attribute_count > 0 ||
        element.namespace_count > 0) [[unlikely]]
        return start_with_parts(element);
    unsigned char* at = room(1 + sizeof(const char*));
    at = write(at, static_cast<unsigned char>(kStart));
    write(at, element.local);
    return recorded();
}

bool EventRelay::start_with_parts(const ElementEvent& element) {
    const auto namespaces = static_cast<std::size_t>(element.namespace_count);
    const auto attributes = static_cast<std::size_t>(element.attribute_count);
    const bool lists = namespaces > 0 || attributes > 0;
    bool plain = true;
    std::size_t size = 1 + 3 * sizeof(const char*) + 2 * sizeof(int) + 2 * namespaces * sizeof(const xmlChar*) +
                       attributes * (3 * sizeof(const xmlChar*) + sizeof(TextSize));
    for (std::size_t i = 0; i < attributes; ++i) {
        const xmlChar* const* a = element.attributes + 5 * i;
        size += static_cast<std::size_t>(a[4] - a[3]);
        plain = plain && a[1] == nullptr && a[2] == nullptr;
    }
    const unsigned char tag = kStart | (element.uri != nullptr ? kHasUri : 0) |
                              (element.prefix != nullptr ? kHasPrefix : 0) | (lists ? kHasLists : 0) |
                              (plain ? kPlainAttributes : 0);
    unsigned char* at = room(size);
    at = write(at, tag);
    at = write(at, element.local);
    if (element.uri != nullptr) at = write(at, element.uri);
    if (element.prefix != nullptr) at = write(at, element.prefix);
    if (lists) {
        at = write(at, element.attribute_count);
        at = write(at, element.namespace_count);
    }
    if (namespaces > 0) {
        std::memcpy(at, element.namespaces, 2 * namespaces * sizeof(const xmlChar*));
        at += 2 * namespaces * sizeof(const xmlChar*);
    }
    for (std::size_t i = 0; i < attributes; ++i) {
        const xmlChar* const* a = element.attributes + 5 * i;
        const std::size_t names = plain ? 1 : 3;  // local, then prefix and namespace
        std::memcpy(at, a, names * sizeof(const xmlChar*));
        at += names * sizeof(const xmlChar*);
        const auto length = static_cast<TextSize>(a[4] - a[3]);
        at = write(at, length);
        fl::bytes::copy(at, a[3], length);
        at += length;
    }
    // What was reserved and not needed (the absent names) is given back.
    at_ = at;
    return recorded();
}

bool EventRelay::end_element() {
    last_text_ = nullptr;
    write(room(1), static_cast<unsigned char>(kEnd));
    return recorded();
}

bool EventRelay::text(std::string_view text) {
    if (last_text_ != nullptr) [[unlikely]]
        return append_text(text);
    const auto length = static_cast<TextSize>(text.size());
    unsigned char* at = room(1 + sizeof(TextSize) + text.size());
    last_text_ = at;
    at = write(at, static_cast<unsigned char>(kText));
    at = write(at, length);
    fl::bytes::copy(at, text.data(), text.size());
    return recorded();
}

bool EventRelay::append_text(std::string_view text) {
    // Text after text, with no tag between, is one piece to the handler, while its size field holds
    // the sum (and until the batch is handed over).
    const auto length = static_cast<TextSize>(text.size());
    TextSize size;
    std::memcpy(&size, last_text_ + 1, sizeof size);
    if (size > std::numeric_limits<TextSize>::max() - length) {
        last_text_ = nullptr;
        return this->text(text);
    }
    size += length;
    std::memcpy(last_text_ + 1, &size, sizeof size);
    fl::bytes::copy(room(text.size()), text.data(), text.size());
    return recorded();
}

void EventRelay::hand_over(bool force) {
    const auto used = static_cast<std::size_t>(at_ - current_->bytes.data());
    if ((used < kBatchBytes && !force) || used == 0) return;
    current_->used = used;
    std::unique_lock lock(mutex_);
    going_ = !stopped_.load(std::memory_order_relaxed);
    full_.push_back(std::move(current_));
    changed_.notify_all();
    if (spare_.empty() && batches_ < kMostBatches) {
        ++batches_;
        lock.unlock();
        begin(std::make_unique<Batch>());
        return;
    }
    changed_.wait(lock, [this] { return !spare_.empty() || quit_; });
    if (spare_.empty()) {
        lock.unlock();
        begin(std::make_unique<Batch>());
        return;
    }
    std::unique_ptr<Batch> spare = std::move(spare_.back());
    spare_.pop_back();
    lock.unlock();
    begin(std::move(spare));
}

bool EventRelay::finish() {
    hand_over(true);
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return (full_.empty() && !busy_) || quit_; });
    if (failure_) {
        try {
            std::rethrow_exception(failure_);
        } catch (const std::bad_alloc&) {
            vxErrMsgId(TOLVEN::io::xml::common::OutOfMemory(source_));
        }
    }
    return !stopped_;
}

void EventRelay::work() {
    for (;;) {
        std::unique_ptr<Batch> batch;
        {
            std::unique_lock lock(mutex_);
            changed_.wait(lock, [this] { return !full_.empty() || quit_; });
            if (quit_) return;
            batch = std::move(full_.front());
            full_.pop_front();
            busy_ = true;
        }
        bool going = !stopped_.load(std::memory_order_relaxed);
        std::exception_ptr failure;
        if (going) {
            try {
                going = replay(*batch);
            } catch (...) {
                failure = std::current_exception();
                going = false;
            }
        }
        if (going && after_batch_) after_batch_();
        {
            const std::lock_guard lock(mutex_);
            if (failure && !failure_) failure_ = failure;
            if (!going) stopped_.store(true, std::memory_order_relaxed);
            spare_.push_back(std::move(batch));
            busy_ = false;
        }
        changed_.notify_all();
    }
}

bool EventRelay::replay(const Batch& batch) {
    Reader in(batch.bytes.data(), batch.used);
    while (!in.done()) {
        const auto tag = in.get<unsigned char>();
        switch (tag & kKind) {
            case kStart: {
                ElementEvent element{};
                element.local = in.get<const char*>();
                if ((tag & (kHasUri | kHasPrefix | kHasLists)) == 0) {
                    if (!handler_.start_element(element)) return false;
                    break;
                }
                if ((tag & kHasUri) != 0) element.uri = in.get<const char*>();
                if ((tag & kHasPrefix) != 0) element.prefix = in.get<const char*>();
                if ((tag & kHasLists) != 0) {
                    element.attribute_count = in.get<int>();
                    element.namespace_count = in.get<int>();
                }
                scratch_.clear();
                for (int i = 0; i < 2 * element.namespace_count; ++i) scratch_.push_back(in.get<const xmlChar*>());
                const bool plain = (tag & kPlainAttributes) != 0;
                for (int i = 0; i < element.attribute_count; ++i) {
                    scratch_.push_back(in.get<const xmlChar*>());
                    scratch_.push_back(plain ? nullptr : in.get<const xmlChar*>());
                    scratch_.push_back(plain ? nullptr : in.get<const xmlChar*>());
                    const auto size = in.get<TextSize>();
                    const unsigned char* value = in.take(size);
                    scratch_.push_back(value);
                    scratch_.push_back(value + size);
                }
                element.namespaces = element.namespace_count > 0 ? scratch_.data() : nullptr;
                element.attributes = scratch_.data() + 2 * element.namespace_count;
                if (!handler_.start_element(element)) return false;
                break;
            }
            case kEnd:
                if (!handler_.end_element()) return false;
                break;
            case kText: {
                const auto size = in.get<TextSize>();
                const unsigned char* text = in.take(size);
                if (!handler_.text(std::string_view(chars(text), size))) return false;
                break;
            }
        }
    }
    return true;
}

}  // namespace tolven::io::xml::common::parser
