#include "cli/ErrorAdvice.hpp"

#include <algorithm>
#include <array>
#include <cctype>
#include <map>
#include <optional>
#include <set>
#include <string_view>
#include <utility>
#include <vector>

#include "detection/options/make_detection_options.hpp"
#include "host/utf.hpp"
#include "cli/suggest.hpp"
#include "tables/CandidateHint.hpp"
#include "xml/xpath/NodeList.hpp"
#include "xml/xpath/make_context.hpp"
#include "xml/xpath/names.hpp"
#include "xml/xpath/register_detected_namespaces.hpp"

namespace tolven::cli {

namespace {

namespace xpath = io::xml::common::xpath;
using Error = foundation::core::except::IMsgIDException;

// Hint fields as the catalog names them, and the options that set them.
constexpr std::array<std::pair<std::string_view, std::string_view>, 15> kOptions{{
    {"TableNodeName", "--table-node-name"},        {"RowNodeName", "--row-node-name"},
    {"VariableNodeNames", "--variable-node-names"}, {"TableSelector", "--table-selector"},
    {"RowSelector", "--row-selector"},              {"VariableSelectors", "--variable-selectors"},
    {"AttributeSuffix", "--attribute-suffix"},      {"DateLocale", "--date-locale"},
    {"ImportAttributes", "--import-attributes"},    {"DetectNamespaces", "--detect-namespaces"},
    {"RegisteredNamespaces", "--register-namespace"}, {"DecimalSeparator", "--decimal-separator"},
    {"ThousandsSeparator", "--thousands-separator"}, {"ExponentCharacter", "--exponent-character"},
    {"TrimNonnumeric", "--trim-nonnumeric"},
}};

bool name_char(char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '-' || c == '.'; }

// A field named on the command line is written as its option; one that came from a --hints file
// keeps its field name, since that is what the user typed there.
std::string typed(std::string_view field, const HintOptions& options) {
    for (const auto& [name, option] : kOptions) {
        if (name != field) continue;
        if (options.hints_file.empty()) return std::string(option);
        for (const auto& [given, cli] : options.given)
            if (field == given && cli->count() > 0) return std::string(option);
    }
    return std::string(field);
}

std::string with_typed_options(std::string text, const HintOptions& options) {
    const std::string_view turn_on = ", or turn DetectNamespaces on";
    if (const auto at = text.find(turn_on); at != std::string::npos) {
        // Already on, the document simply does not declare the prefix: registering it is the way.
        if (with_hints_file(options).detect_namespaces)
            text.replace(at, turn_on.size(), " as PREFIX=URI; the document itself declares no such prefix");
        else if (typed("DetectNamespaces", options) != "DetectNamespaces")
            text.replace(at, turn_on.size(), ", or give --detect-namespaces true");
    }
    for (const auto& [field, option] : kOptions) {
        for (std::size_t at = text.find(field); at != std::string::npos; at = text.find(field, at + 1)) {
            const bool whole = (at == 0 || !name_char(text[at - 1])) &&
                               (at + field.size() == text.size() || !name_char(text[at + field.size()]));
            if (!whole) continue;
            const std::string replacement = typed(field, options);
            text.replace(at, field.size(), replacement);
            at += replacement.size() - 1;
        }
    }
    return text;
}

// The element (and attribute) names of a document, by local name and namespace URI.
class DocumentNames {
public:
    DocumentNames(const xmlDoc* doc, bool attributes) {
        for (const xmlNode* n = xmlDocGetRootElement(doc); n != nullptr;) {
            add(n->name, n->ns);
            if (attributes)
                for (const xmlAttr* a = n->properties; a != nullptr; a = a->next) add(a->name, a->ns);
            n = next(n);
        }
    }

