#pragma once
// The parser's faults in the user's words: a limit met says which limit and how to lift it, rather
// than how libxml2 noticed it.

#include <libxml/xmlerror.h>

#include <string>
#include <string_view>

#include "xml/parser/ParserSettings.hpp"

namespace tolven::io::xml::common::parser {

std::string depth_message(const ParserLimits& limits);
std::string text_message(const ParserLimits& limits);
// entity: the name of the reference that expands too far; "" when it is not known.
std::string expansion_message(std::string_view entity);

// The message of one of libxml2's errors: the user's words for a limit it met or for input that is not
// XML at all, else libxml2's own message, trimmed. entity names the reference being expanded, if any.
std::string user_message(const xmlError& error, const ParserLimits& limits, std::string_view entity);

}  // namespace tolven::io::xml::common::parser
