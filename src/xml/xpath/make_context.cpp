#include "xml/xpath/make_context.hpp"

#include <new>

#include "xml/libxml2/ErrorScope.hpp"

namespace tolven::io::xml::common::xpath {

std::shared_ptr<xmlXPathContext> make_context(const libxml2::DocPtr& doc) {
    libxml2::ensure_initialised();
    xmlXPathContext* context = xmlXPathNewContext(doc.get());
    if (context == nullptr) throw std::bad_alloc();
    return std::shared_ptr<xmlXPathContext>(context, xmlXPathFreeContext);
}

}  // namespace tolven::io::xml::common::xpath
