#include "detection/strategy/RowNodeNameStrategy.hpp"

#include "detection/diagnostics/TraceScope.hpp"
#include "detection/strategy/hint_selectors.hpp"
#include "host/utf.hpp"
#include "xml/search/search.hpp"

namespace tolven::io::xml::detection::strategy {

namespace {
constexpr const char* kSource = "strategy/RowNodeNameStrategy";
}  // namespace

RowNodeNameStrategy::RowNodeNameStrategy(const common::vcos::DocWrapper* document,
                                         const options::DetectionOptions& options)
    : DetectionStrategy(document, options), row_(DetectRowSelector()), table_(DeriveTable()) {}

RowNodeNameStrategy::~RowNodeNameStrategy() = default;

NodeSelectorPair RowNodeNameStrategy::DetectRowSelector() const {
    TOLVEN_TRACE_SCOPE(
        "tolven::io::xml::detection::strategy::NodeSelectorPair "
        "tolven::io::xml::detection::strategy::RowNodeNameStrategy::DetectRowSelector() const",
        kSource);
    const std::u16string& hint = options().RowNodeName;
    const std::string hint_text = fl::i18n::ustring_to_utf8(hint);
    diagnostics::progress("Detecting RowSelector from RowNodeName " + hint_text + "...");

    const common::tree::Tree tree(document(), namespaces());
    const common::search::SearchResult result = common::search::searchForRootNodeByName(tree, hint);
    if (!result.found()) common::search::handleSearchByNodeNameFailure(result, document_source(), hint, u"RowNodeName");
    // Without positions the path selects the found element's like-placed namesakes too: the rows.
    Selector selector = materialize_for_hint(result.xpath(), common::xpath::XPathIndexStyle::NoIndexAll,
                                             u"RowSelector", u"RowNodeName", hint);
    if (diagnostics::progress_enabled())
        diagnostics::progress(hint_text + " -> " + fl::i18n::ustring_to_utf8(selector));
    return {result.node(), std::move(selector)};
}

NodeSelectorPair RowNodeNameStrategy::DeriveTable() const {
    const xmlNode* root = GetDocumentRootNode().node;
    if (row_.node == root) return row_;
    const std::size_t last_step = row_.selector.rfind(u'/');
    return {row_.node->parent,
            last_step == Selector::npos ? row_.selector : row_.selector.substr(0, last_step)};
}

std::optional<Table> RowNodeNameStrategy::DetectTable() const {
    TOLVEN_TRACE_SCOPE(
        "virtual std::optional<tolven::io::xml::detection::Table> "
        "tolven::io::xml::detection::strategy::RowNodeNameStrategy::DetectTable() const",
        kSource);
    // A selector written from the document itself: it evaluates, and selects at least the found row.
    const common::xpath::NodeList rows(context(), row_.selector);
    return getRowListTable(row_.selector, table_.selector, rows);
}

std::optional<Selector> RowNodeNameStrategy::GetTableSelector() const { return table_.selector; }
std::optional<Selector> RowNodeNameStrategy::GetRowSelector() const { return row_.selector; }

}  // namespace tolven::io::xml::detection::strategy
