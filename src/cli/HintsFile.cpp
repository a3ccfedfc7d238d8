#include "cli/HintsFile.hpp"

#include <nlohmann/json.hpp>

#include <cerrno>
#include <cstring>
#include <fstream>

#include "cli/errors.hpp"
#include "host/String.hpp"
#include "host/utf.hpp"

namespace tolven::cli {

namespace {

namespace hs = Harnvale::String;
using nlohmann::json;

[[noreturn]] void invalid(const std::string& path, const std::string& reason) {
    vxErrMsgId(TOLVEN::cli::InvalidHintsFile(path, reason));
}

bool is_pair_list(const json& value) {
    if (value.empty()) return false;
    for (const auto& row : value)
        if (!row.is_array() || row.size() != 2 || !row[0].is_string() || !row[1].is_string()) return false;
    return true;
}

vxArrayPtr to_array(const std::string& path, const std::string& field, const json& value) {
    if (value.is_string()) return hs::make_String(hs::createStringArray(fl::i18n::utf8_to_ustring(value.get<std::string>())));
    if (value.is_null()) {
        hs::StringPtr missing = hs::createStringArray(1, 1);
        missing->setMissing(0);
        return hs::make_String(missing);
    }
    if (value.is_boolean()) {
        vxArrayPtr logical = do_create_numeric(vxClassID::Logical, 1, 1);
        vxGetLogicals(logical.get())[0] = value.get<bool>();
        return logical;
    }
    if (value.is_number()) {
        vxArrayPtr number = do_create_numeric(vxClassID::Double, 1, 1);
        vxGetDoubles(number.get())[0] = value.get<double>();
        return number;
    }
    if (value.is_array() && is_pair_list(value)) {
        hs::StringPtr pairs = hs::createStringArray(value.size(), 2);
        for (std::size_t r = 0; r < value.size(); ++r)
            for (std::size_t c = 0; c < 2; ++c) pairs->set(r, c, fl::i18n::utf8_to_ustring(value[r][c].get<std::string>()));
        return hs::make_String(pairs);
    }
    if (value.is_array()) {
        hs::StringPtr list = value.empty() ? hs::createStringArray(0, 0) : hs::createStringArray(1, value.size());
        for (std::size_t i = 0; i < value.size(); ++i) {
            if (value[i].is_null()) list->setMissing(i);
            else if (value[i].is_string()) list->set(i, fl::i18n::utf8_to_ustring(value[i].get<std::string>()));
            else invalid(path, "field \"" + field + "\" must be a list of strings or of [prefix, uri] pairs");
        }
        return hs::make_String(list);
    }
    invalid(path, "field \"" + field + "\" holds an object; use a string, a list, true/false, a number or null");
}

}  // namespace

vxArrayPtr read_hints_file(const std::string& path) {
    std::ifstream in(path);
    if (!in) invalid(path, std::strerror(errno));
    json document;
    try {
        document = json::parse(in);
    } catch (const json::parse_error& e) {
        invalid(path, std::string("not valid JSON (") + e.what() + ")");
    }
    if (!document.is_object()) invalid(path, "it must hold one JSON object whose fields are the hints");
    vxArrayPtr hints = do_create_struct();
    for (const auto& [name, value] : document.items()) {
        vxArrayPtr array = to_array(path, name, value);
        vxAddField(hints.get(), name.c_str());
        vxSetField(hints.get(), 0, name.c_str(), array.release());
    }
    return hints;
}

}  // namespace tolven::cli