    bool has(std::string_view local, std::string_view uri) const {
        const auto it = uris_.find(std::string(local));
        return it != uris_.end() && it->second.contains(std::string(uri));
    }
    // The namespace URIs elements of this local name are in ("" for none).
    const std::set<std::string>* uris(std::string_view local) const {
        const auto it = uris_.find(std::string(local));
        return it == uris_.end() ? nullptr : &it->second;
    }
    // The existing name closest to name, when one is close enough to be a slip.
    std::string closest(std::string_view name) const {
        std::string best;
        std::size_t best_distance = std::max<std::size_t>(1, name.size() / 3) + 1;
        for (const auto& [local, uris] : uris_)
            if (const std::size_t d = edit_distance(name, local); d < best_distance) {
                best_distance = d;
                best = local;
            }
        return best;
    }

private:
    static const xmlNode* next(const xmlNode* n) {
        for (const xmlNode* c = n->children; c != nullptr; c = c->next)
            if (c->type == XML_ELEMENT_NODE) return c;
        for (; n != nullptr; n = n->parent) {
            for (const xmlNode* s = n->next; s != nullptr; s = s->next)
                if (s->type == XML_ELEMENT_NODE) return s;
            if (n->parent == nullptr || n->parent->type != XML_ELEMENT_NODE) return nullptr;
        }
        return nullptr;
    }
    void add(const xmlChar* name, const xmlNs* ns) {
        uris_[reinterpret_cast<const char*>(name)].insert(ns != nullptr && ns->href != nullptr
                                                              ? reinterpret_cast<const char*>(ns->href)
                                                              : "");
    }
    std::map<std::string, std::set<std::string>> uris_;
};

// The registered prefixes of the document for the hints' settings; none when they cannot be read.
struct Namespaces {
    std::shared_ptr<xmlXPathContext> context;
    xpath::NamespaceMap prefixes;  // URI -> prefix
};

std::optional<Namespaces> namespaces_of(const io::xml::common::vcos::DocWrapper& document, const vxArray* hints) {
    if (hints == nullptr) return std::nullopt;
    try {
        const vxArrayPtr settings = tables::with_hint(hints, {});
        const auto options = io::xml::detection::options::make_detection_options(settings.get());
        Namespaces n;
        n.context = xpath::make_context(document.doc());
        n.prefixes = xpath::register_detected_namespaces(document.doc(), n.context, options.RegisteredNamespaces,
                                                        options.DetectNamespaces)
                         .prefixes;
        return n;
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

// The element name tests of a selector: names after "/" or "(" or at the start, not axes or functions.
struct Step {
    std::size_t at, size;
    std::string prefix, local;
};
std::vector<Step> element_steps(std::string_view selector) {
    std::vector<Step> steps;
    for (std::size_t i = 0; i < selector.size();) {
        const char before = i == 0 ? '/' : selector[i - 1];
        if (!(std::isalpha(static_cast<unsigned char>(selector[i])) || selector[i] == '_') ||
            (before != '/' && before != '(')) {
            ++i;
            continue;
        }
        std::size_t end = i;
        while (end < selector.size() && (name_char(selector[end]) || selector[end] == ':')) {
            if (selector[end] == ':' && end + 1 < selector.size() && selector[end + 1] == ':') break;
            ++end;
        }
        const std::string_view name = selector.substr(i, end - i);
        const bool axis_or_function = end < selector.size() && (selector[end] == '(' || selector[end] == ':');
        if (!axis_or_function) {
            const auto colon = name.find(':');
            steps.push_back({i, name.size(), colon == std::string_view::npos ? "" : std::string(name.substr(0, colon)),
                             std::string(colon == std::string_view::npos ? name : name.substr(colon + 1))});
        }
        i = end;
    }
    return steps;
}

bool selects_something(const Namespaces& n, const std::string& selector) {
    try {
        return !xpath::NodeList(n.context, fl::i18n::utf8_to_ustring(selector)).empty();
    } catch (const std::exception&) {
        return false;
    }
}

// Why a selector selects nothing, when a step names an element that is not there as written.
std::string selector_advice(const std::string& option, const std::string& selector, const DocumentNames& names,
                            const Namespaces& n) {
    std::string fixed = selector;
    bool prefixes_added = false;
    // Last step first. (Iterators, not std::views::reverse, which clang 14 cannot compile with
    // libstdc++ 12: the fuzz build uses clang.)
    const auto steps = element_steps(selector);
    for (auto at = steps.rbegin(); at != steps.rend(); ++at) {
        const Step& step = *at;
        std::string uri;
        if (!step.prefix.empty())
            for (const auto& [u, p] : n.prefixes)
                if (p == step.prefix) uri = u;
        if (names.has(step.local, uri)) continue;
        const auto* uris = names.uris(step.local);
        if (uris == nullptr) {
            const std::string close = names.closest(step.local);
            return "no element named '" + step.local + "' exists" + (close.empty() ? "" : "; did you mean '" + close + "'?");
        }
        // The element exists in a namespace: its step needs that namespace's registered prefix.
        const std::string& in = *uris->begin();
        const auto prefix = n.prefixes.find(in);
        if (in.empty() || prefix == n.prefixes.end()) continue;
        fixed.replace(step.at, step.size, prefix->second + ":" + step.local);
        prefixes_added = true;
    }
    if (prefixes_added && selects_something(n, fixed))
        return "its elements are in a namespace (the document's default one, or another), and XPath needs the "
               "registered prefix on every step: try " + option + " '" + fixed + "'";
    return {};
}

std::string sentence(const std::string& text) { return text.ends_with('?') ? text : text + "."; }

std::string argument(const Error& error, std::size_t i) {
    const auto arguments = error.GetBaseMsgIDObj().arguments_utf8();
    return i < arguments.size() ? arguments[i] : std::string();
}

}  // namespace

std::string user_message(const Error& error, const HintOptions& options,
                         const std::shared_ptr<io::xml::common::vcos::DocWrapper>& document, const vxArray* hints) {
    const std::string base = with_typed_options(error.message_utf8(), options);
    if (!document) return base;
    const std::string name = error.GetBaseMsgIDObj().name();
    const xmlDoc* doc = document->doc().get();

    if (name == "NodeNameNotFound" || name == "VariableNodeNamesNonexistentNode") {
        const bool variables = name == "VariableNodeNamesNonexistentNode";
        const std::string wanted = argument(error, variables ? 0 : 1);
        const std::string local = wanted.substr(wanted.find(':') == std::string::npos ? 0 : wanted.find(':') + 1);
        const std::string close = DocumentNames(doc, variables).closest(local);
        if (close.empty() || close == local) return base;
        return base.substr(0, base.size() - (base.ends_with('.') ? 1 : 0)) + "; did you mean '" + close + "'?";
    }

    const auto namespaces = namespaces_of(*document, hints);
    if (!namespaces) return base;
    if (name.ends_with("UnregisteredNamespace")) {
        std::set<std::string> pairs;
        for (const auto& [uri, prefix] : namespaces->prefixes)
            if (prefix != "xml") pairs.insert(prefix + "=" + uri);
        std::string known;
        for (const auto& pair : pairs) known += (known.empty() ? "" : ", ") + pair;
        return known.empty() ? base : base + " Registered now: " + known + ".";
    }
    const bool rows = name == "RowSelectorInvalidSelection", table = name == "TableSelectorInvalidSelection";
    if (rows || table) {
        const std::string option = rows ? "--row-selector" : "--table-selector";
        const std::string selector = rows ? options.row_selector : options.table_selector;
        if (selector.empty()) return base;
        const std::string advice = selector_advice(option, selector, DocumentNames(doc, false), *namespaces);
        if (advice.empty()) return base;
        return option + " '" + selector + "' selects no element: " + sentence(advice);
    }
    if (name == "VariableSelectorsInvalidSelection") {
        const auto& entries = options.variable_selectors;
        for (std::size_t i = 0; i < entries.size(); ++i) {
            if (selects_something(*namespaces, entries[i])) continue;
            const std::string advice =
                selector_advice("--variable-selectors", entries[i], DocumentNames(doc, false), *namespaces);
            return "--variable-selectors entry " + std::to_string(i + 1) + " of " + std::to_string(entries.size()) +
                   ", '" + entries[i] + "', selects nothing" + (advice.empty() ? "." : ": " + sentence(advice));
        }
    }
    return base;
}

}  // namespace tolven::cli
