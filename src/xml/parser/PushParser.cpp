#include "xml/parser/PushParser.hpp"

#include <libxml/SAX2.h>
#include <libxml/parserInternals.h>
#include <libxml/xmlIO.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <unordered_map>
#include <utility>

#include "host/except/Exception.hpp"
#include "xml/errors.hpp"
#include "xml/libxml2/ErrorScope.hpp"
#include "xml/parser/limit_messages.hpp"

namespace tolven::io::xml::common::parser {

namespace {

// libxml2 opens every external resource a document names (external entities, external parameter
// entities) through this hook. This libxml2 has no loader per parser context, and the entity loader
// is process-wide; the hook, though, is kept per thread. It is set for the length of each call into
// the parser and put back after it, so parses on other threads and other users of libxml2 in the
// process are untouched.
xmlParserInputBufferPtr refuse_resource(const char* /*uri*/, xmlCharEncoding /*encoding*/) { return nullptr; }

class RefuseExternalResources {
public:
    RefuseExternalResources() : previous_(xmlParserInputBufferCreateFilenameDefault(&refuse_resource)) {}
    ~RefuseExternalResources() { xmlParserInputBufferCreateFilenameDefault(previous_); }
    RefuseExternalResources(const RefuseExternalResources&) = delete;
    RefuseExternalResources& operator=(const RefuseExternalResources&) = delete;

private:
    xmlParserInputBufferCreateFilenameFunc previous_;
};

// libxml2 tells the encoding from the first four bytes; they are handed over together.
constexpr std::size_t kEncodingBytes = 4;
constexpr std::size_t kLargestChunk = std::size_t{1} << 30;
// What an element produced by an entity counts towards the expansion bound, beside its name.
constexpr std::uint64_t kElementCost = 8;

// The entity whose reference ends just before the parser's position, as the parser stands after
// reading "&name;"; "" when the input does not end so.
std::string referenced_entity(const xmlParserCtxt* context) {
    const xmlParserInput* input = context != nullptr ? context->input : nullptr;
    if (input == nullptr || input->base == nullptr || input->cur == nullptr || input->cur <= input->base ||
        input->cur[-1] != ';')
        return {};
    const xmlChar* end = input->cur - 1;
    const xmlChar* start = end;
    constexpr std::ptrdiff_t kLongestShown = 200;
    while (start > input->base && end - start < kLongestShown && start[-1] != '&' && start[-1] != ';' &&
           start[-1] > ' ')
        --start;
    if (start == end || start == input->base || start[-1] != '&') return {};
    return std::string(chars(start), static_cast<std::size_t>(end - start));
}

}  // namespace

PushParser::PushParser(std::string source, const ParserSettings& settings)
    : PushParser(std::move(source), settings, nullptr) {}

PushParser::PushParser(std::string source, const ParserSettings& settings, SaxHandler& handler)
    : PushParser(std::move(source), settings, &handler) {}

PushParser::PushParser(std::string source, const ParserSettings& settings, SaxHandler* handler)
    : source_(std::move(source)), limits_(ParserLimits::of(settings)), handler_(handler) {
    libxml2::ensure_initialised();
    // libxml2's tree builder handles the prolog and the entities on both paths; the content goes
    // through this class, which enforces the limits and then builds the tree or streams the events.
    xmlSAXHandler sax;
    std::memset(&sax, 0, sizeof sax);
    xmlSAXVersion(&sax, 2);
    sax.startElementNs = &PushParser::on_start;
    sax.endElementNs = &PushParser::on_end;
    sax.characters = &PushParser::on_text;
    sax.ignorableWhitespace = &PushParser::on_text;
    sax.cdataBlock = &PushParser::on_cdata;
    sax.getEntity = &PushParser::on_entity;
    // Errors reach this parser only, through its context, never a process-wide handler.
    sax.serror = &PushParser::on_error;
    sax.warning = nullptr;
    sax.error = nullptr;
    sax.fatalError = nullptr;
    if (handler_ != nullptr) {
        sax.comment = nullptr;
        sax.processingInstruction = nullptr;
        sax.reference = nullptr;
    }
    {
        libxml2::ErrorScope stray_messages;
        context_ = xmlCreatePushParserCtxt(&sax, nullptr, nullptr, 0, source_.c_str());
    }
    if (context_ == nullptr) throw std::bad_alloc();
    // The callbacks find this parser through the context, also in the contexts libxml2 makes to
    // parse the replacement text of entities (they inherit _private).
    context_->_private = this;
    xmlCtxtUseOptions(context_, options(settings));
}

PushParser::~PushParser() {
    if (context_ == nullptr) return;
    if (context_->myDoc != nullptr) xmlFreeDoc(context_->myDoc);
    context_->myDoc = nullptr;
    xmlFreeParserCtxt(context_);
}

PushParser* PushParser::of(void* context) {
    auto* parser_context = static_cast<xmlParserCtxt*>(context);
    return parser_context != nullptr ? static_cast<PushParser*>(parser_context->_private) : nullptr;
}

const char* PushParser::intern(std::string_view name) {
    const xmlChar* interned = xmlDictLookup(context_->dict, reinterpret_cast<const xmlChar*>(name.data()),
                                            static_cast<int>(name.size()));
    if (interned == nullptr) throw std::bad_alloc();
    return chars(interned);
}

bool PushParser::feed(const char* data, std::size_t size) {
    if (stopped_ || finished_) return !stopped_;
    if (!started_) {
        if (head_.size() + size < kEncodingBytes) {
            head_.append(data, size);
            return true;
        }
        started_ = true;
        if (!head_.empty()) {
            const std::size_t take = kEncodingBytes - head_.size();
            head_.append(data, take);
            data += take;
            size -= take;
            parse(head_.data(), static_cast<int>(head_.size()), false);
            head_.clear();
        }
    }
    while (size > 0 && !stopped_) {
        const std::size_t n = std::min(size, kLargestChunk);
        parse(data, static_cast<int>(n), false);
        data += n;
        size -= n;
    }
    return !stopped_;
}

void PushParser::finish() {
    if (stopped_ || finished_) return;
    finished_ = true;
    started_ = true;
    parse(head_.data(), static_cast<int>(head_.size()), true);
    head_.clear();
}

libxml2::DocPtr PushParser::take_document() {
    libxml2::DocPtr doc(context_->myDoc);
    context_->myDoc = nullptr;
    return doc;
}

void PushParser::parse(const char* data, int size, bool terminate) {
    {
        libxml2::ErrorScope stray_messages;  // I/O messages that bypass the context
        RefuseExternalResources refuse;
        xmlParseChunk(context_, data, size, terminate ? 1 : 0);
    }
    check(terminate);
}

void PushParser::check(bool terminate) {
    if (handler_failure_) {
        const std::exception_ptr failure = std::exchange(handler_failure_, nullptr);
        try {
            std::rethrow_exception(failure);
        } catch (const std::bad_alloc&) {
            vxErrMsgId(TOLVEN::io::xml::common::OutOfMemory(source_));
        }
    }
    if (limit_) raise(*limit_);
    if (stopped_) return;
    if (out_of_memory_) vxErrMsgId(TOLVEN::io::xml::common::OutOfMemory(source_));
    // libxml2 may also halt without a fatal error (when its tree builder meets a limit): a halt before
    // the end is a fault too.
    const bool halted = context_->disableSAX != 0 || (!terminate && context_->instate == XML_PARSER_EOF);
    if (context_->wellFormed && !halted) return;
    raise(first_fatal_   ? *first_fatal_
          : first_error_ ? *first_error_
                         : located("the parser stopped without a message"));
}

void PushParser::raise(const Failure& failure) const {
    vxErrMsgId(TOLVEN::io::xml::common::MalformedDocument(source_, std::to_string(failure.line),
                                                          std::to_string(failure.column), failure.message));
}

PushParser::Failure PushParser::located(std::string message) const {
    const xmlParserInput* input = context_->input;
    return {input != nullptr ? input->line : 0, input != nullptr ? input->col : 0, std::move(message)};
}

void PushParser::on_error(void* data, xmlErrorPtr error) {
    if (error == nullptr || (error->level != XML_ERR_FATAL && error->level != XML_ERR_ERROR)) return;
    if (error->code == XML_ERR_USER_STOP) return;
    auto* context = static_cast<xmlParserCtxt*>(error->ctxt != nullptr ? error->ctxt : data);
    PushParser* self = of(context);
    if (self == nullptr) return;
    // Faults inside the replacement text of an entity are reported at its reference in the document.
    Failure failure = context == self->context_ ? Failure{error->line, error->int2, {}} : self->located({});
    failure.message = user_message(*error, self->limits_, referenced_entity(self->context_));
    if (error->code == XML_ERR_NO_MEMORY && failure.message != text_message(self->limits_)) self->out_of_memory_ = true;
    auto& slot = error->level == XML_ERR_FATAL ? self->first_fatal_ : self->first_error_;
    if (!slot) slot = std::move(failure);
}

void PushParser::halt(xmlParserCtxt* context) {
    xmlStopParser(context);
    if (context != context_) xmlStopParser(context_);
}

void PushParser::fail(xmlParserCtxt* context, std::string message, bool at_text_start) {
    if (!limit_)
        limit_ = at_text_start ? Failure{static_cast<int>(text_line_), static_cast<int>(text_column_), std::move(message)}
                               : located(std::move(message));
    halt(context);
}

void PushParser::settle() {
    if (measuring_ == nullptr) return;
    entity_bytes_[measuring_] = produced_ - measure_from_;
    measuring_ = nullptr;
}

bool PushParser::charge(xmlParserCtxt* context, const xmlEntity& entity) {
    // Every reference in the document's content costs what libxml2 charges a copy of the entity in a
    // tree (its length and 5), or what its first expansion produced when that was more. Both paths
    // charge alike, whether libxml2 copies the expansion (trees) or parses it again (streams), and
    // at least as much as libxml2 does, so this bound is met first, at the same reference, on both.
    settle();
    std::uint64_t cost = static_cast<std::uint64_t>(entity.length) + 5;
    if (const auto known = entity_bytes_.find(&entity); known != entity_bytes_.end()) {
        cost = std::max(cost, known->second);
    } else {
        measuring_ = &entity;
        measure_from_ = produced_;
    }
    expanded_ += cost;
    if (limits_.huge || expanded_ < ParserLimits::kExpansionAllowance) return true;
    // The document parsed so far, counted as libxml2 counts it for its own bound.
    const xmlParserInput* input = context_->input;
    std::uint64_t parsed = context_->sizeentities;
    if (input != nullptr && input->cur != nullptr && input->base != nullptr)
        parsed += input->consumed + static_cast<std::uint64_t>(input->cur - input->base);
    if (expanded_ < ParserLimits::kExpansionRatio * parsed) return true;
    fail(context, expansion_message(referenced_entity(context_)));
    return false;
}

void PushParser::produce(xmlParserCtxt* context, std::uint64_t bytes) {
    if (context != context_) produced_ += bytes;
    else if (measuring_ != nullptr) settle();
}

bool PushParser::enter(xmlParserCtxt* context, const xmlChar* local) {
    if (++depth_ > limits_.depth) {
        fail(context, depth_message(limits_));
        return false;
    }
    produce(context, context != context_ ? kElementCost + std::strlen(chars(local)) : 0);
    leave_text();
    return true;
}

void PushParser::leave(xmlParserCtxt* context) {
    --depth_;
    produce(context, 0);
    leave_text();
}

void PushParser::leave_text() {
    text_run_ = 0;
    if (const xmlParserInput* input = context_->input) {
        text_line_ = input->line;
        text_column_ = input->col;
    }
}

bool PushParser::characters(xmlParserCtxt* context, int length) {
    const auto bytes = static_cast<std::uint64_t>(length);
    produce(context, bytes);
    // The text of entities is bounded by the expansion limit, the document's own by the text limit.
    if (context != context_) return true;
    text_run_ += bytes;
    if (text_run_ <= limits_.text_bytes) return true;
    fail(context, text_message(limits_), true);
    return false;
}

template <class Call>
void PushParser::deliver(xmlParserCtxt* context, Call call) {
    try {
        if (!call()) {
            stopped_ = true;
            halt(context);
        }
    } catch (...) {
        handler_failure_ = std::current_exception();
        halt(context);
    }
}

xmlEntityPtr PushParser::on_entity(void* context, const xmlChar* name) {
    xmlEntityPtr entity = xmlSAX2GetEntity(context, name);
    PushParser* self = of(context);
    if (self == nullptr || entity == nullptr || context != self->context_) return entity;
    // References in the content, not in attribute values (bounded by their length) nor in the DTD.
    if (self->context_->instate != XML_PARSER_CONTENT || entity->etype != XML_INTERNAL_GENERAL_ENTITY) return entity;
    return self->charge(self->context_, *entity) ? entity : nullptr;
}

void PushParser::on_start(void* context, const xmlChar* local, const xmlChar* prefix, const xmlChar* uri,
                          int namespace_count, const xmlChar** namespaces, int attribute_count, int defaulted,
                          const xmlChar** attributes) {
    PushParser* self = of(context);
    auto* parser_context = static_cast<xmlParserCtxt*>(context);
    if (self == nullptr || !self->enter(parser_context, local)) return;
    if (self->handler_ == nullptr) {
        xmlSAX2StartElementNs(context, local, prefix, uri, namespace_count, namespaces, attribute_count, defaulted,
                              attributes);
        return;
    }
    // A prefix bound to no namespace (an error libxml2 recovers from): the tree names the node by the
    // whole "p:name", in no namespace, and so do the events, so that every path sees the same names.
    if (prefix != nullptr && uri == nullptr) {
        if (const xmlChar* whole = self->qualified(prefix, local)) {
            local = whole;
            prefix = nullptr;
        }
    }
    for (int i = 0; i < attribute_count; ++i) {
        if (attributes[5 * i + 1] == nullptr || attributes[5 * i + 2] != nullptr) continue;
        auto& renamed = self->renamed_attributes_;
        renamed.assign(attributes, attributes + 5 * attribute_count);
        for (int j = i; j < attribute_count; ++j) {
            const xmlChar** a = renamed.data() + 5 * j;
            if (a[1] == nullptr || a[2] != nullptr) continue;
            if (const xmlChar* whole = self->qualified(a[1], a[0])) {
                a[0] = whole;
                a[1] = nullptr;
            }
        }
        attributes = renamed.data();
        break;
    }
    self->deliver(parser_context, [&] {
        return self->handler_->start_element(ElementEvent{chars(local), chars(uri), attribute_count, attributes,
                                                                 chars(prefix), namespace_count, namespaces});
    });
}

// Interned as intern() interns it, so that it is the pointer a name looked up as text gives
// (xmlDictQLookup keeps an entry of its own).
const xmlChar* PushParser::qualified(const xmlChar* prefix, const xmlChar* local) {
    std::string name = chars(prefix);
    name += ':';
    name += chars(local);
    return reinterpret_cast<const xmlChar*>(intern(name));
}

void PushParser::on_end(void* context, const xmlChar* local, const xmlChar* prefix, const xmlChar* uri) {
    PushParser* self = of(context);
    auto* parser_context = static_cast<xmlParserCtxt*>(context);
    if (self == nullptr) return;
    self->leave(parser_context);
    if (self->handler_ == nullptr) xmlSAX2EndElementNs(context, local, prefix, uri);
    else self->deliver(parser_context, [&] { return self->handler_->end_element(); });
}

void PushParser::on_text(void* context, const xmlChar* text, int length) {
    PushParser* self = of(context);
    auto* parser_context = static_cast<xmlParserCtxt*>(context);
    if (self == nullptr || !self->characters(parser_context, length)) return;
    if (self->handler_ == nullptr) {
        xmlSAX2Characters(context, text, length);
        return;
    }
    self->deliver(parser_context, [&] {
        return self->handler_->text(std::string_view(chars(text), static_cast<std::size_t>(length)));
    });
}

void PushParser::on_cdata(void* context, const xmlChar* text, int length) {
    PushParser* self = of(context);
    if (self == nullptr) return;
    if (self->handler_ != nullptr) on_text(context, text, length);
    else if (self->characters(static_cast<xmlParserCtxt*>(context), length)) xmlSAX2CDataBlock(context, text, length);
}

namespace {

// Stops at the first element: enough to know the input starts like a document.
class FirstElement : public SaxHandler {
public:
    bool start_element(const ElementEvent&) override { return false; }
    bool end_element() override { return false; }
    bool text(std::string_view) override { return true; }
};

}  // namespace

void check_document_start(std::string_view head, const std::string& source, const ParserSettings& settings) {
    FirstElement first;
    PushParser parser(source, settings, first);
    parser.feed(head.data(), head.size());
}

}  // namespace tolven::io::xml::common::parser
