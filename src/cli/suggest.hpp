#pragma once
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tolven::cli {

// Edits between two words, case ignored: letters inserted, removed or changed, and swaps of two
// neighbouring letters, each one edit.
std::size_t edit_distance(std::string_view a, std::string_view b);

// The candidate a mistyped word was most likely meant to be: the nearest by edit distance (letters
// inserted, removed, changed or two neighbours swapped; case ignored), when it is near enough to be
// a typing slip: at most one edit per three letters, and always one.
std::optional<std::string> closest(std::string_view word, const std::vector<std::string>& candidates);

// "; did you mean `X`?" for the closest candidate, or "".
std::string did_you_mean(std::string_view word, const std::vector<std::string>& candidates);

}  // namespace tolven::cli
