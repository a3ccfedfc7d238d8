#include "detection/TableDetector.hpp"

#include <string>
#include <string_view>

#include "detection/diagnostics/TraceScope.hpp"
#include "detection/strategy/DefaultStrategy.hpp"
#include "detection/strategy/RowNodeNameStrategy.hpp"
#include "detection/strategy/RowSelectorStrategy.hpp"
#include "detection/strategy/TableNodeNameStrategy.hpp"
#include "detection/strategy/TableSelectorStrategy.hpp"
#include "detection/strategy/VariableNodeNamesStrategy.hpp"
#include "detection/strategy/VariableSelectorsStrategy.hpp"

namespace tolven::io::xml::detection {

namespace {
constexpr const char* kSource = "TableDetector";
}  // namespace

TableDetector::TableDetector(const arguments::ParsedArguments& arguments)
    : document_(arguments.document), options_(arguments.options) {}

ImportOptions TableDetector::Detect() const {
    TOLVEN_TRACE_SCOPE(
        "tolven::io::xml::detection::ImportOptions tolven::io::xml::detection::TableDetector::Detect() const", kSource);
    const std::unique_ptr<strategy::DetectionStrategy> chosen = ChooseDetectionStrategy();
    return chosen->Detect();
}

std::unique_ptr<strategy::DetectionStrategy> TableDetector::ChooseDetectionStrategy() const {
    TOLVEN_TRACE_SCOPE(
        "std::unique_ptr<tolven::io::xml::detection::strategy::DetectionStrategy> "
        "tolven::io::xml::detection::TableDetector::ChooseDetectionStrategy() const",
        kSource);
    diagnostics::progress("Choosing DetectionStrategy...");
    const std::string_view name = ChosenStrategyName(options_);
    diagnostics::progress(std::string("DetectionStrategy = ").append(name));
    using namespace strategy;
    if (name == "TableSelectorStrategy") return std::make_unique<TableSelectorStrategy>(document_, options_);
    if (name == "TableNodeNameStrategy") return std::make_unique<TableNodeNameStrategy>(document_, options_);
    if (name == "RowSelectorStrategy") return std::make_unique<RowSelectorStrategy>(document_, options_);
    if (name == "RowNodeNameStrategy") return std::make_unique<RowNodeNameStrategy>(document_, options_);
    if (name == "VariableSelectorsStrategy") return std::make_unique<VariableSelectorsStrategy>(document_, options_);
    if (name == "VariableNodeNamesStrategy") return std::make_unique<VariableNodeNamesStrategy>(document_, options_);
    return std::make_unique<DefaultStrategy>(document_, options_);
}

const char* TableDetector::ChosenStrategyName(const options::DetectionOptions& o) {
    if (!o.TableSelector.empty()) return "TableSelectorStrategy";
    if (!o.TableNodeName.empty()) return "TableNodeNameStrategy";
    if (!o.RowSelector.empty()) return "RowSelectorStrategy";
    if (!o.RowNodeName.empty()) return "RowNodeNameStrategy";
    // Deliberately unlike: any VariableSelectors list selects its strategy, while a VariableNodeNames
    // list whose first element is empty falls through to the default.
    if (!o.VariableSelectors.empty()) return "VariableSelectorsStrategy";
    if (!o.VariableNodeNames.empty() && !o.VariableNodeNames.front().empty()) return "VariableNodeNamesStrategy";
    return "DefaultStrategy";
}

void detect(int /*nlhs*/, std::unique_ptr<vxArray, matrix::detail::vxDestroy_deleter>* plhs, int /*nrhs*/,
            const vxArray** prhs) {
    const arguments::ParsedArguments parsed = arguments::parse(prhs);
    const TableDetector detector(parsed);
    plhs[0] = detector.Detect();
}

}  // namespace tolven::io::xml::detection
