#pragma once
#include <libxml/xpath.h>

#include <memory>

#include "xml/vcos/DocWrapper.hpp"

namespace tolven::io::xml::common::xpath {
// A new XPath context for the document, with no namespaces registered.
std::shared_ptr<xmlXPathContext> make_context(const libxml2::DocPtr& doc);

// Binds prefix to uri on the context, replacing an earlier binding of the prefix; false when
// libxml2 fails. Unlike xmlXPathRegisterNs, whose table of ten buckets libxml2 before 2.12 never
// grows, it keeps registering and looking up thousands of prefixes cheap.
bool register_prefix(xmlXPathContext* context, const char* prefix, const char* uri);
}  // namespace tolven::io::xml::common::xpath
