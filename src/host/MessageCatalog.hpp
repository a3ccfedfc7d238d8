#pragma once
// The host's message catalog: the English text of every message identifier (from messages.def).

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tolven::host {

struct CatalogEntry {
    std::string_view identifier;     // "TOLVEN:io:xml:detection:ProvideAtMostOneDetectionHint"
    std::size_t argument_count;
    std::string_view text;           // with {1}..{n} placeholders
};

// Every entry of the catalog, in the order of messages.def.
std::span<const CatalogEntry> all_messages() noexcept;
// The entry of an identifier, if the catalog has it.
std::optional<CatalogEntry> find_message(std::string_view identifier) noexcept;
// The text of identifier with {k} replaced by arguments[k-1]. An identifier the catalog lacks
// yields the identifier followed by its arguments, so nothing is ever lost.
std::string format_message(std::string_view identifier, const std::vector<std::string>& arguments);

}  // namespace tolven::host
