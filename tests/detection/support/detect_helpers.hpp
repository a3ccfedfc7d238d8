#pragma once
// Drives `detect` the way the host does, from inline documents and hint values.

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/vxArray.hpp"
#include "xml/vcos/DocWrapper.hpp"

namespace tolven::testing {

// The fifteen hint fields with the command line's defaults; every member has an initializer so
// tests can name just the fields they set.
struct HintFields {
    std::u16string TableNodeName{}, RowNodeName{}, TableSelector{}, RowSelector{};
    std::vector<std::u16string> VariableNodeNames{}, VariableSelectors{};
    std::u16string AttributeSuffix = u"Attribute";
    std::u16string DateLocale = u"en_US";
    bool ImportAttributes = true;
    bool DetectNamespaces = true;
    std::vector<std::pair<std::u16string, std::u16string>> RegisteredNamespaces{};
    std::u16string DecimalSeparator = u".";
    std::u16string ThousandsSeparator{};
    std::u16string ExponentCharacter = u"eEdD";
    bool TrimNonnumeric = false;
};

// The hint structure holding all fifteen fields.
vxArrayPtr make_hint_struct(const HintFields& hints);

// Parses an inline document (named source in messages).
std::shared_ptr<io::xml::common::vcos::DocWrapper> parse_xml(std::string_view xml, const std::string& source = "test.xml");

// The result structure, read back as UTF-8.
struct DetectResult {
    bool detected = false;
    std::string table_selector, row_selector;
    std::vector<std::string> names, types, selectors;
    std::vector<std::pair<std::string, std::string>> namespaces;
};
DetectResult read_result(const vxArray* result);

// Calls detect with the document object and the hint structure.
DetectResult run_detect(const std::shared_ptr<io::xml::common::vcos::DocWrapper>& doc, const HintFields& hints = {});
DetectResult run_detect(std::string_view xml, const HintFields& hints = {});

// The identifier and arguments of the error detect raises; nullopt when it succeeds.
struct ErrorInfo {
    std::string id;
    std::vector<std::string> arguments;
};
std::optional<ErrorInfo> detect_error(std::string_view xml, const HintFields& hints = {});

// The string values of the nodes a selector selects, evaluated with libxml2 under the given
// (prefix, URI) namespaces: what a user evaluating the reported selector would get.
std::vector<std::string> select_values(const io::xml::common::vcos::DocWrapper& doc, const std::string& selector,
                                       const std::vector<std::pair<std::string, std::string>>& namespaces);

}  // namespace tolven::testing
