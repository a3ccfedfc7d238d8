#pragma once
// A handler for tests of streaming parses: the events written as text.

#include <new>
#include <string>
#include <string_view>

#include "xml/parser/SaxHandler.hpp"

namespace tolven::test {

// Writes the events as text: <uri|prefix:local @name=value ... +declarations> for a start, / for an
// end, "text" for text.
class Recorder : public io::xml::common::parser::SaxHandler {
public:
    std::string log;
    const char* first_local = nullptr;
    int elements_until_stop = -1;  // start elements accepted before stopping (or throwing, with fail)
    bool fail = false;

    bool start_element(const io::xml::common::parser::ElementEvent& e) override {
        if (first_local == nullptr) first_local = e.local;
        if (elements_until_stop-- == 0) {
            if (fail) throw std::bad_alloc();
            return false;
        }
        log += std::string("<") + (e.uri != nullptr ? e.uri : "") + "|" +
               (e.prefix != nullptr ? std::string(e.prefix) + ":" : "") + e.local;
        for (int i = 0; i < e.attribute_count; ++i)
            log += " @" + std::string(e.attribute(i).local) + "=" + std::string(e.attribute(i).value);
        if (e.namespace_count > 0) log += " +" + std::to_string(e.namespace_count);
        log += ">";
        return true;
    }
    bool end_element() override {
        log += "/";
        return true;
    }
    bool text(std::string_view text) override {
        log += "\"" + std::string(text) + "\"";
        return true;
    }
};

}  // namespace tolven::test
