#pragma once
// Checks of option values, made before any work starts. Each check returns "" for a good value and
// otherwise the reason, as CLI11's validators do, so that a hints file's values get the same words.

#include <CLI/CLI.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tolven::cli {

// A whole number of at least 0 that fits 64 bits, in decimal digits only.
std::string check_count(const std::string& value);
// A locale whose dates ICU can read: "de_DE", "fr-FR", "en"; "" stands for en_US.
std::string check_date_locale(const std::string& value);
// A size in bytes, at least 1: digits and an optional unit (b, k/kb/kib, m/mb/mib, g/gb/gib, any case;
// every unit counts in powers of 1024). No value when the text is not such a size.
std::optional<std::uint64_t> parse_size(std::string_view text);

// The same checks as CLI11 validators. Size() also turns the text into its number of bytes.
CLI::Validator Count();
CLI::Validator DateLocale();
CLI::Validator Size();

}  // namespace tolven::cli
