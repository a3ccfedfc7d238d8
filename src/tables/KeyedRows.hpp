#pragma once
// Rows made of key/value pairs, one column per key, named by it. Three ways of writing a pair:
//  - a key element and the value element after it (a property list's <key>Name</key><string>...);
//  - a field named by an attribute (<field name="id">7</field>, <str name="title">...</str>);
//  - a pair element holding the key and the value (<String><Key>Title</Key><Value>...</Value></String>).

#include <libxml/tree.h>

#include <optional>
#include <string>
#include <vector>

#include "tables/ColumnProfile.hpp"
#include "tables/Probe.hpp"

namespace tolven::tables {

struct KeyedColumns {
    std::vector<std::string> names;  // the keys, in order of first appearance
    std::vector<std::string> steps;  // below a row: "key[.='Name']/following-sibling::*[1]", "field[@name='id']"
    TableProfile profile;
};

// The keyed reading of rows, or none when they are not made of key/value pairs.
std::optional<KeyedColumns> read_keyed(const std::vector<const xmlNode*>& rows, const Probe& probe);

}  // namespace tolven::tables
