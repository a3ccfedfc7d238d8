#include "import/AttributeIndex.hpp"

#include <cstdint>
#include <functional>

#include "import/node_text.hpp"

namespace tolven::import {

namespace {

std::string_view view(const xmlChar* s) { return s ? std::string_view(reinterpret_cast<const char*>(s)) : std::string_view(); }

}  // namespace

std::size_t AttributeIndex::NameHash::operator()(const Name& n) const noexcept {
    const std::hash<std::string_view> hash;
    return hash(n.local) ^ (hash(n.uri) * 31 + static_cast<std::size_t>(n.has_uri));
}

void AttributeIndex::build(const xmlNode* element) {
    element_ = element;
    by_name_.clear();
    by_local_.clear();
    // try_emplace keeps the first attribute of each name, as the scan would find it.
    for (const xmlAttr* a = element->properties; a != nullptr; a = a->next) {
        const bool has_uri = a->ns != nullptr && a->ns->href != nullptr;
        by_name_.try_emplace(Name{has_uri, has_uri ? view(a->ns->href) : std::string_view(), view(a->name)}, a);
        by_local_.try_emplace(view(a->name), a);
    }
}

const xmlAttr* AttributeIndex::find(const xmlNode* element, const NameTest& test) {
    if (element != element_) {
        std::size_t count = 0;
        for (const xmlAttr* a = element->properties; a != nullptr && count <= kScanLimit; a = a->next) ++count;
        if (count <= kScanLimit) {
            return first_attribute(element, [&test](const char* u, const char* l) { return test.matches(u, l); });
        }
        build(element);
    }
    switch (test.kind) {
        case NameTest::Kind::Any:
            return element->properties;
        case NameTest::Kind::LocalName: {
            const auto it = by_local_.find(test.local);
            return it == by_local_.end() ? nullptr : it->second;
        }
        case NameTest::Kind::Qualified: {
            const auto it = by_name_.find(Name{test.uri.has_value(), test.uri ? *test.uri : std::string_view(), test.local});
            return it == by_name_.end() ? nullptr : it->second;
        }
    }
    return nullptr;
}

std::size_t AttributeIndex::slot(const char* local, const char* uri, std::size_t size) noexcept {
    // Interned names are distinct addresses; the multiplication spreads their low bits.
    const auto key = (reinterpret_cast<std::uintptr_t>(local) >> 3) ^ (reinterpret_cast<std::uintptr_t>(uri) << 7);
    return static_cast<std::size_t>((key * 0x9E3779B97F4A7C15ull) >> 32) & (size - 1);
}

AttributeIndex::Slot* AttributeIndex::probe(std::vector<Slot>& table, const char* local, const char* uri) noexcept {
    const std::size_t mask = table.size() - 1;
    std::size_t at = slot(local, uri, table.size());
    while (table[at].local != nullptr && (table[at].local != local || table[at].uri != uri)) at = (at + 1) & mask;
    return &table[at];
}

void AttributeIndex::build(const io::xml::common::parser::ElementEvent& element) {
    std::size_t size = 16;
    while (size < 2 * static_cast<std::size_t>(element.attribute_count)) size *= 2;
    by_local_slots_.assign(size, Slot{});
    by_name_slots_.assign(size, Slot{});
    // The first attribute of each key is kept, as the scan would find it.
    for (int i = 0; i < element.attribute_count; ++i) {
        const auto a = element.attribute(i);
        if (Slot* s = probe(by_local_slots_, a.local, nullptr); s->local == nullptr) *s = {a.local, nullptr, i};
        if (Slot* s = probe(by_name_slots_, a.local, a.uri); s->local == nullptr) *s = {a.local, a.uri, i};
    }
    event_indexed_ = true;
}

int AttributeIndex::find(const io::xml::common::parser::ElementEvent& element, const char* local, const char* uri,
                         bool qualified) {
    if (!event_indexed_) build(element);
    const Slot* s = qualified ? probe(by_name_slots_, local, uri) : probe(by_local_slots_, local, nullptr);
    return s->first;
}

}  // namespace tolven::import
