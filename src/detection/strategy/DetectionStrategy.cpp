#include "detection/strategy/DetectionStrategy.hpp"

#include "detection/diagnostics/TraceScope.hpp"
#include "detection/errors/errors.hpp"
#include "detection/variables/DetectionNode.hpp"
#include "xml/xpath/make_context.hpp"

namespace tolven::io::xml::detection::strategy {

namespace {

constexpr const char* kSource = "strategy/DetectionStrategy";

// A list hint counts when its first element is not empty, so a list whose first element is
// empty never makes a call fail the one-hint rule.
bool list_given(const std::vector<std::u16string>& list) { return !list.empty() && !list.front().empty(); }

std::size_t count_hints(const options::DetectionOptions& o) {
    return static_cast<std::size_t>(!o.TableSelector.empty()) + static_cast<std::size_t>(!o.TableNodeName.empty()) +
           static_cast<std::size_t>(!o.RowSelector.empty()) + static_cast<std::size_t>(!o.RowNodeName.empty()) +
           static_cast<std::size_t>(list_given(o.VariableSelectors)) +
           static_cast<std::size_t>(list_given(o.VariableNodeNames));
}

}  // namespace

DetectionStrategy::DetectionStrategy(const common::vcos::DocWrapper* document,
                                     const options::DetectionOptions& options)
    : source_(document->source()),
      options_(options),
      document_(&document->doc()),
      context_(common::xpath::make_context(*document_)),
      namespaces_(common::xpath::register_detected_namespaces(*document_, context_, options_.RegisteredNamespaces,
                                                              options_.DetectNamespaces)) {
    // Defaults first, then the hint count, and only then the caller's settings.
    analyzer_ = text::typedetection::TypeAnalyzerOptions{};
    if (count_hints(options_) > 1) vxErrMsgId(TOLVEN::io::xml::detection::ProvideAtMostOneDetectionHint());
    // Only the first unit of each separator is used; further characters are ignored on purpose.
    analyzer_.thousands_separator = options_.ThousandsSeparator.empty() ? 0 : options_.ThousandsSeparator.front();
    analyzer_.decimal_separator = options_.DecimalSeparator.empty() ? u'.' : options_.DecimalSeparator.front();
    analyzer_.exponent_characters = options_.ExponentCharacter;
    analyzer_.trim_nonnumeric = options_.TrimNonnumeric;
    analyzer_.date_locale = options_.DateLocale;
}

DetectionStrategy::~DetectionStrategy() = default;

ImportOptions DetectionStrategy::Detect() const {
    TOLVEN_TRACE_SCOPE(
        "virtual tolven::io::xml::detection::ImportOptions "
        "tolven::io::xml::detection::strategy::DetectionStrategy::Detect() const",
        kSource);
    diagnostics::progress("Starting detection...");
    const std::optional<Table> table = DetectTable();
    return MakeImportOptions(table);
}

std::optional<Selector> DetectionStrategy::GetTableSelector() const { return std::nullopt; }
std::optional<Selector> DetectionStrategy::GetRowSelector() const { return std::nullopt; }
std::optional<std::vector<Selector>> DetectionStrategy::GetVariableSelectors() const { return std::nullopt; }

NodeLazyXPathPair DetectionStrategy::GetDocumentRootNode() const {
    TOLVEN_TRACE_SCOPE(
        "tolven::io::xml::detection::strategy::NodeLazyXPathPair "
        "tolven::io::xml::detection::strategy::DetectionStrategy::GetDocumentRootNode() const",
        kSource);
    const xmlNode* root = xmlDocGetRootElement(document());
    common::xpath::LazyXPath path(namespaces());
    if (root != nullptr) path.push_back(root, 1);
    return {root, std::move(path)};
}

std::optional<Table> DetectionStrategy::DetectTableRecursive(const xmlNode* node,
                                                             common::xpath::LazyXPath& xpath) const {
    return DetectTableRecursiveImpl(node, xpath);
}

}  // namespace tolven::io::xml::detection::strategy
