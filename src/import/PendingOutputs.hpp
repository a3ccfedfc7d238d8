#pragma once
// The temporary files of output not yet complete, kept where a signal handler can remove them.
// Registering changes no signal disposition: the program decides which signals clean up (the
// command line does, through remove_pending_outputs), a library host keeps its own.

namespace tolven::import {

// Records the file name (at most 255 bytes) in the folder open as folder_fd, and returns its slot,
// or -1 when all slots are taken (then a signal cannot remove it; nothing else changes).
int register_pending_output(int folder_fd, const char* name) noexcept;
// Forgets a slot: the file was renamed into place or removed.
void unregister_pending_output(int slot) noexcept;
// Removes every registered file. Async-signal-safe: unlinkat on descriptors and names set beforehand.
void remove_pending_outputs() noexcept;

}  // namespace tolven::import
