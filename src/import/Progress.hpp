#pragma once
#include <cstdint>

namespace tolven::import {

// Told how far a streaming import has come; a command line draws it, a library caller may ignore it.
class Progress {
public:
    virtual ~Progress() = default;
    // bytes: of the input consumed so far; rows: written so far. Called every few thousand events.
    virtual void update(std::uint64_t bytes, std::uint64_t rows) = 0;
    // A pass that writes no rows (the look for late columns) has ended; the import starts over from
    // the first byte. Whatever was drawn is taken away before rows may reach the same screen.
    virtual void restart() {}
};

}  // namespace tolven::import
