#include "tables/CandidateHint.hpp"

#include <array>
#include <string_view>

#include "host/String.hpp"
#include "host/utf.hpp"

namespace tolven::tables {

namespace {

namespace hs = Harnvale::String;

constexpr std::array<const char*, 6> kHintFields{"TableNodeName", "RowNodeName", "VariableNodeNames",
                                                 "TableSelector", "RowSelector", "VariableSelectors"};

vxArrayPtr text(std::string_view value) {
    return hs::make_String(hs::createStringArray(fl::i18n::utf8_to_ustring(std::string(value))));
}

vxArrayPtr list(const std::vector<std::string>& values) {
    std::vector<std::u16string> texts;
    for (const auto& v : values) texts.push_back(fl::i18n::utf8_to_ustring(v));
    return hs::make_String(hs::createStringArray(texts));
}

void set(vxArray* hints, const char* field, vxArrayPtr value) {
    vxAddField(hints, field);
    vxSetField(hints, 0, field, value.release());
}

// The first element of a text or list field, "" when there is none.
bool given(const vxArray* value) {
    const hs::StringPtr s = hs::getString(value);
    if (s) return s->numel() > 0 && s->at(0).has_value() && !s->at(0)->empty();
    return value != nullptr && vxGetClassID(value) == vxClassID::Char && vxGetNumberOfElements(value) > 0;
}

}  // namespace

std::vector<std::string> CandidateHint::words() const {
    std::vector<std::string> out;
    const char* option = kind == Kind::TableSelector       ? "--table-selector"
                         : kind == Kind::RowSelector       ? "--row-selector"
                         : kind == Kind::VariableSelectors ? "--variable-selectors"
                                                           : nullptr;
    if (option == nullptr) return out;
    for (const auto& v : values) {
        out.emplace_back(option);
        out.push_back(v);
    }
    return out;
}

vxArrayPtr with_hint(const vxArray* hints, const CandidateHint& hint) {
    vxArrayPtr copy = do_create_struct();
    for (std::size_t i = 0; i < vxGetNumberOfFields(hints); ++i) {
        const char* name = vxGetFieldNameByNumber(hints, i);
        vxAddField(copy.get(), name);
        if (const vxArray* value = vxGetField(hints, 0, name)) vxSetField(copy.get(), 0, name, vxShareArray(value));
    }
    using Kind = CandidateHint::Kind;
    const std::string first = hint.values.empty() ? std::string() : hint.values.front();
    set(copy.get(), "TableNodeName", text(""));
    set(copy.get(), "RowNodeName", text(""));
    set(copy.get(), "VariableNodeNames", list({}));
    set(copy.get(), "TableSelector", text(hint.kind == Kind::TableSelector ? first : ""));
    set(copy.get(), "RowSelector", text(hint.kind == Kind::RowSelector ? first : ""));
    set(copy.get(), "VariableSelectors", list(hint.kind == Kind::VariableSelectors ? hint.values : std::vector<std::string>{}));
    return copy;
}

bool has_detection_hint(const vxArray* hints) {
    for (const char* field : kHintFields)
        if (given(vxGetField(hints, 0, field))) return true;
    return false;
}

}  // namespace tolven::tables
