#include "xml/xpath/make_context.hpp"

#include <libxml/hash.h>
#include <libxml/xpathInternals.h>

#include <new>

#include "xml/libxml2/ErrorScope.hpp"

namespace tolven::io::xml::common::xpath {

std::shared_ptr<xmlXPathContext> make_context(const libxml2::DocPtr& doc) {
    libxml2::ensure_initialised();
    xmlXPathContext* context = xmlXPathNewContext(doc.get());
    if (context == nullptr) throw std::bad_alloc();
    return std::shared_ptr<xmlXPathContext>(context, xmlXPathFreeContext);
}

bool register_prefix(xmlXPathContext* context, const char* prefix, const char* uri) {
    const auto* key = reinterpret_cast<const xmlChar*>(prefix);
    const auto* value = reinterpret_cast<const xmlChar*>(uri);
    // A table made here and filled with xmlHashAddEntry grows as it fills; the context frees it
    // and its copies of the URIs (xmlXPathRegisteredNsCleanup) as it would its own.
    if (context->nsHash == nullptr) context->nsHash = xmlHashCreate(256);
    if (context->nsHash == nullptr) return false;
    xmlChar* copy = xmlStrdup(value);
    if (copy == nullptr) return false;
    if (xmlHashAddEntry(context->nsHash, key, copy) == 0) return true;
    xmlFree(copy);
    return xmlXPathRegisterNs(context, key, value) == 0;  // the prefix was bound: replace it
}

}  // namespace tolven::io::xml::common::xpath
