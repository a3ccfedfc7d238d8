#include "xml/vcos/load_document.hpp"

#include <fcntl.h>
#include <libxml/parser.h>
#include <libxml/xmlIO.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstring>
#include <new>
#include <optional>
#include <utility>

#include "host/except/Exception.hpp"
#include "host/utf.hpp"
#include "xml/errors.hpp"
#include "xml/libxml2/ErrorScope.hpp"

namespace tolven::io::xml::common::vcos {

namespace {

// How every document is parsed. Internal entities are substituted (NOENT), which would also
// pull in external ones: RefuseExternalResources below turns every such load down, and
// NONET keeps the network out even before that. No DTD is loaded (no DTDLOAD, DTDATTR or
// DTDVALID), CDATA sections stay CDATA nodes (no NOCDATA) and blanks stay as they are.
// BIG_LINES keeps line numbers past 65535 exact. HUGE stays off on purpose: in this libxml2 it
// also lifts the guard against entity expansion bombs (a ten-level bomb then parses for minutes).
// Without it a document may still be of any size; only one text node is capped at 10 MB and
// element nesting at 256 levels.
constexpr int kParseOptions = XML_PARSE_NOENT | XML_PARSE_NONET | XML_PARSE_BIG_LINES;

// The first fatal error of one parse.
struct ParseFailure {
    int line = 0;
    int column = 0;
    std::string message;
};

struct ParseErrors {
    std::optional<ParseFailure> first_fatal;
    std::optional<ParseFailure> first_error;
};

// The parse runs on this thread only, so the context's error callback finds its collector here.
thread_local ParseErrors* current_errors = nullptr;

void collect_parse_error(void* /*context*/, xmlErrorPtr error) {
    if (current_errors == nullptr || error == nullptr) return;
    if (error->level != XML_ERR_FATAL && error->level != XML_ERR_ERROR) return;
    auto& slot = error->level == XML_ERR_FATAL ? current_errors->first_fatal : current_errors->first_error;
    if (slot) return;
    slot = ParseFailure{error->line, error->int2, libxml2::trim(error->message ? error->message : "")};
}

// Every external resource a document names (external entities, external parameter entities)
// is opened through this thread's input-buffer hook; while a parse runs it opens nothing.
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

struct ParserContextDeleter {
    void operator()(xmlParserCtxt* context) const noexcept { xmlFreeParserCtxt(context); }
};

// Runs one parse with read(context) on a fresh parser context whose errors are collected, not printed.
// Raises MalformedDocument when the document is not well-formed.
template <class Read>
libxml2::DocPtr parse(const std::string& source, Read read) {
    libxml2::ensure_initialised();
    std::unique_ptr<xmlParserCtxt, ParserContextDeleter> context(xmlNewParserCtxt());
    if (!context) throw std::bad_alloc();
    context->sax->serror = &collect_parse_error;

    ParseErrors errors;
    libxml2::DocPtr doc;
    {
        libxml2::ErrorScope stray_messages;  // I/O warnings that bypass the context
        RefuseExternalResources refuse;
        ParseErrors* previous = std::exchange(current_errors, &errors);
        doc.reset(read(context.get()));
        current_errors = previous;
    }
    if (doc && context->wellFormed) return doc;
    doc.reset();

    ParseFailure failure = errors.first_fatal ? *errors.first_fatal
                           : errors.first_error ? *errors.first_error
                                                : ParseFailure{0, 0, "the parser gave no document"};
    vxErrMsgId(TOLVEN::io::xml::common::MalformedDocument(source, std::to_string(failure.line),
                                                          std::to_string(failure.column), failure.message));
}

libxml2::DocPtr parse_descriptor(int fd, const std::string& source, const char* url) {
    return parse(source, [&](xmlParserCtxt* context) {
        return xmlCtxtReadFd(context, fd, url, nullptr, kParseOptions);
    });
}

class FileDescriptor {
public:
    explicit FileDescriptor(int fd) : fd_(fd) {}
    ~FileDescriptor() {
        if (fd_ >= 0) ::close(fd_);
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    int get() const noexcept { return fd_; }

private:
    int fd_;
};

[[noreturn]] void raise_not_readable(const std::string& path, int error_number) {
    vxErrMsgId(TOLVEN::io::xml::common::FileNotReadable(path, std::string(std::strerror(error_number))));
}

}  // namespace

std::shared_ptr<DocWrapper> load_document(const std::string& path) {
    if (path == "-") {
        const std::string source = "<stdin>";
        auto doc = parse_descriptor(STDIN_FILENO, source, nullptr);
        return std::make_shared<DocWrapper>(fl::i18n::utf8_to_ustring(source), std::move(doc));
    }

    // Reading through the descriptor streams the file into the parser: no copy of it is made.
    FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (file.get() < 0) raise_not_readable(path, errno);
    struct stat status {};
    if (::fstat(file.get(), &status) != 0) raise_not_readable(path, errno);
    if (S_ISDIR(status.st_mode)) raise_not_readable(path, EISDIR);

    auto doc = parse_descriptor(file.get(), path, path.c_str());
    return std::make_shared<DocWrapper>(fl::i18n::utf8_to_ustring(path), std::move(doc));
}

std::shared_ptr<DocWrapper> load_document_from_memory(std::string_view content, const std::string& source) {
    if (content.size() > static_cast<std::size_t>(INT_MAX)) {
        vxErrMsgId(TOLVEN::io::xml::common::FileNotReadable(source, std::string(std::strerror(EFBIG))));
    }
    auto doc = parse(source, [&](xmlParserCtxt* context) {
        return xmlCtxtReadMemory(context, content.data(), static_cast<int>(content.size()), source.c_str(), nullptr,
                                 kParseOptions);
    });
    return std::make_shared<DocWrapper>(fl::i18n::utf8_to_ustring(source), std::move(doc));
}

}  // namespace tolven::io::xml::common::vcos
