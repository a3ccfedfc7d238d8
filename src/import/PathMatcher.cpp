#include "import/PathMatcher.hpp"

#include <charconv>
#include <cstring>

#include "text/textio/trim.hpp"

namespace tolven::import {

namespace {

constexpr std::string_view kXmlNamespace = "http://www.w3.org/XML/1998/namespace";
using io::text::textio::trim_whitespace;

std::string quoted(std::string_view s) { return "'" + std::string(s) + "'"; }

// Scans s outside quoted literals and brackets; calls on(i) for each character at nesting level 0.
// Returns false when a quote or bracket is left open.
template <class On>
bool scan_top_level(std::string_view s, On on) {
    int depth = 0;
    char quote = 0;
    for (std::size_t i = 0; i < s.size(); ++i) {
        const char c = s[i];
        if (quote != 0) {
            if (c == quote) quote = 0;
        } else if (c == '"' || c == '\'') {
            quote = c;
        } else if (c == '[') {
            ++depth;
        } else if (c == ']') {
            if (--depth < 0) return false;
        } else if (depth == 0 && !on(i)) {
            return true;
        }
    }
    return quote == 0 && depth == 0;
}

// The ')' that closes the '(' at s[0], outside quotes; npos when there is none.
std::size_t closing_parenthesis(std::string_view s) {
    int depth = 0;
    char quote = 0;
    for (std::size_t i = 0; i < s.size(); ++i) {
        const char c = s[i];
        if (quote != 0) {
            if (c == quote) quote = 0;
        } else if (c == '"' || c == '\'') {
            quote = c;
        } else if (c == '(') {
            ++depth;
        } else if (c == ')' && --depth == 0) {
            return i;
        }
    }
    return std::string_view::npos;
}

bool is_name_char(char c) {
    const auto u = static_cast<unsigned char>(c);
    return u >= 0x80 || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
           c == '-' || c == '.';
}

bool is_ncname(std::string_view s) {
    if (s.empty() || (s[0] >= '0' && s[0] <= '9') || s[0] == '-' || s[0] == '.') return false;
    for (char c : s)
        if (!is_name_char(c)) return false;
    return true;
}

// The parse of one step; reason is set when the step cannot be followed.
struct StepParse {
    PathStep step;
    bool attribute = false;
    std::string reason;
};

std::optional<std::string> resolve(std::string_view prefix, const NamespaceBindings& namespaces) {
    if (prefix == "xml") return std::string(kXmlNamespace);
    for (const auto& [p, uri] : namespaces)
        if (p == prefix) return uri;
    return std::nullopt;
}

// name, prefix:name or *; returns a reason when it is none of these.
std::string parse_name(std::string_view text, const NamespaceBindings& namespaces, NameTest& test) {
    if (text == "*") {
        test.kind = NameTest::Kind::Any;
        return {};
    }
    if (text.find('(') != std::string_view::npos) return "uses a function or node test " + quoted(text);
    const auto colon = text.find(':');
    const std::string_view prefix = colon == std::string_view::npos ? std::string_view{} : text.substr(0, colon);
    const std::string_view local = colon == std::string_view::npos ? text : text.substr(colon + 1);
    if ((colon != std::string_view::npos && !is_ncname(prefix)) || !is_ncname(local))
        return "has a step " + quoted(text) + " that is not a name";
    test.kind = NameTest::Kind::Qualified;
    test.local = std::string(local);
    if (!prefix.empty()) {
        test.uri = resolve(prefix, namespaces);
        if (!test.uri) return "uses the namespace prefix " + quoted(prefix) + ", which is not registered";
    }
    return {};
}

// local-name()='name' (either quote), the form written for names that hold a colon.
std::optional<std::string> local_name_literal(std::string_view predicate) {
    constexpr std::string_view head = "local-name()=";
    std::string_view p = trim_whitespace(predicate);
    if (p.substr(0, head.size()) != head) return std::nullopt;
    p = trim_whitespace(p.substr(head.size()));
    if (p.size() < 2 || (p.front() != '\'' && p.front() != '"') || p.back() != p.front()) return std::nullopt;
    p = p.substr(1, p.size() - 2);
    if (p.find(p.front() == '\'' ? '\'' : '"') != std::string_view::npos) return std::nullopt;
    return std::string(p);
}

std::string parse_predicate(std::string_view predicate, StepParse& parse) {
    unsigned value = 0;
    const std::string_view digits = trim_whitespace(predicate);
    const auto [end, ec] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (ec == std::errc() && end == digits.data() + digits.size() && !digits.empty()) {
        if (parse.attribute) return "has a position on an attribute step";
        if (parse.step.position != 0) return "has two positions on one step";
        if (value == 0) return "has the position [0], which selects nothing";
        parse.step.position = value;
        return {};
    }
    if (parse.step.name.kind == NameTest::Kind::Any && parse.step.position == 0) {
        if (auto local = local_name_literal(predicate)) {
            parse.step.name.kind = NameTest::Kind::LocalName;
            parse.step.name.local = std::move(*local);
            return {};
        }
    }
    if (predicate.find('(') != std::string_view::npos)
        return "calls a function in the predicate " + quoted("[" + std::string(predicate) + "]");
    return "has a predicate other than a position " + quoted("[" + std::string(predicate) + "]");
}

StepParse parse_step(std::string_view text, const NamespaceBindings& namespaces) {
    StepParse parse;
    if (text.empty()) {
        parse.reason = "uses the descendant axis ('//')";
        return parse;
    }
    if (text == "." || text == "..") {
        parse.reason = "has the step " + quoted(text);
        return parse;
    }
    if (text.find("::") != std::string_view::npos) {
        parse.reason = "names an axis in " + quoted(text);
        return parse;
    }
    if (text.front() == '(') {
        parse.reason = "uses parentheses";
        return parse;
    }
    parse.attribute = text.front() == '@';
    if (parse.attribute) text.remove_prefix(1);
    const auto bracket = text.find('[');
    parse.reason = parse_name(text.substr(0, bracket), namespaces, parse.step.name);
    if (!parse.reason.empty() || bracket == std::string_view::npos) return parse;

    std::string_view rest = text.substr(bracket);
    while (!rest.empty()) {
        if (rest.front() != '[') {
            parse.reason = "has a step " + quoted(text) + " that is not a name";
            return parse;
        }
        // The matching ']' outside quotes.
        std::size_t close = std::string_view::npos;
        char quote = 0;
        for (std::size_t i = 1; i < rest.size(); ++i) {
            if (quote != 0) {
                if (rest[i] == quote) quote = 0;
            } else if (rest[i] == '"' || rest[i] == '\'') {
                quote = rest[i];
            } else if (rest[i] == '[') {
                parse.reason = "has a nested predicate in " + quoted(text);
                return parse;
            } else if (rest[i] == ']') {
                close = i;
                break;
            }
        }
        if (close == std::string_view::npos) {
            parse.reason = "has an unclosed predicate in " + quoted(text);
            return parse;
        }
        parse.reason = parse_predicate(rest.substr(1, close - 1), parse);
        if (!parse.reason.empty()) return parse;
        rest.remove_prefix(close + 1);
    }
    return parse;
}

}  // namespace

bool NameTest::matches(const char* node_uri, const char* node_local) const {
    switch (kind) {
        case Kind::Any: return true;
        case Kind::LocalName: return std::strcmp(local.c_str(), node_local) == 0;
        case Kind::Qualified:
            if (std::strcmp(local.c_str(), node_local) != 0) return false;
            if (!uri) return node_uri == nullptr;
            return node_uri != nullptr && std::strcmp(uri->c_str(), node_uri) == 0;
    }
    return false;
}

bool PathPattern::uses_positions() const {
    for (const auto& step : elements)
        if (step.position != 0) return true;
    return false;
}

std::variant<PathPattern, std::string> compile_path(std::string_view selector, bool relative,
                                                    const NamespaceBindings& namespaces) {
    std::string_view s = trim_whitespace(selector);
    bool has_union = false;
    if (!scan_top_level(s, [&](std::size_t i) { return !(has_union = s[i] == '|'); }))
        return std::string("has an unclosed quote or bracket");
    if (has_union) return std::string("uses a union ('|')");

    PathPattern pattern;
    if (relative) {
        if (s.empty() || s == ".") return pattern;
        if (s.substr(0, 2) == "./") s.remove_prefix(2);
        if (s.empty()) return std::string("ends in '/'");
        if (s.front() == '/') return std::string("uses the descendant axis ('//')");
    } else {
        if (!s.empty() && s.front() == '(') {
            // "(path)/steps" selects what "path/steps" does: hint selectors come back wrapped so.
            const auto close = closing_parenthesis(s);
            if (close == std::string_view::npos) return std::string("has an unclosed parenthesis");
            const std::string_view rest = s.substr(close + 1);
            if (!rest.empty() && rest.front() != '/')
                return std::string("uses parentheses followed by ") + quoted(rest.substr(0, 1));
            return compile_path(std::string(s.substr(1, close - 1)) + std::string(rest), false, namespaces);
        }
        if (s.empty() || s.front() != '/') return std::string("is not an absolute path from the root");
        s.remove_prefix(1);
        if (s.empty()) return std::string("selects the document, not elements");
    }

    // Steps are separated by '/' outside predicates and quotes.
    std::vector<std::string_view> steps;
    std::size_t start = 0;
    scan_top_level(s, [&](std::size_t i) {
        if (s[i] == '/') {
            steps.push_back(s.substr(start, i - start));
            start = i + 1;
        }
        return true;
    });
    steps.push_back(s.substr(start));

    for (std::size_t i = 0; i < steps.size(); ++i) {
        StepParse parse = parse_step(steps[i], namespaces);
        if (!parse.reason.empty()) return parse.reason;
        if (parse.attribute) {
            if (i + 1 != steps.size()) return std::string("has a step below an attribute");
            pattern.attribute = std::move(parse.step.name);
        } else {
            pattern.elements.push_back(std::move(parse.step));
        }
    }
    if (!relative && pattern.elements.empty()) return std::string("selects the document, not elements");
    return pattern;
}

}  // namespace tolven::import
