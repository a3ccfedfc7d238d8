#pragma once
// Registration of the namespace prefixes that selectors may use.

#include <libxml/xpath.h>

#include <memory>
#include <string>
#include <unordered_map>

#include "host/String.hpp"
#include "xml/vcos/DocWrapper.hpp"

namespace tolven::io::xml::common::xpath {

// Prefix by namespace URI: the first prefix registered for each URI.
using NamespaceMap = std::unordered_map<std::string, std::string>;

struct DetectionResult {
    // Every registered (prefix, URI) pair in registration order, as an N-by-2 string array.
    Harnvale::String::StringPtr registered;
    // The prefix to write for each URI.
    NamespaceMap prefixes;
};

// Registers on context the caller's (prefix, URI) rows of registeredNamespaces, in order, then,
// when detectNamespaces is true, every namespace declaration of the document in document order:
//  - a URI that already has a prefix is skipped;
//  - a declared prefix that is free is registered as written; one already bound to another URI
//    becomes p2, p3, ... (the first free);
//  - a default declaration gets "ns", else ns2, ns3, ... (the first free);
//  - xmlns="" and declarations of the xml prefix register nothing;
//  - last, a declared prefix that was skipped because its URI already had one is registered as
//    written when it is still free (so both prefixes of a URI work in selectors; the URI is still
//    written with its first prefix).
// The XML namespace is always written with the prefix "xml".
// registeredNamespaces may be null, 0-by-0, 0-by-2 or a missing scalar (no pairs). Any other shape,
// a missing element, an empty prefix or URI, the prefixes xml and xmlns, or one prefix given for two
// URIs raise "TOLVEN:io:xml:common:InvalidRegisteredNamespaces" with one argument saying what is
// wrong; nothing is registered then. A row repeated exactly is registered once.
// The result's registered array is 0-by-2 when nothing was registered; the XML namespace is in
// prefixes (as "xml") but never in registered.
DetectionResult register_detected_namespaces(const libxml2::DocPtr& doc,
                                             std::shared_ptr<xmlXPathContext> context,
                                             Harnvale::String::StringPtr registeredNamespaces,
                                             bool detectNamespaces);

}  // namespace tolven::io::xml::common::xpath
