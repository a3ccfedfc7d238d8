// The floor of a streaming read: libxml2's SAX2 push parser over a file, with the options every
// document is parsed with, counting elements, attributes and bytes of text and doing nothing else.
// sax_count FILE prints "elements attributes text-bytes".

#include <fcntl.h>
#include <libxml/parser.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <vector>

#include "xml/parser/ParserSettings.hpp"

namespace {

struct Counts {
    unsigned long long elements = 0, attributes = 0, text = 0;
};
Counts counts;

void on_start(void*, const xmlChar*, const xmlChar*, const xmlChar*, int, const xmlChar**, int attributes, int,
              const xmlChar**) {
    ++counts.elements;
    counts.attributes += static_cast<unsigned long long>(attributes);
}

void on_text(void*, const xmlChar*, int length) { counts.text += static_cast<unsigned long long>(length); }

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: sax_count FILE\n");
        return 2;
    }
    const int fd = ::open(argv[1], O_RDONLY);
    if (fd < 0) {
        std::perror(argv[1]);
        return 1;
    }
    xmlSAXHandler sax;
    std::memset(&sax, 0, sizeof sax);
    xmlSAXVersion(&sax, 2);
    sax.startElementNs = &on_start;
    sax.endElementNs = nullptr;
    sax.characters = &on_text;
    sax.ignorableWhitespace = &on_text;
    sax.cdataBlock = &on_text;
    sax.comment = nullptr;
    sax.processingInstruction = nullptr;
    xmlParserCtxtPtr context = xmlCreatePushParserCtxt(&sax, nullptr, nullptr, 0, argv[1]);
    xmlCtxtUseOptions(context, tolven::io::xml::common::parser::kParseOptions);
    std::vector<char> buffer(std::size_t{64} << 10);
    for (ssize_t n; (n = ::read(fd, buffer.data(), buffer.size())) > 0;)
        xmlParseChunk(context, buffer.data(), static_cast<int>(n), 0);
    xmlParseChunk(context, nullptr, 0, 1);
    const bool well_formed = context->wellFormed != 0;
    if (context->myDoc != nullptr) xmlFreeDoc(context->myDoc);
    xmlFreeParserCtxt(context);
    ::close(fd);
    std::printf("%llu %llu %llu\n", counts.elements, counts.attributes, counts.text);
    return well_formed ? 0 : 1;
}
