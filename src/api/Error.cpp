#include "tolven/error.hpp"

#include "host/MessageCatalog.hpp"

namespace tolven::xml {

Error::Error(std::string identifier, std::vector<std::string> arguments, std::string message)
    : std::runtime_error(message),
      identifier_(std::move(identifier)),
      arguments_(std::move(arguments)),
      message_(std::move(message)) {}

bool Error::input_error() const noexcept {
    return identifier_ == "TOLVEN:io:xml:common:FileNotReadable" ||
           identifier_ == "TOLVEN:io:xml:common:MalformedDocument";
}

std::string format_message(const std::string& identifier, const std::vector<std::string>& arguments) {
    return host::format_message(identifier, arguments);
}

}  // namespace tolven::xml
