#include "import/DetectionResult.hpp"

#include <stdexcept>

#include "detection/TableDetector.hpp"
#include "host/String.hpp"
#include "host/utf.hpp"

namespace tolven::import {

namespace {

namespace hs = Harnvale::String;

hs::StringPtr strings(const vxArray* result, const char* name) {
    hs::StringPtr s = hs::getString(vxGetField(result, 0, name));
    if (!s) throw std::logic_error(std::string("detect returned no string field ") + name);
    return s;
}

std::string element(const hs::StringPtr& s, std::size_t i) {
    const auto& value = s->at(i);
    return value ? fl::i18n::ustring_to_utf8(*value) : std::string();
}

}  // namespace

DetectionResult read_result(const vxArray* result) {
    DetectionResult r;
    const bool* detected = vxGetLogicals(vxGetField(result, 0, "TableDetected"));
    r.table_detected = detected != nullptr && detected[0];
    r.table_selector = element(strings(result, "TableSelector"), 0);
    r.row_selector = element(strings(result, "RowSelector"), 0);
    const auto names = strings(result, "VariableNames");
    const auto types = strings(result, "VariableTypes");
    const auto selectors = strings(result, "VariableSelectors");
    for (std::size_t i = 0; i < names->numel(); ++i)
        r.variables.push_back({element(names, i), element(types, i), element(selectors, i)});
    const auto ns = strings(result, "RegisteredNamespaces");
    if (ns->cols() == 2)
        for (std::size_t row = 0; row < ns->rows(); ++row) {
            const auto& prefix = ns->at(row, 0);
            const auto& uri = ns->at(row, 1);
            r.namespaces.emplace_back(prefix ? fl::i18n::ustring_to_utf8(*prefix) : "",
                                      uri ? fl::i18n::ustring_to_utf8(*uri) : "");
        }
    return r;
}

DetectionResult run_detect(const std::shared_ptr<io::xml::common::vcos::DocWrapper>& document, const vxArray* hints) {
    vxArrayPtr object = do_create_object(document);
    const vxArray* inputs[2] = {object.get(), hints};
    vxArrayPtr outputs[1];
    io::xml::detection::detect(1, outputs, 2, inputs);
    return read_result(outputs[0].get());
}

}  // namespace tolven::import
