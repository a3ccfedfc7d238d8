#include "cli/import/StreamReader.hpp"

#include <new>

#include "host/except/Exception.hpp"
#include "xml/errors.hpp"

namespace tolven::cli::import {

namespace {

// As for trees: internal entities substituted, nothing fetched from the network, no DTD loaded,
// CDATA kept, no size limits, exact line numbers past 65535.
constexpr int kParseOptions = XML_PARSE_NOENT | XML_PARSE_NONET | XML_PARSE_HUGE | XML_PARSE_BIG_LINES;

// External entities are opened through this hook; while a document streams it opens nothing.
xmlParserInputBufferPtr refuse_resource(const char* /*uri*/, xmlCharEncoding /*encoding*/) { return nullptr; }

}  // namespace

StreamReader::StreamReader(InputDocument& input) : input_(input) {
    io::xml::common::libxml2::ensure_initialised();
    previous_loader_ = xmlParserInputBufferCreateFilenameDefault(&refuse_resource);
    reader_ = xmlReaderForIO(&StreamReader::read, nullptr, this, input_.source().c_str(), nullptr, kParseOptions);
    if (reader_ == nullptr) {
        xmlParserInputBufferCreateFilenameDefault(previous_loader_);
        throw std::bad_alloc();
    }
    xmlTextReaderSetStructuredErrorHandler(reader_, &StreamReader::on_error, this);
}

StreamReader::~StreamReader() {
    xmlFreeTextReader(reader_);
    xmlParserInputBufferCreateFilenameDefault(previous_loader_);
}

bool StreamReader::next() {
    const int result = xmlTextReaderRead(reader_);
    if (result == 1) return true;
    if (input_failure_) std::rethrow_exception(input_failure_);
    if (result == 0 && !first_fatal_) return false;
    const Failure failure = first_fatal_ ? *first_fatal_
                            : first_error_ ? *first_error_
                                           : Failure{0, 0, "the reader stopped without a message"};
    vxErrMsgId(TOLVEN::io::xml::common::MalformedDocument(input_.source(), std::to_string(failure.line),
                                                          std::to_string(failure.column), failure.message));
}

int StreamReader::read(void* self, char* buffer, int size) {
    auto* reader = static_cast<StreamReader*>(self);
    try {
        return static_cast<int>(reader->input_.read(buffer, static_cast<std::size_t>(size)));
    } catch (...) {
        // Exceptions must not cross libxml2's C frames: keep it for next() to raise.
        reader->input_failure_ = std::current_exception();
        return -1;
    }
}

void StreamReader::on_error(void* self, xmlErrorPtr error) {
    auto* reader = static_cast<StreamReader*>(self);
    if (error == nullptr || (error->level != XML_ERR_FATAL && error->level != XML_ERR_ERROR)) return;
    auto& slot = error->level == XML_ERR_FATAL ? reader->first_fatal_ : reader->first_error_;
    if (slot) return;
    slot = Failure{error->line, error->int2,
                   io::xml::common::libxml2::trim(error->message != nullptr ? error->message : "")};
}

}  // namespace tolven::cli::import
