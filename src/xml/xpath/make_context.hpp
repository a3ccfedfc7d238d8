#pragma once
#include <libxml/xpath.h>

#include <memory>

#include "xml/vcos/DocWrapper.hpp"

namespace tolven::io::xml::common::xpath {
// A new XPath context for the document, with no namespaces registered.
std::shared_ptr<xmlXPathContext> make_context(const libxml2::DocPtr& doc);
}  // namespace tolven::io::xml::common::xpath
