#include "detection/options/make_detection_options.hpp"

#include "detection/diagnostics/TraceScope.hpp"
#include "detection/diagnostics/printers.hpp"
#include "host/String.hpp"
#include "host/except/Exception.hpp"
#include "host/except/StringErrors.hpp"
#include "xml/errors.hpp"

namespace tolven::io::xml::detection::options {

namespace {

namespace hs = Harnvale::String;

// Only element 1 is read; a structure lacking the field (or not a structure) cannot be read at all.
const vxArray* field(const VxDetectionOptions* hints, const char* name) {
    if (hints == nullptr || vxGetClassID(hints) != vxClassID::Struct || vxGetNumberOfElements(hints) == 0)
        vxErrMsgId(TOLVEN::io::xml::common::UnknownError());
    const vxArray* value = vxGetField(hints, 0, name);
    if (value == nullptr) vxErrMsgId(TOLVEN::io::xml::common::UnknownError());
    return value;
}

std::vector<std::u16string> read_list(const VxDetectionOptions* hints, const char* name) {
    const vxArray* value = field(hints, name);
    std::vector<std::u16string> out;
    if (hs::isMissingScalarString(value)) return out;
    if (hs::isNonMissingScalarText(value) && vxGetClassID(value) == vxClassID::Char) {
        out.push_back(hs::getScalarText(value));
        return out;
    }
    hs::StringPtr strings = hs::getString(value);
    if (!strings) return out;
    for (std::size_t i = 0; i < strings->numel(); ++i) {
        const auto& element = strings->at(i);
        if (!element) {
            using foundation::core::except::Exception;
            throw Exception<TOLVEN::string::MissingNotSupported>(TOLVEN::string::MissingNotSupported());
        }
        out.push_back(*element);
    }
    return out;
}

// Anything that is not scalar text reads as "" (the option is then not given), without an error.
std::u16string read_text(const VxDetectionOptions* hints, const char* name) {
    const vxArray* value = field(hints, name);
    return hs::isNonMissingScalarText(value) ? hs::getScalarText(value) : std::u16string();
}

// The first byte of the data decides; the host passes logical scalars.
bool read_logical(const VxDetectionOptions* hints, const char* name) {
    const vxArray* value = field(hints, name);
    const void* data = vxGetData(value);
    return data != nullptr && *static_cast<const unsigned char*>(data) != 0;
}

}  // namespace

DetectionOptions make_detection_options(const VxDetectionOptions* hints) {
    TOLVEN_TRACE_SCOPE(
        "tolven::io::xml::detection::options::DetectionOptions "
        "tolven::io::xml::detection::options::make_detection_options(const VxDetectionOptions*)",
        "options/make_detection_options");

    DetectionOptions o;
    o.VariableSelectors = read_list(hints, "VariableSelectors");
    o.VariableNodeNames = read_list(hints, "VariableNodeNames");
    o.TableSelector = read_text(hints, "TableSelector");
    o.TableNodeName = read_text(hints, "TableNodeName");
    o.RowSelector = read_text(hints, "RowSelector");
    o.RowNodeName = read_text(hints, "RowNodeName");
    o.AttributeSuffix = read_text(hints, "AttributeSuffix");
    o.DateLocale = read_text(hints, "DateLocale");
    o.ImportAttributes = read_logical(hints, "ImportAttributes");
    o.DetectNamespaces = read_logical(hints, "DetectNamespaces");
    o.RegisteredNamespaces = hs::getString(field(hints, "RegisteredNamespaces"));
    o.DecimalSeparator = read_text(hints, "DecimalSeparator");
    o.ThousandsSeparator = read_text(hints, "ThousandsSeparator");
    o.ExponentCharacter = read_text(hints, "ExponentCharacter");
    o.TrimNonnumeric = read_logical(hints, "TrimNonnumeric");

    if (diagnostics::debug_enabled()) diagnostics::debug(diagnostics::print_options(o));
    return o;
}

}  // namespace tolven::io::xml::detection::options
