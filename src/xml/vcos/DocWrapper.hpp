#pragma once
// The host's document object: the source name of a parsed document and the libxml2 document it owns.

#include <libxml/tree.h>

#include <memory>
#include <string>
#include <string_view>

#include "host/vxArray.hpp"

namespace tolven::io::xml::common::libxml2 {
struct doc_ptr_deleter {
    void operator()(xmlDoc* doc) const noexcept;
};
using DocPtr = std::unique_ptr<xmlDoc, doc_ptr_deleter>;
}  // namespace tolven::io::xml::common::libxml2

namespace tolven::io::xml::common::vcos {

class DocWrapper : public vxObject {
public:
    // source: the path as given, or "<stdin>".
    DocWrapper(std::u16string source, libxml2::DocPtr doc);

    // The source name; kept as the leading member, since detection copies it from there.
    const std::u16string& source() const noexcept { return source_; }
    const libxml2::DocPtr& doc() const noexcept { return doc_; }
    std::string_view class_name() const noexcept override { return "DocWrapper"; }

private:
    std::u16string source_;
    libxml2::DocPtr doc_;
};

// The document wrapper behind a host array of class Object.
// Raises "TOLVEN:io:xml:common:NotADocumentObject" when the array holds no document.
DocWrapper* get_doc_wrapper_ptr(const vxArray* array);

}  // namespace tolven::io::xml::common::vcos
