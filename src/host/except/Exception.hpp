#pragma once
// The exception framework: every user-facing failure is an exception carrying a message-identifier record.

#include <exception>
#include <string>
#include <utility>
#include <vector>

#include "host/except/MsgID.hpp"

namespace foundation::core::except {

class IUserException {
public:
    virtual ~IUserException() = default;
    // A heap copy of the same dynamic type.
    virtual IUserException* clone() const = 0;
    // Throws a copy of the same dynamic type.
    [[noreturn]] virtual void rethrow() const = 0;
    // The full identifier, such as "TOLVEN:io:xml:detection:RowSelectorNotNodeSet".
    virtual std::string GetID() const = 0;
    // The catalog text with the arguments filled in.
    virtual std::u16string GetUnicodeMessageTxt() const = 0;
};

class IMsgIDException : public IUserException {
public:
    // component ":" name of a record.
    static std::string get_error_id(const MsgID& record);
    // The catalog text of record with its arguments filled in, as UTF-8.
    static std::string message_text(const MsgID& record);

    virtual const MsgID& GetBaseMsgIDObj() const = 0;
    std::string GetID() const override;
    std::u16string GetUnicodeMessageTxt() const override;
    // The catalog text as UTF-8.
    std::string message_utf8() const;
};

template <class T, class Base = std::exception, class X = void>
class Exception : public IMsgIDException, public Base {
public:
    explicit Exception(T record) : record_(std::move(record)), what_(IMsgIDException::message_text(record_)) {}

    Exception* clone() const override { return new Exception(*this); }
    [[noreturn]] void rethrow() const override { throw *this; }
    const char* what() const noexcept override { return what_.c_str(); }
    const MsgID& GetBaseMsgIDObj() const override { return record_; }
    const T& record() const noexcept { return record_; }

private:
    T record_;
    std::string what_;
};

}  // namespace foundation::core::except

namespace matrix::detail {
// Reports an error to the host: rethrows it through its virtual rethrow(), so the host
// boundary (the command line, tests) catches it with its identifier and arguments.
[[noreturn]] void do_legacy_vx_error(const foundation::core::except::IUserException& error);
}  // namespace matrix::detail

// Raises the message-identified error of record through the host's error path. Never returns.
template <class T>
[[noreturn]] void vxErrMsgId(const T& record) {
    foundation::core::except::Exception<T, std::exception, void> error(record);
    (void)foundation::core::except::IMsgIDException::get_error_id(record);
    matrix::detail::do_legacy_vx_error(error);
    throw error;  // not reached: the host's error path does not come back
}
