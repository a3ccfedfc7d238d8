#include "detection/strategy/hint_selectors.hpp"

#include "detection/errors/errors.hpp"
#include "xml/errors.hpp"

namespace tolven::io::xml::detection::strategy {

namespace {

namespace ids = TOLVEN::io::xml::detection;
using common::error::XMLException;
using common::error::XMLInvalidNodeset;
using common::error::XMLNamespaceError;

// The identifiers of one hint family.
template <class NotNodeSet, class UnregisteredNamespace, class UnknownError>
common::xpath::NodeList evaluate(const std::shared_ptr<xmlXPathContext>& context, std::u16string_view expression) {
    try {
        return common::xpath::NodeList(context, expression);
    } catch (const XMLInvalidNodeset& e) {
        // The library gives (expression, kind); the message reads them kind first.
        vxErrMsgId(NotNodeSet(e.strings().at(1), e.strings().at(0)));
    } catch (const XMLNamespaceError& e) {
        vxErrMsgId(UnregisteredNamespace(e.message()));
    } catch (const XMLException& e) {
        vxErrMsgId(UnknownError(e.message()));
    }
}

}  // namespace

common::xpath::NodeList evaluate_selector_hint(SelectorHint hint, const std::shared_ptr<xmlXPathContext>& context,
                                               std::u16string_view expression) {
    switch (hint) {
        case SelectorHint::TableSelector:
            return evaluate<ids::TableSelectorNotNodeSet, ids::TableSelectorUnregisteredNamespace,
                            ids::TableSelectorUnknownError>(context, expression);
        case SelectorHint::RowSelector:
            return evaluate<ids::RowSelectorNotNodeSet, ids::RowSelectorUnregisteredNamespace,
                            ids::RowSelectorUnknownError>(context, expression);
        case SelectorHint::VariableSelectors:
            break;
    }
    return evaluate<ids::VariableSelectorsNotNodeSet, ids::VariableSelectorsUnregisteredNamespace,
                    ids::VariableSelectorsUnknownError>(context, expression);
}

Selector materialize_for_hint(const common::xpath::LazyXPath& path, common::xpath::XPathIndexStyle style,
                              const char16_t* selector_option, const char16_t* hint_name,
                              const std::u16string& hint_value) {
    try {
        return path.materialize(style);
    } catch (const common::error::XMLInvalidXPathExpression& e) {
        vxErrMsgId(ids::DetectedUnsupportedSelectorDetectionHint(selector_option, e.strings().at(0), hint_name,
                                                                 hint_value));
    }
}

Selector parenthesize(std::u16string_view expression) {
    Selector wrapped;
    wrapped.reserve(expression.size() + 2);
    wrapped.push_back(u'(');
    wrapped.append(expression);
    wrapped.push_back(u')');
    return wrapped;
}

}  // namespace tolven::io::xml::detection::strategy
