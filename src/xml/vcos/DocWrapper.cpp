#include "xml/vcos/DocWrapper.hpp"

#include <utility>

#include "host/except/Exception.hpp"
#include "xml/errors.hpp"

namespace tolven::io::xml::common::libxml2 {
void doc_ptr_deleter::operator()(xmlDoc* doc) const noexcept { xmlFreeDoc(doc); }
}  // namespace tolven::io::xml::common::libxml2

namespace tolven::io::xml::common::vcos {

DocWrapper::DocWrapper(std::u16string source, libxml2::DocPtr doc) : source_(std::move(source)), doc_(std::move(doc)) {}

DocWrapper* get_doc_wrapper_ptr(const vxArray* array) {
    // vxGetObject yields null for a null array and for any class but Object.
    auto* wrapper = dynamic_cast<DocWrapper*>(vxGetObject(array));
    if (wrapper == nullptr) vxErrMsgId(TOLVEN::io::xml::common::NotADocumentObject());
    return wrapper;
}

}  // namespace tolven::io::xml::common::vcos
