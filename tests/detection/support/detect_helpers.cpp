#include "detection/support/detect_helpers.hpp"

#include <libxml/xpath.h>
#include <libxml/xpathInternals.h>

#include <stdexcept>

#include "detection/TableDetector.hpp"
#include "host/String.hpp"
#include "host/except/Exception.hpp"
#include "host/utf.hpp"
#include "xml/vcos/load_document.hpp"

namespace tolven::testing {

namespace hs = Harnvale::String;
using fl::i18n::ustring_to_utf8;

namespace {

void set(vxArray* s, const char* name, vxArrayPtr value) {
    vxAddField(s, name);
    vxSetField(s, 0, name, value.release());
}
vxArrayPtr text(const std::u16string& t) { return hs::make_String(hs::createStringArray(t)); }
vxArrayPtr logical(bool b) {
    vxArrayPtr a = do_create_numeric(vxClassID::Logical, 1, 1);
    vxGetLogicals(a.get())[0] = b;
    return a;
}

std::vector<std::string> strings(const vxArray* result, const char* name) {
    hs::StringPtr s = hs::getString(vxGetField(result, 0, name));
    if (!s) throw std::logic_error(std::string("result lacks string field ") + name);
    std::vector<std::string> out;
    for (std::size_t i = 0; i < s->numel(); ++i) out.push_back(s->at(i) ? ustring_to_utf8(*s->at(i)) : "<missing>");
    return out;
}

}  // namespace

vxArrayPtr make_hint_struct(const HintFields& h) {
    vxArrayPtr s = do_create_struct();
    set(s.get(), "TableNodeName", text(h.TableNodeName));
    set(s.get(), "RowNodeName", text(h.RowNodeName));
    set(s.get(), "VariableNodeNames", hs::make_String(hs::createStringArray(h.VariableNodeNames)));
    set(s.get(), "TableSelector", text(h.TableSelector));
    set(s.get(), "RowSelector", text(h.RowSelector));
    set(s.get(), "VariableSelectors", hs::make_String(hs::createStringArray(h.VariableSelectors)));
    set(s.get(), "AttributeSuffix", text(h.AttributeSuffix));
    set(s.get(), "DateLocale", text(h.DateLocale));
    set(s.get(), "ImportAttributes", logical(h.ImportAttributes));
    set(s.get(), "DetectNamespaces", logical(h.DetectNamespaces));
    hs::StringPtr ns = hs::createStringArray(h.RegisteredNamespaces.size(), h.RegisteredNamespaces.empty() ? 0 : 2);
    for (std::size_t r = 0; r < h.RegisteredNamespaces.size(); ++r) {
        ns->set(r, 0, h.RegisteredNamespaces[r].first);
        ns->set(r, 1, h.RegisteredNamespaces[r].second);
    }
    set(s.get(), "RegisteredNamespaces", hs::make_String(ns));
    set(s.get(), "DecimalSeparator", text(h.DecimalSeparator));
    set(s.get(), "ThousandsSeparator", text(h.ThousandsSeparator));
    set(s.get(), "ExponentCharacter", text(h.ExponentCharacter));
    set(s.get(), "TrimNonnumeric", logical(h.TrimNonnumeric));
    return s;
}

std::shared_ptr<io::xml::common::vcos::DocWrapper> parse_xml(std::string_view xml, const std::string& source) {
    return io::xml::common::vcos::load_document_from_memory(xml, source);
}

DetectResult read_result(const vxArray* result) {
    DetectResult r;
    r.detected = vxGetLogicals(vxGetField(result, 0, "TableDetected"))[0];
    r.table_selector = strings(result, "TableSelector").at(0);
    r.row_selector = strings(result, "RowSelector").at(0);
    r.names = strings(result, "VariableNames");
    r.types = strings(result, "VariableTypes");
    r.selectors = strings(result, "VariableSelectors");
    hs::StringPtr ns = hs::getString(vxGetField(result, 0, "RegisteredNamespaces"));
    for (std::size_t row = 0; ns && ns->cols() == 2 && row < ns->rows(); ++row)
        r.namespaces.emplace_back(ustring_to_utf8(*ns->at(row, 0)), ustring_to_utf8(*ns->at(row, 1)));
    return r;
}

DetectResult run_detect(const std::shared_ptr<io::xml::common::vcos::DocWrapper>& doc, const HintFields& hints) {
    vxArrayPtr object = do_create_object(doc);
    vxArrayPtr hint_struct = make_hint_struct(hints);
    const vxArray* inputs[2] = {object.get(), hint_struct.get()};
    vxArrayPtr outputs[1];
    io::xml::detection::detect(1, outputs, 2, inputs);
    return read_result(outputs[0].get());
}

DetectResult run_detect(std::string_view xml, const HintFields& hints) { return run_detect(parse_xml(xml), hints); }

std::optional<ErrorInfo> detect_error(std::string_view xml, const HintFields& hints) {
    auto doc = parse_xml(xml);
    try {
        run_detect(doc, hints);
    } catch (const foundation::core::except::IMsgIDException& e) {
        return ErrorInfo{e.GetID(), e.GetBaseMsgIDObj().arguments_utf8()};
    }
    return std::nullopt;
}

std::vector<std::string> select_values(const io::xml::common::vcos::DocWrapper& doc, const std::string& selector,
                                       const std::vector<std::pair<std::string, std::string>>& namespaces) {
    std::unique_ptr<xmlXPathContext, decltype(&xmlXPathFreeContext)> ctx(xmlXPathNewContext(doc.doc().get()),
                                                                        &xmlXPathFreeContext);
    for (const auto& [prefix, uri] : namespaces)
        xmlXPathRegisterNs(ctx.get(), reinterpret_cast<const xmlChar*>(prefix.c_str()),
                           reinterpret_cast<const xmlChar*>(uri.c_str()));
    std::unique_ptr<xmlXPathObject, decltype(&xmlXPathFreeObject)> result(
        xmlXPathEvalExpression(reinterpret_cast<const xmlChar*>(selector.c_str()), ctx.get()), &xmlXPathFreeObject);
    if (!result || result->type != XPATH_NODESET) throw std::runtime_error("not a node set: " + selector);
    std::vector<std::string> out;
    for (int i = 0; result->nodesetval && i < result->nodesetval->nodeNr; ++i) {
        xmlChar* content = xmlNodeGetContent(result->nodesetval->nodeTab[i]);
        out.emplace_back(content ? reinterpret_cast<const char*>(content) : "");
        xmlFree(content);
    }
    return out;
}

}  // namespace tolven::testing
