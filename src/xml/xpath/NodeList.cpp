#include "xml/xpath/NodeList.hpp"

#include <libxml/xpathInternals.h>

#include <optional>
#include <stdexcept>
#include <string>

#include "host/utf.hpp"
#include "xml/errors.hpp"
#include "xml/libxml2/ErrorScope.hpp"

namespace tolven::io::xml::common::xpath {

namespace {

// libxml2's text for each XPath error code (its own table is not exported).
const char* describe(int code) {
    switch (code) {
        case XPATH_NUMBER_ERROR: return "Number encoding";
        case XPATH_UNFINISHED_LITERAL_ERROR: return "Unfinished literal";
        case XPATH_START_LITERAL_ERROR: return "Start of literal";
        case XPATH_VARIABLE_REF_ERROR: return "Expected $ for variable reference";
        case XPATH_UNDEF_VARIABLE_ERROR: return "Undefined variable";
        case XPATH_INVALID_PREDICATE_ERROR: return "Invalid predicate";
        case XPATH_EXPR_ERROR: return "Invalid expression";
        case XPATH_UNCLOSED_ERROR: return "Missing closing curly brace";
        case XPATH_UNKNOWN_FUNC_ERROR: return "Unregistered function";
        case XPATH_INVALID_OPERAND: return "Invalid operand";
        case XPATH_INVALID_TYPE: return "Invalid type";
        case XPATH_INVALID_ARITY: return "Invalid number of arguments";
        case XPATH_INVALID_CTXT_SIZE: return "Invalid context size";
        case XPATH_INVALID_CTXT_POSITION: return "Invalid context position";
        case XPATH_MEMORY_ERROR: return "Memory allocation error";
        case XPTR_SYNTAX_ERROR: return "Syntax error";
        case XPTR_RESOURCE_ERROR: return "Resource error";
        case XPTR_SUB_RESOURCE_ERROR: return "Sub resource error";
        case XPATH_UNDEF_PREFIX_ERROR: return "Undefined namespace prefix";
        case XPATH_ENCODING_ERROR: return "Encoding error";
        case XPATH_INVALID_CHAR_ERROR: return "Char out of XML range";
        case XPATH_INVALID_CTXT: return "Invalid or incomplete context";
        case XPATH_STACK_ERROR: return "Stack usage error";
        case XPATH_FORBID_VARIABLE_ERROR: return "Forbidden variable";
        case XPATH_OP_LIMIT_EXCEEDED: return "Operation limit exceeded";
        case XPATH_RECURSION_LIMIT_EXCEEDED: return "Recursion limit exceeded";
        default: return "Unknown error";
    }
}

const char* kind_of(xmlXPathObjectType type) {
    switch (type) {
        case XPATH_NUMBER: return "number";
        case XPATH_STRING: return "string";
        case XPATH_BOOLEAN: return "boolean";
        case XPATH_UNDEFINED: return "undefined";
        default: return "unsupported value";
    }
}

bool is_name_start(unsigned char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' || c >= 0x80; }
bool is_name_char(unsigned char c) { return is_name_start(c) || (c >= '0' && c <= '9') || c == '-' || c == '.'; }

// The first namespace prefix of expression (outside string literals) that context does not know.
std::optional<std::string> first_unknown_prefix(xmlXPathContext* context, const std::string& expression) {
    const std::size_t n = expression.size();
    std::size_t i = 0;
    while (i < n) {
        const auto c = static_cast<unsigned char>(expression[i]);
        if (c == '\'' || c == '"') {
            const auto close = expression.find(static_cast<char>(c), i + 1);
            if (close == std::string::npos) break;
            i = close + 1;
        } else if (c >= '0' && c <= '9') {
            while (i < n && ((expression[i] >= '0' && expression[i] <= '9') || expression[i] == '.')) ++i;
        } else if (is_name_start(c)) {
            std::size_t end = i;
            while (end < n && is_name_char(static_cast<unsigned char>(expression[end]))) ++end;
            // name ':' followed by a name or '*' is a prefixed name; "::" ends an axis name.
            if (end + 1 < n && expression[end] == ':' &&
                (is_name_start(static_cast<unsigned char>(expression[end + 1])) || expression[end + 1] == '*')) {
                std::string prefix = expression.substr(i, end - i);
                if (xmlXPathNsLookup(context, reinterpret_cast<const xmlChar*>(prefix.c_str())) == nullptr) return prefix;
                ++end;
            }
            i = end;
        } else {
            ++i;
        }
    }
    return std::nullopt;
}

// Collects the first error libxml2 reports through the context.
void collect_context_error(void* user_data, xmlErrorPtr error) {
    auto* first = static_cast<std::optional<int>*>(user_data);
    if (first != nullptr && error != nullptr && !*first) *first = error->code - XML_XPATH_EXPRESSION_OK;
}

// Points the context's error callback and start node at this call; gives back what it had.
class ContextSession {
public:
    ContextSession(xmlXPathContext* context, const xmlNode* start, std::optional<int>* first_error)
        : context_(context),
          node_(context->node),
          error_(context->error),
          user_data_(context->userData) {
        context->error = &collect_context_error;
        context->userData = first_error;
        context->node = start ? const_cast<xmlNode*>(start) : reinterpret_cast<xmlNode*>(context->doc);
    }
    ~ContextSession() {
        context_->node = node_;
        context_->error = error_;
        context_->userData = user_data_;
    }
    ContextSession(const ContextSession&) = delete;
    ContextSession& operator=(const ContextSession&) = delete;

private:
    xmlXPathContext* context_;
    xmlNode* node_;
    xmlStructuredErrorFunc error_;
    void* user_data_;
};

struct ParserContextDeleter {
    void operator()(xmlXPathParserContext* parser) const noexcept {
        while (parser->valueNr > 0) xmlXPathFreeObject(valuePop(parser));
        xmlXPathFreeParserContext(parser);
    }
};

}  // namespace

void NodeList::ObjectDeleter::operator()(xmlXPathObject* object) const noexcept { xmlXPathFreeObject(object); }

NodeList::NodeList(const std::shared_ptr<xmlXPathContext>& context, std::u16string_view expression,
                   const xmlNode* context_node) {
    if (!context) throw std::invalid_argument("NodeList: no XPath context");
    libxml2::ensure_initialised();
    const std::string text = fl::i18n::ustring_to_utf8(expression);
    const std::u16string expression_text(expression);

    // The same steps as xmlXPathEval, but with the parser context in hand so that the error
    // code is known even where libxml2 only sets it without reporting.
    int code = XPATH_EXPRESSION_OK;
    std::optional<int> reported;
    std::string stray;
    {
        libxml2::ErrorScope messages;
        ContextSession session(context.get(), context_node, &reported);
        std::unique_ptr<xmlXPathParserContext, ParserContextDeleter> parser(
            xmlXPathNewParserContext(reinterpret_cast<const xmlChar*>(text.c_str()), context.get()));
        if (!parser) throw std::bad_alloc();
        xmlXPathEvalExpr(parser.get());
        code = parser->error;
        if (code == XPATH_EXPRESSION_OK && parser->valueNr == 1) result_.reset(valuePop(parser.get()));
        stray = messages.first_message();
    }

    if (code == XPATH_EXPRESSION_OK && reported) code = *reported;
    if (code == XPATH_UNDEF_PREFIX_ERROR) {
        if (auto prefix = first_unknown_prefix(context.get(), text)) {
            throw error::XMLNamespaceError(fl::i18n::utf8_to_ustring(*prefix));
        }
        throw error::XMLNamespaceError(fl::i18n::utf8_to_ustring(describe(code)));
    }
    if (code != XPATH_EXPRESSION_OK) {
        throw error::XMLInvalidXPathExpression(expression_text, fl::i18n::utf8_to_ustring(describe(code)));
    }
    if (!result_) {
        const std::string why = stray.empty() ? std::string("the expression gave no result") : stray;
        throw error::XMLInvalidXPathExpression(expression_text, fl::i18n::utf8_to_ustring(why));
    }
    if (result_->type != XPATH_NODESET && result_->type != XPATH_XSLT_TREE) {
        const char* kind = kind_of(result_->type);
        result_.reset();
        throw error::XMLInvalidNodeset(expression_text, fl::i18n::utf8_to_ustring(kind));
    }
}

std::size_t NodeList::size() const noexcept {
    return result_ && result_->nodesetval ? static_cast<std::size_t>(result_->nodesetval->nodeNr) : 0;
}

const xmlNode* NodeList::get_node_at_index(std::size_t i) const {
    if (i >= size()) throw std::out_of_range("NodeList: index " + std::to_string(i) + " out of range");
    return result_->nodesetval->nodeTab[i];
}

bool NodeList::is_element_node(std::size_t i) const { return get_node_at_index(i)->type == XML_ELEMENT_NODE; }

}  // namespace tolven::io::xml::common::xpath
