#pragma once
// libxml2's streaming reader over an InputDocument, parsing as safely as the tree loader does.

#include <libxml/xmlreader.h>

#include <exception>
#include <memory>
#include <optional>
#include <string>

#include "cli/import/InputDocument.hpp"
#include "xml/libxml2/ErrorScope.hpp"

namespace tolven::cli::import {

class StreamReader {
public:
    // Starts reading input from the beginning (the prefix first).
    explicit StreamReader(InputDocument& input);
    ~StreamReader();
    StreamReader(const StreamReader&) = delete;
    StreamReader& operator=(const StreamReader&) = delete;

    // Moves to the next node; false at the end of the document.
    // Raises "TOLVEN:io:xml:common:MalformedDocument" (source, line, column, message) when the
    // document is not well-formed, and FileNotReadable when the input fails.
    bool next();
    int type() const { return xmlTextReaderNodeType(reader_); }
    // The node the reader is on; valid until the next call of next().
    const xmlNode* node() const { return xmlTextReaderCurrentNode(reader_); }
    bool empty_element() const { return xmlTextReaderIsEmptyElement(reader_) == 1; }
    const char* value() const { return reinterpret_cast<const char*>(xmlTextReaderConstValue(reader_)); }

private:
    struct Failure {
        int line = 0;
        int column = 0;
        std::string message;
    };
    static int read(void* self, char* buffer, int size);
    static void on_error(void* self, xmlErrorPtr error);

    InputDocument& input_;
    io::xml::common::libxml2::ErrorScope stray_messages_;
    xmlParserInputBufferCreateFilenameFunc previous_loader_;
    xmlTextReaderPtr reader_ = nullptr;
    std::exception_ptr input_failure_;
    std::optional<Failure> first_fatal_;
    std::optional<Failure> first_error_;
};

}  // namespace tolven::cli::import
