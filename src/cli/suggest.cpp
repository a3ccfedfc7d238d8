#include "cli/suggest.hpp"

#include <algorithm>
#include <cctype>

namespace tolven::cli {

namespace {

char lower(char c) { return static_cast<char>(std::tolower(static_cast<unsigned char>(c))); }

}  // namespace

// Optimal string alignment distance: Levenshtein plus the swap of two neighbouring letters.
std::size_t edit_distance(std::string_view a, std::string_view b) {
    std::vector<std::vector<std::size_t>> d(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
    for (std::size_t i = 0; i <= a.size(); ++i) d[i][0] = i;
    for (std::size_t j = 0; j <= b.size(); ++j) d[0][j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i)
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t change = lower(a[i - 1]) == lower(b[j - 1]) ? 0 : 1;
            d[i][j] = std::min({d[i - 1][j] + 1, d[i][j - 1] + 1, d[i - 1][j - 1] + change});
            if (i > 1 && j > 1 && lower(a[i - 1]) == lower(b[j - 2]) && lower(a[i - 2]) == lower(b[j - 1]))
                d[i][j] = std::min(d[i][j], d[i - 2][j - 2] + 1);
        }
    return d[a.size()][b.size()];
}

std::optional<std::string> closest(std::string_view word, const std::vector<std::string>& candidates) {
    const std::size_t allowed = std::max<std::size_t>(1, word.size() / 3);
    std::optional<std::string> best;
    std::size_t best_distance = allowed + 1;
    for (const auto& candidate : candidates) {
        const std::size_t d = edit_distance(word, candidate);
        if (d < best_distance) {
            best = candidate;
            best_distance = d;
        }
    }
    return best;
}

std::string did_you_mean(std::string_view word, const std::vector<std::string>& candidates) {
    const auto match = closest(word, candidates);
    return match ? "; did you mean `" + *match + "`?" : "";
}

}  // namespace tolven::cli
