#include "tables/References.hpp"

#include <algorithm>
#include <set>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "tables/node_text.hpp"

namespace tolven::tables {

namespace {

// Longer lists are data, not lists looked up in.
constexpr std::size_t kMaxLookupRows = 500;
// Values longer than this are text, not codes.
constexpr std::size_t kMaxKey = 64;
// Candidates whose keys are counted by a walk of their own before every value is counted at once.
constexpr std::size_t kWalksBeforeCounting = 3;

std::string_view code(std::string_view text) {
    constexpr std::string_view blank = " \t\n\r";
    const auto first = text.find_first_not_of(blank);
    if (first == std::string_view::npos) return {};
    text = text.substr(first, text.find_last_not_of(blank) - first + 1);
    if (!text.empty() && text.front() == '#') text.remove_prefix(1);  // "#style1" names style1
    return text.size() > kMaxKey ? std::string_view() : text;
}

// Numbers, dates and times: measurements, not codes (and most of a large document's values, left uncounted).
bool numeric(std::string_view v) {
    if (!v.empty() && (v.front() == '-' || v.front() == '+' || v.front() == '.')) v.remove_prefix(1);
    return !v.empty() && v.front() >= '0' && v.front() <= '9';
}

std::string_view attribute_value(const xmlAttr* a) {
    if (a->children == nullptr || a->children->next != nullptr || a->children->content == nullptr) return {};
    return reinterpret_cast<const char*>(a->children->content);
}

// Calls mention(v) for each element's name, attribute value and leaf text below and including node,
// leaving out the subtrees of the elements in skipped.
template <class Mention>
void visit(const xmlNode* node, Mention& mention, const std::unordered_set<const xmlNode*>* skipped = nullptr) {
    if (skipped != nullptr && skipped->contains(node)) return;
    mention(std::string_view(reinterpret_cast<const char*>(node->name)));
    for (const xmlAttr* a = node->properties; a != nullptr; a = a->next)
        if (const auto v = code(attribute_value(a)); !v.empty() && !numeric(v)) mention(v);
    bool leaf = true;
    for (const xmlNode* c = node->children; c != nullptr; c = c->next)
        if (c->type == XML_ELEMENT_NODE) {
            leaf = false;
            visit(c, mention, skipped);
        }
    if (leaf)
        if (const auto v = code(first_text(node)); !v.empty() && !numeric(v)) mention(v);
}

}  // namespace

std::size_t References::mentioned(std::string_view value) {
    if (!indexed_) {
        auto count = [this](std::string_view v) { ++mentions_[v]; };
        visit(root_, count);
        indexed_ = true;
    }
    const auto found = mentions_.find(value);
    return found != mentions_.end() ? found->second : 0;
}

bool References::looked_up(const std::vector<const xmlNode*>& rows) {
    if (rows.size() < 2 || rows.size() > kMaxLookupRows) return false;
    // The keys a row could have: its attributes and its leaf children.
    std::vector<std::pair<const xmlChar*, bool>> keys;
    for (const xmlAttr* a = rows.front()->properties; a != nullptr; a = a->next) keys.emplace_back(a->name, true);
    for (const xmlNode* c : element_children(rows.front()))
        if (!has_element_children(c)) keys.emplace_back(c->name, false);

    // Each row's value for every key: an attribute of that name, or the text of its only leaf child of
    // that name. One walk of a row's children serves all its keys, as rows may be hundreds wide.
    std::unordered_map<std::string_view, std::size_t> element_keys, attribute_keys;
    for (std::size_t k = 0; k < keys.size(); ++k)
        (keys[k].second ? attribute_keys : element_keys).emplace(reinterpret_cast<const char*>(keys[k].first), k);
    std::vector<std::set<std::string_view>> values(keys.size());
    std::vector<bool> usable(keys.size(), true);
    std::vector<std::string_view> found(keys.size());
    std::vector<unsigned char> met(keys.size());  // 0 none, 1 one leaf, 2 more than one or not a leaf
    for (const xmlNode* row : rows) {
        std::fill(found.begin(), found.end(), std::string_view());
        std::fill(met.begin(), met.end(), 0);
        // The first attribute of each name counts; a walk, not a search per key, for elements that
        // carry thousands of attributes.
        for (const xmlAttr* a = row->properties; a != nullptr; a = a->next) {
            const auto key = attribute_keys.find(reinterpret_cast<const char*>(a->name));
            if (key == attribute_keys.end() || !usable[key->second] || met[key->second] != 0) continue;
            met[key->second] = 1;
            found[key->second] = code(attribute_value(a));
        }
        for (const xmlNode* c = row->children; c != nullptr; c = c->next) {
            if (c->type != XML_ELEMENT_NODE) continue;
            const auto key = element_keys.find(reinterpret_cast<const char*>(c->name));
            if (key == element_keys.end() || !usable[key->second]) continue;
            unsigned char& m = met[key->second];
            m = m == 0 && !has_element_children(c) ? 1 : 2;
            if (m == 1) found[key->second] = code(first_text(c));
        }
        bool any = false;
        for (std::size_t k = 0; k < keys.size(); ++k) {
            if (!usable[k]) continue;
            const std::string_view v = keys[k].second || met[k] == 1 ? found[k] : std::string_view();
            usable[k] = !v.empty() && !numeric(v) && values[k].insert(v).second;
            any = any || usable[k];
        }
        if (!any) return false;
    }

    // How often each key is named outside the rows. The first candidates asked about walk the
    // document counting only their keys; past those, every name and value is counted once for all,
    // which costs a few such walks but bounds a document of many lists.
    std::unordered_map<std::string_view, std::size_t> outside;
    for (std::size_t k = 0; k < keys.size(); ++k)
        if (usable[k])
            for (const std::string_view v : values[k]) outside.try_emplace(v);
    if (++asked_ <= kWalksBeforeCounting) {
        auto mention = [&](std::string_view v) {
            if (const auto c = outside.find(v); c != outside.end()) ++c->second;
        };
        const std::unordered_set<const xmlNode*> skipped(rows.begin(), rows.end());
        visit(root_, mention, &skipped);
    } else {
        for (auto& [value, count] : outside) count = mentioned(value);
        auto mention = [&](std::string_view v) {
            if (const auto c = outside.find(v); c != outside.end()) --c->second;
        };
        for (const xmlNode* row : rows) visit(row, mention);
    }
    for (std::size_t k = 0; k < keys.size(); ++k) {
        if (!usable[k]) continue;
        std::size_t named = 0, mentions = 0;
        for (const std::string_view v : values[k]) {
            const std::size_t n = outside.at(v);
            named += n > 0 ? 1 : 0;
            mentions += n;
        }
        // Three mentions a key or more: many rows name each one. Tables of the same records kept
        // side by side (definitions, results, entries) name each other's keys once or twice.
        if (2 * named >= values[k].size() && mentions >= 3 * named) return true;
    }
    return false;
}

}  // namespace tolven::tables
