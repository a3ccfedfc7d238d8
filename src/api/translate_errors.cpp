#include "api/translate_errors.hpp"

#include <exception>
#include <new>

#include "host/MessageCatalog.hpp"
#include "host/except/Exception.hpp"
#include "tolven/error.hpp"

namespace tolven::api {

void rethrow_translated() {
    try {
        throw;
    } catch (const xml::Error&) {
        throw;
    } catch (const foundation::core::except::IMsgIDException& error) {
        throw xml::Error(error.GetID(), error.GetBaseMsgIDObj().arguments_utf8(), error.message_utf8());
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& error) {
        // Anything else escaping the library is a fault of its own; say so with the usual identifier.
        const std::string identifier = "TOLVEN:io:xml:common:Internal";
        std::vector<std::string> arguments{error.what()};
        std::string message = host::format_message(identifier, arguments);
        throw xml::Error(identifier, std::move(arguments), std::move(message));
    }
}

}  // namespace tolven::api
