#include "detection/diagnostics/printers.hpp"

#include <ostream>

#include "host/utf.hpp"

namespace tolven::io::xml::detection::diagnostics {

std::string print_quoted(std::u16string_view text) {
    // Appended rather than concatenated: GCC 12 at -O3 warns falsely (-Wrestrict) on literal + string.
    std::string out = "\"";
    out.append(fl::i18n::ustring_to_utf8(text)).push_back('"');
    return out;
}

std::string print_list(const std::vector<std::u16string>& texts) {
    std::string out = "[";
    for (std::size_t i = 0; i < texts.size(); ++i) {
        if (i > 0) out += ", ";
        out += print_quoted(texts[i]);
    }
    return out + "]";
}

std::string print_bool(bool value) { return value ? "true" : "false"; }

std::string print_node_name(const xmlNode* node) {
    std::string name;
    if (node != nullptr && node->ns != nullptr && node->ns->prefix != nullptr) {
        name += reinterpret_cast<const char*>(node->ns->prefix);
        name += ':';
    }
    if (node != nullptr && node->name != nullptr) name += reinterpret_cast<const char*>(node->name);
    name.insert(name.begin(), '"');
    name.push_back('"');
    return name;
}

std::string print_node_list(const std::vector<const xmlNode*>& nodes) {
    std::string out = "[";
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        if (i > 0) out += ", ";
        out += print_node_name(nodes[i]);
    }
    return out + "]";
}

std::string print_options(const options::DetectionOptions& o) {
    std::string out;
    out.append(kLineBreak).append("DetectionOptions = ").append(kLineBreak).append("{").append(kLineBreak);
    auto line = [&](std::string_view label, const std::string& value) {
        out.append(kIndent).append(label).append(value).append(",").append(kLineBreak);
    };
    line("TableNodeName: ", print_quoted(o.TableNodeName));
    line("RowNodeName: ", print_quoted(o.RowNodeName));
    line("VariableNodeNames: ", print_list(o.VariableNodeNames));
    line("TableSelector: ", print_quoted(o.TableSelector));
    line("RowSelector: ", print_quoted(o.RowSelector));
    line("VariableSelectors: ", print_list(o.VariableSelectors));
    line("AttributeSuffix: ", print_quoted(o.AttributeSuffix));
    line("DateLocale: ", print_quoted(o.DateLocale));
    line("ImportAttributes: ", print_bool(o.ImportAttributes));
    line("DetectNamespaces: ", print_bool(o.DetectNamespaces));
    out.append("}");
    return out;
}

}  // namespace tolven::io::xml::detection::diagnostics

namespace tolven::io::xml::detection::options {
std::ostream& operator<<(std::ostream& out, const DetectionOptions& options) {
    return out << diagnostics::print_options(options);
}
}  // namespace tolven::io::xml::detection::options
