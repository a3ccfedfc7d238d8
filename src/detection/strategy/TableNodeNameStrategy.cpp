#include "detection/strategy/TableNodeNameStrategy.hpp"

#include "detection/diagnostics/TraceScope.hpp"
#include "detection/strategy/hint_selectors.hpp"
#include "host/utf.hpp"
#include "xml/errors.hpp"
#include "xml/search/search.hpp"

namespace tolven::io::xml::detection::strategy {

namespace {
constexpr const char* kSource = "strategy/TableNodeNameStrategy";
using common::xpath::XPathIndexStyle;
}  // namespace

TableNodeNameStrategy::TableNodeNameStrategy(const common::vcos::DocWrapper* document,
                                             const options::DetectionOptions& options)
    : DetectionStrategy(document, options), table_node_(DetectTableSelector()) {}

TableNodeNameStrategy::~TableNodeNameStrategy() = default;

NodeLazyXPathPair TableNodeNameStrategy::DetectTableSelector() const {
    TOLVEN_TRACE_SCOPE(
        "tolven::io::xml::detection::strategy::NodeLazyXPathPair "
        "tolven::io::xml::detection::strategy::TableNodeNameStrategy::DetectTableSelector() const",
        kSource);
    const std::u16string& hint = options().TableNodeName;
    const std::string hint_text = fl::i18n::ustring_to_utf8(hint);
    diagnostics::progress("Detecting TableSelector from TableNodeName " + hint_text + "...");

    const common::tree::Tree tree(document(), namespaces());
    const common::search::SearchResult result = common::search::searchForRootNodeByName(tree, hint);
    if (!result.found()) common::search::handleSearchByNodeNameFailure(result, document_source(), hint, u"TableNodeName");
    NodeLazyXPathPair pair{result.node(), result.xpath()};

    // The text is built only for the log. A path that cannot be written fails here already when
    // the log is on, exactly as GetTableSelector would fail later without it.
    if (diagnostics::progress_enabled())
        diagnostics::progress(hint_text + " -> " +
                              fl::i18n::ustring_to_utf8(pair.xpath.materialize(XPathIndexStyle::IndexRepeated)));
    return pair;
}

std::optional<Table> TableNodeNameStrategy::DetectTable() const {
    TOLVEN_TRACE_SCOPE(
        "virtual std::optional<tolven::io::xml::detection::Table> "
        "tolven::io::xml::detection::strategy::TableNodeNameStrategy::DetectTable() const",
        kSource);
    // The search pushes and pops steps on the path it is given.
    common::xpath::LazyXPath path = table_node_.xpath;
    return DetectTableRecursive(table_node_.node, path);
}

std::optional<Selector> TableNodeNameStrategy::GetTableSelector() const {
    return materialize_for_hint(table_node_.xpath, XPathIndexStyle::IndexRepeated, u"TableSelector", u"TableNodeName",
                                options().TableNodeName);
}

}  // namespace tolven::io::xml::detection::strategy
