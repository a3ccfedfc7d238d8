#pragma once
// Loading a document as a tree, through the one parser every path uses (parser::PushParser): no
// network, no DTD loading, internal entities substituted, every external entity refused, CDATA kept,
// the same limits and errors as a streaming read.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "xml/parser/ParserSettings.hpp"
#include "xml/vcos/DocWrapper.hpp"

namespace tolven::io::xml::common::vcos {

// The most bytes taken into a tree from an input whose size is not known beforehand (standard input,
// a pipe, a device): such an input may never end, and a tree takes ten to forty times its bytes.
constexpr std::uint64_t kMaxUnsizedTreeBytes = std::uint64_t{32} << 20;

// Reads the next bytes of a document into buffer (at most size); 0 at its end.
using ReadBytes = std::function<std::size_t(char* buffer, std::size_t size)>;

// Parses the file at path ("-" reads standard input, named "<stdin>"), reading it in chunks; compressed
// input (gzip, bzip2, xz, zstd, told by its first bytes) is decompressed as it is read.
// Raises "TOLVEN:io:xml:common:FileNotReadable" (path, reason) when it cannot be read, its compressed data
// is corrupt or truncated, or when an input of unknown size (a pipe, or compressed input once decompressed)
// passes kMaxUnsizedTreeBytes; "TOLVEN:io:xml:common:MalformedDocument" (source,
// line, column, message) when it is not well-formed or meets a limit; "TOLVEN:io:xml:common:OutOfMemory".
std::shared_ptr<DocWrapper> load_document(const std::string& path, const parser::ParserSettings& settings = {});

// Parses a document held in memory, compressed or not; source names it in messages.
std::shared_ptr<DocWrapper> load_document_from_memory(std::string_view content, const std::string& source,
                                                      const parser::ParserSettings& settings = {});

// Parses what read gives until it gives 0 (or the parser has seen enough to fail).
std::shared_ptr<DocWrapper> load_document_from(const ReadBytes& read, const std::string& source,
                                               const parser::ParserSettings& settings = {});

}  // namespace tolven::io::xml::common::vcos
