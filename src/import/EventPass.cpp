#include "import/EventPass.hpp"

#include <optional>
#include <vector>

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
    std::vector<char> buffer(InputDocument::kChunkBytes);
    bool more = true;
    try {
        while (more) {
            const std::size_t n = input.read(buffer.data(), buffer.size());
            if (n == 0) {
                push.finish();
                break;
            }
            more = push.feed(buffer.data(), n);
            if (after_chunk) after_chunk();
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
