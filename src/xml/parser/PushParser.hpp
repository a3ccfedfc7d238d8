#pragma once
// libxml2's push parser, fed in chunks: builds a tree or streams events to a SaxHandler, with the
// options and limits of ParserSettings and errors in the user's words. Every document is parsed by
// this one class, so every path accepts, refuses and reports a document alike.

#include <libxml/parser.h>

#include <cstddef>
#include <cstdint>
#include <exception>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "xml/parser/ParserSettings.hpp"
#include "xml/parser/SaxHandler.hpp"
#include "xml/vcos/DocWrapper.hpp"

namespace tolven::io::xml::common::parser {

class PushParser {
public:
    // Builds a tree of the document; take_document() hands it over once finish() has returned.
    PushParser(std::string source, const ParserSettings& settings);
    // Streams the document's events to handler, which must outlive the parser; no tree is built.
    PushParser(std::string source, const ParserSettings& settings, SaxHandler& handler);
    ~PushParser();
    PushParser(const PushParser&) = delete;
    PushParser& operator=(const PushParser&) = delete;

    // Parses the next bytes of the document. Returns false once the handler has stopped the parse:
    // nothing more needs to be read. Raises "TOLVEN:io:xml:common:MalformedDocument" (source, line,
    // column, message) at the first fault or limit met, "TOLVEN:io:xml:common:OutOfMemory" (source)
    // when libxml2 or the handler runs out of memory, and rethrows whatever else the handler threw.
    bool feed(const char* data, std::size_t size);
    // The document has ended; raises as feed() does (a document that breaks off is malformed).
    void finish();
    // The tree, after finish(); tree mode only.
    libxml2::DocPtr take_document();

    // name interned in the parse's dictionary: the pointer events carry for that name.
    const char* intern(std::string_view name);
    const std::string& source() const noexcept { return source_; }

private:
    struct Failure {
        int line = 0;
        int column = 0;
        std::string message;
    };

    PushParser(std::string source, const ParserSettings& settings, SaxHandler* handler);

    static void on_start(void* context, const xmlChar* local, const xmlChar* prefix, const xmlChar* uri,
                         int namespace_count, const xmlChar** namespaces, int attribute_count, int defaulted,
                         const xmlChar** attributes);
    static void on_end(void* context, const xmlChar* local, const xmlChar* prefix, const xmlChar* uri);
    static void on_text(void* context, const xmlChar* text, int length);
    static void on_cdata(void* context, const xmlChar* text, int length);
    static void on_error(void* data, xmlErrorPtr error);
    static xmlEntityPtr on_entity(void* context, const xmlChar* name);
    static PushParser* of(void* context);

    void parse(const char* data, int size, bool terminate);
    void check(bool terminate);
    [[noreturn]] void raise(const Failure& failure) const;

    bool enter(xmlParserCtxt* context, const xmlChar* local);
    void leave(xmlParserCtxt* context);
    void leave_text();
    bool characters(xmlParserCtxt* context, int length);
    void produce(xmlParserCtxt* context, std::uint64_t bytes);
    bool charge(xmlParserCtxt* context, const xmlEntity& entity);
    void settle();
    // Ends the parse at a limit: the failure is reported at the reference for entity content.
    void fail(xmlParserCtxt* context, std::string message, bool at_text_start = false);
    void halt(xmlParserCtxt* context);
    // Calls the handler; it stops the parse when it returns false or throws.
    template <class Call>
    void deliver(xmlParserCtxt* context, Call call);
    Failure located(std::string message) const;
    // "prefix:local", interned.
    const xmlChar* qualified(const xmlChar* prefix, const xmlChar* local);

    std::string source_;
    ParserLimits limits_;
    SaxHandler* handler_;
    xmlParserCtxt* context_ = nullptr;
    std::string head_;  // the first bytes, held until the encoding can be told from them

    std::size_t depth_ = 0;       // elements open
    std::uint64_t text_run_ = 0;  // bytes of character data since the last tag
    // Where that character data starts. Wider than libxml2's two ints, so that they are read as two
    // loads: one load of both stalls on libxml2's two recent stores to them, on every tag.
    long text_line_ = 1;
    long text_column_ = 1;
    // Entity expansion: what references in the content have been charged, what the content of
    // entities has produced, and what each entity produced the first time it was expanded.
    std::uint64_t expanded_ = 0;
    std::uint64_t produced_ = 0;
    const xmlEntity* measuring_ = nullptr;
    std::uint64_t measure_from_ = 0;
    std::unordered_map<const xmlEntity*, std::uint64_t> entity_bytes_;

    bool started_ = false;
    bool stopped_ = false;  // by the handler
    bool finished_ = false;
    std::optional<Failure> limit_;        // a limit met
    std::optional<Failure> first_fatal_;  // libxml2's first fatal error
    std::optional<Failure> first_error_;
    bool out_of_memory_ = false;  // libxml2 could not allocate
    std::exception_ptr handler_failure_;
    std::vector<const xmlChar*> renamed_attributes_;  // an element's attributes, some renamed
};

// Parses head, the first bytes of a document, only far enough to see that it starts like one.
// Raises MalformedDocument as PushParser does (for endless junk, at once).
void check_document_start(std::string_view head, const std::string& source, const ParserSettings& settings);

}  // namespace tolven::io::xml::common::parser
