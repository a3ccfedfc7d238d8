#include "xml/support/parse_xml.hpp"

#include "host/except/Exception.hpp"
#include "xml/vcos/load_document.hpp"

namespace tolven::test {

std::shared_ptr<io::xml::common::vcos::DocWrapper> parse_xml(std::string_view xml) {
    return io::xml::common::vcos::load_document_from_memory(xml, "inline.xml");
}

const xmlNode* root_of(const io::xml::common::vcos::DocWrapper& doc) { return xmlDocGetRootElement(doc.doc().get()); }

std::vector<const xmlNode*> element_children(const xmlNode* node) {
    std::vector<const xmlNode*> children;
    for (const xmlNode* c = node ? node->children : nullptr; c != nullptr; c = c->next)
        if (c->type == XML_ELEMENT_NODE) children.push_back(c);
    return children;
}

Raised raised_by(const std::function<void()>& call) {
    try {
        call();
    } catch (const foundation::core::except::IMsgIDException& error) {
        return {error.GetID(), error.GetBaseMsgIDObj().arguments_utf8()};
    }
    return {};
}

}  // namespace tolven::test
