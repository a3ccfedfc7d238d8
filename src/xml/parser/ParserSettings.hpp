#pragma once
// The one way every document is parsed, whoever reads it: the tree loader, the streaming import and
// the detection sample all use these options and limits, so a document is accepted or refused alike,
// with the same message, whichever path meets it.

#include <libxml/parser.h>

#include <cstddef>
#include <cstdint>

namespace tolven::io::xml::common::parser {

// libxml2's options for every parse.
//  - NOENT substitutes internal entities. It would also pull in external ones; the parser refuses every
//    external resource while it runs (see PushParser), and NONET keeps the network out before that.
//  - No DTD is loaded or validated (no DTDLOAD, DTDATTR, DTDVALID).
//  - CDATA sections stay CDATA (no NOCDATA) and blanks stay as they are (no NOBLANKS).
//  - BIG_LINES keeps line numbers past 65535 exact.
//  - COMPACT keeps short text inside its node in a tree, one allocation fewer per text node; no
//    tree is changed once parsed, which COMPACT requires.
//  - HUGE is left out on purpose: in this libxml2 it also switches off the guard against entity
//    expansion bombs. Only an explicit --huge adds it (see options()).
constexpr int kParseOptions = XML_PARSE_NOENT | XML_PARSE_NONET | XML_PARSE_BIG_LINES | XML_PARSE_COMPACT;

struct ParserSettings {
    // The user vouches for the document: deeper nesting and longer text nodes are allowed and
    // entity expansion is not bounded (libxml2's XML_PARSE_HUGE).
    bool huge = false;
};

// The limits a parse enforces itself, the same on every path.
struct ParserLimits {
    std::size_t depth;        // elements nested at most this deep
    std::uint64_t text_bytes;  // bytes of character data between two tags
    bool huge;                // --huge: the larger limits, and entity expansion unbounded

    static constexpr ParserLimits of(const ParserSettings& settings) {
        return settings.huge ? ParserLimits{kHugeDepth, kHugeTextBytes, true} : ParserLimits{kDepth, kTextBytes, false};
    }

    static constexpr std::size_t kDepth = 256;
    static constexpr std::size_t kHugeDepth = 4096;
    static constexpr std::uint64_t kTextBytes = 10'000'000;
    static constexpr std::uint64_t kHugeTextBytes = 1'000'000'000;
    // Without --huge, entities may expand to this many bytes in all, and beyond it to at most
    // kExpansionRatio times the bytes of the document read so far (libxml2's own bounds for trees,
    // which it does not apply when a stream asks for no tree).
    static constexpr std::uint64_t kExpansionAllowance = 10'000'000;
    static constexpr std::uint64_t kExpansionRatio = 10;
};

// libxml2's options for settings: kParseOptions, plus XML_PARSE_HUGE when the user asked for it.
constexpr int options(const ParserSettings& settings) {
    return settings.huge ? kParseOptions | XML_PARSE_HUGE : kParseOptions;
}

}  // namespace tolven::io::xml::common::parser
