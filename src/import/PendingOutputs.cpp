#include "import/PendingOutputs.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cstring>

namespace tolven::import {

namespace {

// A slot is claimed by exchanging state Free for Writing, filled, then published as Armed: a
// handler reads only Armed slots, whose folder and name no longer change.
enum State : int { Free, Writing, Armed };

struct Slot {
    std::atomic<int> state{Free};
    int folder_fd = -1;
    char name[256] = {};
};

constexpr int kSlots = 16;
Slot slots[kSlots];
static_assert(std::atomic<int>::is_always_lock_free, "a signal handler reads the slots");

}  // namespace

int register_pending_output(int folder_fd, const char* name) noexcept {
    const std::size_t length = std::strlen(name);
    if (length >= sizeof slots[0].name) return -1;
    for (int i = 0; i < kSlots; ++i) {
        int expected = Free;
        if (!slots[i].state.compare_exchange_strong(expected, Writing)) continue;
        slots[i].folder_fd = folder_fd;
        std::memcpy(slots[i].name, name, length + 1);
        slots[i].state.store(Armed, std::memory_order_release);
        return i;
    }
    return -1;
}

void unregister_pending_output(int slot) noexcept {
    if (slot >= 0 && slot < kSlots) slots[slot].state.store(Free, std::memory_order_release);
}

void remove_pending_outputs() noexcept {
    for (Slot& slot : slots) {
        if (slot.state.load(std::memory_order_acquire) == Armed) ::unlinkat(slot.folder_fd, slot.name, 0);
    }
}

}  // namespace tolven::import
