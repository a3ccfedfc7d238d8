#include "host/MessageCatalog.hpp"

#include <algorithm>

#include "host/except/MsgID.hpp"

namespace tolven::host {

namespace {
#define TOLVEN_MESSAGE(COMPONENT, NAME, ARGC, TEXT) {TOLVEN_COMPONENT_##COMPONENT ":" #NAME, ARGC, TEXT},
constexpr CatalogEntry kCatalog[] = {
#include "host/messages.def"
};
#undef TOLVEN_MESSAGE
}  // namespace

std::span<const CatalogEntry> all_messages() noexcept { return kCatalog; }

std::optional<CatalogEntry> find_message(std::string_view identifier) noexcept {
    auto it = std::find_if(std::begin(kCatalog), std::end(kCatalog),
                           [&](const CatalogEntry& e) { return e.identifier == identifier; });
    if (it == std::end(kCatalog)) return std::nullopt;
    return *it;
}

std::string format_message(std::string_view identifier, const std::vector<std::string>& arguments) {
    const auto entry = find_message(identifier);
    if (!entry) {
        std::string out(identifier);
        for (const auto& a : arguments) out += " '" + a + "'";
        return out;
    }
    std::string out;
    const std::string_view text = entry->text;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '{') {
            const std::size_t close = text.find('}', i);
            if (close != std::string_view::npos && close > i + 1) {
                const std::string_view digits = text.substr(i + 1, close - i - 1);
                if (std::all_of(digits.begin(), digits.end(), [](char c) { return c >= '0' && c <= '9'; })) {
                    const std::size_t k = std::stoul(std::string(digits));
                    if (k >= 1 && k <= arguments.size()) out += arguments[k - 1];
                    i = close;
                    continue;
                }
            }
        }
        out += text[i];
    }
    return out;
}

}  // namespace tolven::host
