#include "tables/KeyedRows.hpp"

#include <algorithm>
#include <array>
#include <map>
#include <string_view>

#include "detection/variables/node_helpers.hpp"
#include "host/utf.hpp"
#include "tables/node_text.hpp"

namespace tolven::tables {

namespace {

constexpr std::size_t kSampleRows = 500;
constexpr std::size_t kMaxColumns = 100;
constexpr std::size_t kMaxSamples = 250;

enum class Form { Siblings, Attribute, Wrapped };

// One pair of a row: the key's text and the element holding the value.
struct Pair {
    std::string key;
    const xmlNode* value;
};

// How a row's pairs are written, learnt from the first row that has pairs: the key element (or the
// keyed attribute's name, or the wrapper) every later row must use alike.
struct Layout {
    Form form = Form::Siblings;
    const xmlNode* key = nullptr;     // Siblings: a key element; Wrapped: a wrapper's key child
    const xmlNode* holder = nullptr;  // Attribute: a field; Wrapped: a wrapper
    std::string attribute;            // Attribute: the keying attribute's name
};

bool leaf_with_text(const xmlNode* n) { return !has_element_children(n) && !first_text(n).empty(); }

std::string attribute_text(const xmlAttr* a) {
    return a->children != nullptr && a->children->content != nullptr ? reinterpret_cast<const char*>(a->children->content)
                                                                        : "";
}

// <key>K</key><value/> <key>K</key><value/> ...
bool sibling_pairs(const std::vector<const xmlNode*>& children, Layout& l, std::vector<Pair>& pairs) {
    if (children.size() < 4 || children.size() % 2 != 0) return false;
    for (std::size_t i = 0; i < children.size(); i += 2) {
        const xmlNode* k = children[i];
        if (l.key == nullptr) l.key = k;
        if (!same_name(k, l.key) || same_name(children[i + 1], l.key) || !leaf_with_text(k)) return false;
        pairs.push_back({flat_text(k), children[i + 1]});
    }
    return true;
}

// Attributes that name what an element holds, rather than describe it (a style, a type, a unit).
bool names_a_field(std::string_view attribute) {
    constexpr std::array<std::string_view, 12> names{"name", "key", "field", "column", "col", "id",
                                                     "ref",  "property", "label", "var", "param", "code"};
    return std::find(names.begin(), names.end(), attribute) != names.end();
}

// The key attribute of a child for the layout's attribute name; null when it has none.
const xmlAttr* key_attribute(const xmlNode* c, const Layout& l) {
    return xmlHasProp(c, reinterpret_cast<const xmlChar*>(l.attribute.c_str()));
}

// <field name="K">v</field> or <param name="K" value="v"/> ...: the children carrying the attribute,
// each with a key of its own in the row, are the pairs; other children are passed over.
bool attribute_pairs(const std::vector<const xmlNode*>& children, Layout& l, std::vector<Pair>& pairs) {
    if (children.size() < 2) return false;
    if (l.attribute.empty())
        for (const xmlAttr* a = children.front()->properties; a != nullptr && l.attribute.empty(); a = a->next) {
            if (!names_a_field(reinterpret_cast<const char*>(a->name))) continue;
            std::map<std::string, int> seen;
            bool keys = true;
            for (const xmlNode* c : children) {
                const xmlAttr* found = xmlHasProp(c, a->name);
                keys = keys && found != nullptr && !attribute_text(found).empty() && ++seen[attribute_text(found)] == 1;
            }
            if (keys) l.attribute = reinterpret_cast<const char*>(a->name);
        }
    if (l.attribute.empty()) return false;
    for (const xmlNode* c : children)
        if (const xmlAttr* a = key_attribute(c, l)) pairs.push_back({attribute_text(a), c});
    return pairs.size() >= 2 && 2 * pairs.size() >= children.size();
}

// <String><Key>K</Key><Value>v</Value></String> ...: the wrappers are the pairs, other children are
// passed over.
bool wrapped_pairs(const std::vector<const xmlNode*>& children, Layout& l, std::vector<Pair>& pairs) {
    for (const xmlNode* w : children) {
        const auto inside = element_children(w);
        if (inside.size() != 2 || !leaf_with_text(inside[0]) || has_element_children(inside[1])) continue;
        if (l.holder == nullptr) {
            l.holder = w;
            l.key = inside[0];
        }
        if (!same_name(w, l.holder) || !same_name(inside[0], l.key) || same_name(inside[1], l.key)) continue;
        pairs.push_back({flat_text(inside[0]), inside[1]});
    }
    return pairs.size() >= 2 && 2 * pairs.size() >= children.size();
}

bool pairs_of(const xmlNode* row, Layout& l, bool decided, std::vector<Pair>& pairs) {
    const auto children = element_children(row);
    if (decided) {
        switch (l.form) {
            case Form::Siblings: return sibling_pairs(children, l, pairs);
            case Form::Attribute: return attribute_pairs(children, l, pairs);
            case Form::Wrapped: return wrapped_pairs(children, l, pairs);
        }
    }
    for (const Form form : {Form::Siblings, Form::Attribute, Form::Wrapped}) {
        Layout trial;
        trial.form = form;
        pairs.clear();
        const bool ok = form == Form::Siblings    ? sibling_pairs(children, trial, pairs)
                        : form == Form::Attribute ? attribute_pairs(children, trial, pairs)
                                                  : wrapped_pairs(children, trial, pairs);
        if (ok) {
            l = trial;
            return true;
        }
    }
    pairs.clear();
    return false;
}

// The attribute holding a keyed element's value when it has no text: its only other attribute.
const xmlAttr* value_attribute(const xmlNode* element, const Layout& l) {
    const xmlAttr* value = nullptr;
    for (const xmlAttr* a = element->properties; a != nullptr; a = a->next) {
        if (reinterpret_cast<const char*>(a->name) == l.attribute) continue;
        // A namespaced attribute (xsi:nil) is markup about the value, not the value.
        if (value != nullptr || a->ns != nullptr) return nullptr;
        value = a;
    }
    return value;
}

struct Key {
    std::size_t appearances = 0;  // rows holding the key
    std::size_t containers = 0;   // of them, rows whose value has element children
    std::size_t values = 0;       // rows whose value has text
    std::vector<std::string_view> samples;
    std::string attribute;  // Attribute form: the attribute holding the value, when the element has no text
};

std::string step(const xmlNode* node, const Probe& probe) {
    return fl::i18n::ustring_to_utf8(io::xml::detection::variables::make_name_step(node, probe.namespaces()));
}

// The selector of one key's value below a row; "" when the key cannot be written as a literal.
std::string value_step(const Layout& l, const std::string& key, const Key& entry, const Probe& probe) {
    const std::string literal = quoted(key);
    if (literal.empty()) return {};
    switch (l.form) {
        case Form::Siblings: return step(l.key, probe) + "[.=" + literal + "]/following-sibling::*[1]";
        case Form::Attribute:
            return "*[@" + l.attribute + "=" + literal + "]" + (entry.attribute.empty() ? "" : "/@" + entry.attribute);
        case Form::Wrapped: return step(l.holder, probe) + "[" + step(l.key, probe) + "=" + literal + "]/*[2]";
    }
    return {};
}

}  // namespace

std::optional<KeyedColumns> read_keyed(const std::vector<const xmlNode*>& rows, const Probe& probe) {
    Layout layout;
    bool decided = false;
    std::vector<std::string> order;
    std::map<std::string, Key> keys;
    const std::size_t sampled = std::min(rows.size(), kSampleRows);
    std::size_t keyed = 0, pairs_seen = 0;
    for (std::size_t r = 0; r < sampled; ++r) {
        std::vector<Pair> pairs;
        if (!pairs_of(rows[r], layout, decided, pairs)) continue;
        decided = true;
        ++keyed;
        for (const Pair& p : pairs) {
            ++pairs_seen;
            auto [it, added] = keys.try_emplace(p.key);
            if (added) order.push_back(p.key);
            Key& entry = it->second;
            ++entry.appearances;
            if (has_element_children(p.value)) ++entry.containers;
            std::string_view text = first_text(p.value);
            if (layout.form == Form::Attribute && text.empty())
                if (const xmlAttr* a = value_attribute(p.value, layout)) {
                    entry.attribute = reinterpret_cast<const char*>(a->name);
                    if (a->children != nullptr && a->children->content != nullptr)
                        text = reinterpret_cast<const char*>(a->children->content);
                }
            if (!text.empty()) {
                ++entry.values;
                if (entry.samples.size() < kMaxSamples) entry.samples.push_back(text);
            }
        }
    }
    // Most rows are pairs, and a key comes back row after row: a record's fields, not a list of
    // one-off names.
    if (!decided || keyed * 5 < sampled * 4 || 2 * pairs_seen < order.size() * keyed) return std::nullopt;

    KeyedColumns out;
    for (const std::string& name : order) {
        const Key& entry = keys[name];
        const std::string selector = value_step(layout, name, entry, probe);
        // Nested dictionaries and arrays are tables of their own, not values.
        if (selector.empty() || entry.containers * 2 > entry.appearances) continue;
        if (out.names.size() == kMaxColumns) break;
        out.steps.push_back(selector);
        out.names.push_back(name);
        out.profile.columns.push_back(profile_column(name, entry.values, sampled, entry.samples, probe.analyzer_options()));
    }
    if (out.names.empty()) return std::nullopt;
    return out;
}

}  // namespace tolven::tables
