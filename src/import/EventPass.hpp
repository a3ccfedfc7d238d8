#pragma once
// One streaming pass of libxml2's push parser over an input, its events to a handler: on this
// thread, or in parallel, where this thread parses and a worker handles the events (EventRelay).

#include <cstdint>
#include <functional>
#include <string_view>

#include "import/InputDocument.hpp"
#include "xml/parser/ParserSettings.hpp"
#include "xml/parser/SaxHandler.hpp"

namespace tolven::import {

struct EventPass {
    // Called with the parse's interner before the first event: names interned by it are the
    // pointers the events carry.
    std::function<void(const std::function<const char*(std::string_view)>&)> bind;
    // Called on this thread after each chunk is parsed, with the input's input_bytes() (to show
    // progress).
    std::function<void(std::uint64_t)> after_chunk;
    // In parallel, called on the worker after each batch of events, with the handler at rest.
    std::function<void()> after_batch;
    bool parallel = false;

    // Reads input from where it stands to its end, or until handler stops the parse; in parallel, a
    // compressed input is decompressed on a third thread. Returns false when the handler stopped it. Raises what PushParser raises, and what the handler throws: in
    // parallel too, a fault of the parser is raised only when the handler took every event before
    // it without stopping or failing.
    bool run(InputDocument& input, const io::xml::common::parser::ParserSettings& settings,
             io::xml::common::parser::SaxHandler& handler) const;
};

}  // namespace tolven::import
