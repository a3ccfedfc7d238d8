#pragma once
// The boundary of the public interface: the library's own exceptions leave it as tolven::xml::Error.

#include <utility>

namespace tolven::api {

// Called inside a catch block: rethrows the exception being handled as tolven::xml::Error when it
// is a message-identified error of the library, or any other std::exception but std::bad_alloc
// (as "TOLVEN:io:xml:common:Internal"); rethrows everything else unchanged.
[[noreturn]] void rethrow_translated();

// Runs call and returns its result, with the library's errors translated.
template <class Call>
auto translating_errors(Call&& call) -> decltype(call()) {
    try {
        return std::forward<Call>(call)();
    } catch (...) {
        rethrow_translated();
    }
}

}  // namespace tolven::api
