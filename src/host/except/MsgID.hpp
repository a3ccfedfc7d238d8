#pragma once
// Message-identifier records: the component, the name and the text arguments of one user-facing message.

#include <cstddef>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace foundation::core::except {

// One message argument: narrow (UTF-8) or UTF-16 text.
using MessageArgument = std::variant<std::string, std::u16string>;

inline MessageArgument make_argument(const char* text) { return std::string(text); }
inline MessageArgument make_argument(std::string text) { return text; }
inline MessageArgument make_argument(const char16_t* text) { return std::u16string(text); }
inline MessageArgument make_argument(std::u16string text) { return text; }

class MsgID {
public:
    MsgID(std::string component, std::string name, std::vector<MessageArgument> arguments)
        : arguments_(std::move(arguments)), component_(std::move(component)), name_(std::move(name)) {}

    const std::vector<MessageArgument>& arguments() const noexcept { return arguments_; }
    const std::string& component() const noexcept { return component_; }
    const std::string& name() const noexcept { return name_; }
    // The arguments as UTF-8 text, in order.
    std::vector<std::string> arguments_utf8() const;

private:
    std::vector<MessageArgument> arguments_;
    std::string component_;
    std::string name_;
};

}  // namespace foundation::core::except

// Declares the record type NAME of one identifier with ARGC arguments; constructing it
// with the wrong number of arguments does not compile.
#define TOLVEN_DECLARE_MSGID(COMPONENT, NAME, ARGC)                                                   \
    struct NAME : ::foundation::core::except::MsgID {                                                \
        template <class... Args>                                                                     \
        explicit NAME(Args&&... args)                                                                \
            : MsgID(COMPONENT, #NAME,                                                                \
                    {::foundation::core::except::make_argument(std::forward<Args>(args))...}) {      \
            static_assert(sizeof...(Args) == (ARGC), "wrong number of arguments for " #NAME);        \
        }                                                                                            \
    };

#define TOLVEN_COMPONENT_DETECTION "TOLVEN:io:xml:detection"
#define TOLVEN_COMPONENT_COMMON "TOLVEN:io:xml:common"
#define TOLVEN_COMPONENT_STRING "TOLVEN:string"
#define TOLVEN_COMPONENT_IMPORT "TOLVEN:import"
#define TOLVEN_COMPONENT_CLI "TOLVEN:cli"
