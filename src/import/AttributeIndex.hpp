#pragma once
// The attributes of one element by name, for elements read by many attribute columns: scanning the
// attribute list once per column costs columns times attributes, quadratic for a wide element.

#include <libxml/tree.h>

#include <cstddef>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "import/PathMatcher.hpp"
#include "xml/parser/SaxHandler.hpp"

namespace tolven::import {

class AttributeIndex {
public:
    // Elements with at most this many attributes are scanned; the index would cost more.
    static constexpr std::size_t kScanLimit = 16;

    // The first attribute of element that passes test, as first_attribute finds it. The index is
    // built on the first lookup in a wide element and kept while lookups stay on that element, which
    // must stay unchanged meanwhile (a streaming reader calls forget() before each new element).
    const xmlAttr* find(const xmlNode* element, const NameTest& test);
    // The same for an element of a streaming parse, whose names are interned (equal names are equal
    // pointers): the position of the first attribute named local (and, when qualified, in namespace
    // uri, null for none); -1 when there is none. Kept until forget().
    int find(const io::xml::common::parser::ElementEvent& element, const char* local, const char* uri, bool qualified);
    // Drops the index, for a reader whose next element may reuse the memory of the last.
    void forget() noexcept {
        element_ = nullptr;
        event_indexed_ = false;
    }

private:
    struct Name {
        bool has_uri;
        std::string_view uri;
        std::string_view local;
        bool operator==(const Name&) const = default;
    };
    struct NameHash {
        std::size_t operator()(const Name& n) const noexcept;
    };
    void build(const xmlNode* element);

    // The streaming index: open addressing on interned pointers, its size a power of two; each slot
    // holds the first attribute of its key (by local name alone, or by local name and namespace).
    struct Slot {
        const char* local = nullptr;  // null: empty
        const char* uri = nullptr;
        int first = -1;
    };
    void build(const io::xml::common::parser::ElementEvent& element);
    static std::size_t slot(const char* local, const char* uri, std::size_t size) noexcept;
    static Slot* probe(std::vector<Slot>& table, const char* local, const char* uri) noexcept;

    const xmlNode* element_ = nullptr;  // the element indexed, if any
    bool event_indexed_ = false;        // the streaming index is that of the current element
    std::vector<Slot> by_local_slots_;
    std::vector<Slot> by_name_slots_;
    std::unordered_map<Name, const xmlAttr*, NameHash> by_name_;
    std::unordered_map<std::string_view, const xmlAttr*> by_local_;
};

}  // namespace tolven::import
