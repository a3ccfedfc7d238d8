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

namespace {
const xmlNode* find_below(const xmlNode* node, std::string_view name) {
    for (; node != nullptr; node = node->next) {
        if (node->type != XML_ELEMENT_NODE) continue;
        std::string written;
        if (node->ns != nullptr && node->ns->prefix != nullptr)
            written = std::string(reinterpret_cast<const char*>(node->ns->prefix)) + ":";
        written += reinterpret_cast<const char*>(node->name);
        if (written == name) return node;
        if (const xmlNode* found = find_below(node->children, name)) return found;
    }
    return nullptr;
}
}  // namespace

const xmlNode* find_element(const io::xml::common::vcos::DocWrapper& doc, std::string_view name) {
    return find_below(root_of(doc), name);
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
