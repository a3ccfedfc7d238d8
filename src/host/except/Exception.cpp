#include "host/except/Exception.hpp"

#include <cstdlib>

#include "host/MessageCatalog.hpp"
#include "host/utf.hpp"

namespace foundation::core::except {

std::vector<std::string> MsgID::arguments_utf8() const {
    std::vector<std::string> out;
    out.reserve(arguments_.size());
    for (const auto& argument : arguments_) {
        if (const auto* narrow = std::get_if<std::string>(&argument)) out.push_back(*narrow);
        else out.push_back(fl::i18n::ustring_to_utf8(std::get<std::u16string>(argument)));
    }
    return out;
}

std::string IMsgIDException::get_error_id(const MsgID& record) { return record.component() + ":" + record.name(); }

std::string IMsgIDException::message_text(const MsgID& record) {
    return tolven::host::format_message(get_error_id(record), record.arguments_utf8());
}

std::string IMsgIDException::GetID() const { return get_error_id(GetBaseMsgIDObj()); }

std::string IMsgIDException::message_utf8() const { return message_text(GetBaseMsgIDObj()); }

std::u16string IMsgIDException::GetUnicodeMessageTxt() const { return fl::i18n::utf8_to_ustring(message_utf8()); }

}  // namespace foundation::core::except

namespace matrix::detail {
void do_legacy_vx_error(const foundation::core::except::IUserException& error) {
    error.rethrow();
    std::abort();  // rethrow() always throws; this only satisfies [[noreturn]]
}
}  // namespace matrix::detail
