// The floor of a streaming read on two threads: the project's push parser (limits and all) over a
// file, its events recorded by EventRelay and replayed on a worker to a handler that only counts
// them. Set against `direct`, the same parse with the handler called in place, it shows what handing
// events to a second thread costs the parsing thread.
// relay_floor relay|direct FILE prints the count.

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <optional>
#include <vector>

#include "xml/parser/EventRelay.hpp"
#include "xml/parser/PushParser.hpp"

namespace {

namespace parser = tolven::io::xml::common::parser;

struct Count final : parser::SaxHandler {
    unsigned long long seen = 0;
    bool start_element(const parser::ElementEvent&) override { return ++seen != 0; }
    bool end_element() override { return ++seen != 0; }
    bool text(std::string_view text) override { return (seen += text.size()) != 0; }
};

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3 || (std::strcmp(argv[1], "relay") != 0 && std::strcmp(argv[1], "direct") != 0)) {
        std::fprintf(stderr, "usage: relay_floor relay|direct FILE\n");
        return 2;
    }
    const int fd = ::open(argv[2], O_RDONLY);
    if (fd < 0) {
        std::perror(argv[2]);
        return 1;
    }
    Count count;
    std::optional<parser::EventRelay> relay;
    if (std::strcmp(argv[1], "relay") == 0) relay.emplace(count, argv[2]);
    parser::PushParser push(argv[2], parser::ParserSettings{}, relay ? static_cast<parser::SaxHandler&>(*relay) : count);
    std::vector<char> buffer(std::size_t{64} << 10);
    for (ssize_t n; (n = ::read(fd, buffer.data(), buffer.size())) > 0;) push.feed(buffer.data(), static_cast<std::size_t>(n));
    push.finish();
    if (relay) relay->finish();
    ::close(fd);
    std::printf("%llu\n", count.seen);
    return 0;
}
