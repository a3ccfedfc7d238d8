#include "import/EventPass.hpp"

#include <optional>
#include <vector>

#include "import/ReadAhead.hpp"
#include "xml/parser/EventRelay.hpp"
#include "xml/parser/PushParser.hpp"

namespace tolven::import {

namespace parser = io::xml::common::parser;

bool EventPass::run(InputDocument& input, const parser::ParserSettings& settings, parser::SaxHandler& handler) const {
    std::optional<parser::EventRelay> relay;
    if (parallel) relay.emplace(handler, input.source(), after_batch);
    parser::PushParser push(input.source(), settings, relay ? static_cast<parser::SaxHandler&>(*relay) : handler);
    // The worker reads names the parser owns: it stops before the parser goes, whatever happens.
    const struct StopFirst {
        std::optional<parser::EventRelay>& relay;
        ~StopFirst() {
            if (relay) relay->stop();
        }
    } stop_first{relay};
    if (bind) bind([&push](std::string_view name) { return push.intern(name); });
    // A compressed input is decompressed ahead on a thread of its own while this one parses.
    std::optional<ReadAhead> ahead;
    if (parallel && !input.compression().empty()) ahead.emplace(input);
    std::vector<char> buffer(ahead ? 0 : InputDocument::kChunkBytes);
    bool more = true;
    try {
        while (more) {
            const std::string_view chunk =
                ahead ? ahead->next() : std::string_view(buffer.data(), input.read(buffer.data(), buffer.size()));
            if (chunk.empty()) {
                push.finish();
                break;
            }
            more = push.feed(chunk.data(), chunk.size());
            if (after_chunk) after_chunk(ahead ? ahead->input_bytes() : input.input_bytes());
        }
    } catch (...) {
        // The events before a fault come first: the handler's own error, or its having stopped
        // before the fault, is what a parse on one thread would have given.
        if (relay && !relay->finish()) return false;
        throw;
    }
    return relay ? relay->finish() : more;
}

}  // namespace tolven::import
