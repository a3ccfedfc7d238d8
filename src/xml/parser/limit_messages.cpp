#include "xml/parser/limit_messages.hpp"

#include "xml/libxml2/ErrorScope.hpp"

namespace tolven::io::xml::common::parser {

namespace {

// 10000000 as "10,000,000".
std::string grouped(std::uint64_t n) {
    std::string digits = std::to_string(n);
    for (std::size_t i = digits.size(); i > 3; i -= 3) digits.insert(i - 3, ",");
    return digits;
}

bool contains(std::string_view text, std::string_view part) { return text.find(part) != std::string_view::npos; }

// What --huge does for a limit, or that it is already given.
std::string lift(const ParserLimits& limits, std::string_view what) {
    if (limits.huge) return " (the most allowed even with --huge)";
    return "; pass --huge to allow " + std::string(what);
}

}  // namespace

std::string depth_message(const ParserLimits& limits) {
    return "elements are nested deeper than " + grouped(limits.depth) + " levels" + lift(limits, "deeper documents");
}

std::string text_message(const ParserLimits& limits) {
    return "a text node is longer than " + grouped(limits.text_bytes) + " bytes" + lift(limits, "longer text");
}

std::string expansion_message(std::string_view entity) {
    const std::string reference =
        entity.empty() ? "an entity reference" : "the entity reference '&" + std::string(entity) + ";'";
    return reference +
           " expands too far: an entity refers to itself, entities nest more than 40 deep, or they expand to more "
           "than ten times the text of the document; pass --huge to allow large expansions";
}

std::string user_message(const xmlError& error, const ParserLimits& limits, std::string_view entity) {
    const std::string text = libxml2::trim(error.message != nullptr ? error.message : "");
    const std::string markup_limit = limits.huge ? "1,000,000,000 bytes" : "10,000,000 bytes";
    if (error.code == XML_ERR_ENTITY_LOOP) return expansion_message(entity);
    if (error.code == XML_ERR_DOCUMENT_EMPTY) return "the input is not XML: it is empty or does not start with '<'";
    if (contains(text, "huge text node") || contains(text, "CData section too big")) return text_message(limits);
    if (contains(text, "Excessive depth in document")) return depth_message(limits);
    if (contains(text, "Huge input lookup") || contains(text, "Comment too big") || contains(text, " too big found"))
        return "a piece of markup (a tag, comment, CDATA section or processing instruction) is longer than " +
               markup_limit + lift(limits, "longer markup");
    if (contains(text, "AttValue length too long") || contains(text, "entity value too long"))
        return "an attribute or entity value is longer than " + markup_limit + lift(limits, "longer values");
    if (error.code == XML_ERR_NAME_TOO_LONG || contains(text, "Name too long"))
        return "a name is longer than 50,000 bytes" + lift(limits, "longer names");
    return text;
}

}  // namespace tolven::io::xml::common::parser
