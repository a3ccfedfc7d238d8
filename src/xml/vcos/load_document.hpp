#pragma once
// Loading a document safely: no network, no DTD loading, internal entities substituted,
// every external entity refused, CDATA kept.

#include <memory>
#include <string>
#include <string_view>

#include "xml/vcos/DocWrapper.hpp"

namespace tolven::io::xml::common::vcos {

// Parses the file at path ("-" reads standard input, named "<stdin>").
// Raises "TOLVEN:io:xml:common:FileNotReadable" (path, reason) when it cannot be read and
// "TOLVEN:io:xml:common:MalformedDocument" (source, line, column, libxml2's message) when it is not well-formed.
std::shared_ptr<DocWrapper> load_document(const std::string& path);

// Parses a document held in memory; source names it in messages.
std::shared_ptr<DocWrapper> load_document_from_memory(std::string_view content, const std::string& source);

}  // namespace tolven::io::xml::common::vcos
