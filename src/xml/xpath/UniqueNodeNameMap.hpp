#pragma once
// A map from node name, the pair (namespace URI or none, local name), to a value, kept in
// order of first insertion. Keys are views of the document's own strings: a map must not
// outlive its document.

#include <libxml/tree.h>

#include <cstddef>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace tolven::io::xml::common::xpath {

template <class T>
class UniqueNodeNameMap {
public:
    // Finds the name, appending a value-initialised T when it is new. uri null means no namespace.
    // Returns the value's position and whether it was inserted.
    std::pair<std::size_t, bool> find_or_insert(const xmlChar* uri, const xmlChar* local) {
        return find_or_insert(view(uri), uri != nullptr, view(local));
    }
    std::pair<std::size_t, bool> find_or_insert(const xmlNode* node) {
        return find_or_insert(node->ns ? node->ns->href : nullptr, node->name);
    }
    std::pair<std::size_t, bool> find_or_insert(const xmlAttr* attr) {
        return find_or_insert(attr->ns ? attr->ns->href : nullptr, attr->name);
    }

    std::optional<std::size_t> find(const xmlNode* node) const {
        const xmlChar* uri = node->ns ? node->ns->href : nullptr;
        if (uri == nullptr) return lookup(without_namespace_, view(node->name));
        auto inner = with_namespace_.find(view(uri));
        if (inner == with_namespace_.end()) return std::nullopt;
        return lookup(inner->second, view(node->name));
    }

    std::size_t size() const noexcept { return values_.size(); }
    bool empty() const noexcept { return values_.empty(); }
    T& operator[](std::size_t i) { return values_[i]; }
    const T& operator[](std::size_t i) const { return values_[i]; }
    std::vector<T>& values() noexcept { return values_; }
    const std::vector<T>& values() const noexcept { return values_; }
    auto begin() noexcept { return values_.begin(); }
    auto end() noexcept { return values_.end(); }
    auto begin() const noexcept { return values_.begin(); }
    auto end() const noexcept { return values_.end(); }

private:
    using Index = std::unordered_map<std::string_view, std::size_t>;

    static std::string_view view(const xmlChar* s) {
        return s ? std::string_view(reinterpret_cast<const char*>(s)) : std::string_view();
    }
    static std::optional<std::size_t> lookup(const Index& index, std::string_view local) {
        auto it = index.find(local);
        if (it == index.end()) return std::nullopt;
        return it->second;
    }

    std::pair<std::size_t, bool> find_or_insert(std::string_view uri, bool has_uri, std::string_view local) {
        Index* index = &without_namespace_;
        if (has_uri) {
            auto [inner, added] = with_namespace_.try_emplace(uri);
            if (added) inner->second.max_load_factor(1.0f);
            index = &inner->second;
        }
        auto [it, added] = index->try_emplace(local, values_.size());
        if (added) values_.emplace_back();
        return {it->second, added};
    }

    std::vector<T> values_;
    Index without_namespace_;
    std::unordered_map<std::string_view, Index> with_namespace_;
};

}  // namespace tolven::io::xml::common::xpath
