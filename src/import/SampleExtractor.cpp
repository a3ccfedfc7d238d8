#include "import/SampleExtractor.hpp"

#include <vector>

namespace tolven::import {

namespace {

bool is_space(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

// The end (one past) of a start or end tag beginning at pos, quotes respected; npos when incomplete.
std::size_t tag_end(std::string_view s, std::size_t pos) {
    char quote = 0;
    for (std::size_t i = pos + 1; i < s.size(); ++i) {
        const char c = s[i];
        if (quote != 0) {
            if (c == quote) quote = 0;
        } else if (c == '"' || c == '\'') {
            quote = c;
        } else if (c == '>') {
            return i + 1;
        }
    }
    return std::string_view::npos;
}

// The end of a document type declaration, its internal subset included; npos when incomplete.
std::size_t doctype_end(std::string_view s, std::size_t pos) {
    char quote = 0;
    int brackets = 0;
    for (std::size_t i = pos + 2; i < s.size(); ++i) {
        const char c = s[i];
        if (quote != 0) {
            if (c == quote) quote = 0;
        } else if (c == '"' || c == '\'') {
            quote = c;
        } else if (c == '[') {
            ++brackets;
        } else if (c == ']') {
            --brackets;
        } else if (c == '>' && brackets <= 0) {
            return i + 1;
        } else if (brackets > 0 && s.compare(i, 4, "<!--") == 0) {
            const auto close = s.find("-->", i + 4);
            if (close == std::string_view::npos) return close;
            i = close + 2;
        }
    }
    return std::string_view::npos;
}

std::size_t after(std::string_view s, std::size_t from, std::string_view terminator) {
    const auto at = s.find(terminator, from);
    return at == std::string_view::npos ? at : at + terminator.size();
}

std::string_view tag_name(std::string_view s, std::size_t from) {
    std::size_t end = from;
    while (end < s.size() && !is_space(s[end]) && s[end] != '>' && s[end] != '/') ++end;
    return s.substr(from, end - from);
}

}  // namespace

std::optional<std::string> close_sample(std::string_view s) {
    if (s.size() >= 2 && ((s[0] == '\xFE' && s[1] == '\xFF') || (s[0] == '\xFF' && s[1] == '\xFE')))
        return std::nullopt;
    if (s.substr(0, 4).find('\0') != std::string_view::npos) return std::nullopt;

    std::vector<std::string_view> open;
    bool root_seen = false;
    std::size_t cut = 0;  // one past the last complete piece of markup
    std::size_t pos = 0;
    while ((pos = s.find('<', pos)) != std::string_view::npos) {
        // Most markup is tags: the character after '<' tells them from the rest.
        const char next = pos + 1 < s.size() ? s[pos + 1] : '\0';
        std::size_t end;
        if (next == '!') {
            if (s.compare(pos, 4, "<!--") == 0) end = after(s, pos + 4, "-->");
            else if (s.compare(pos, 9, "<![CDATA[") == 0) end = after(s, pos + 9, "]]>");
            else end = doctype_end(s, pos);
        } else if (next == '?') {
            end = after(s, pos + 2, "?>");
        } else {
            end = tag_end(s, pos);
        }
        if (end == std::string_view::npos) break;

        if (next == '/') {
            if (!open.empty()) open.pop_back();
        } else if (next != '!' && next != '?') {
            root_seen = true;
            if (s[end - 2] != '/') open.push_back(tag_name(s, pos + 1));
        }
        cut = end;
        pos = end;
    }
    if (!root_seen) return std::nullopt;

    std::string sample(s.substr(0, cut));
    for (auto it = open.rbegin(); it != open.rend(); ++it) {
        sample += "</";
        sample += *it;
        sample += '>';
    }
    return sample;
}

}  // namespace tolven::import
