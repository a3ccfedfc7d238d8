#include "detection/options/make_detection_options.hpp"

#include <gtest/gtest.h>

#include "detection/support/detect_helpers.hpp"
#include "host/String.hpp"
#include "host/except/Exception.hpp"

namespace {

using tolven::io::xml::detection::options::make_detection_options;
using tolven::testing::HintFields;
using tolven::testing::make_hint_struct;
namespace hs = Harnvale::String;

vxArrayPtr with_field(const HintFields& fields, const char* name, vxArrayPtr value) {
    vxArrayPtr hints = make_hint_struct(fields);
    vxSetField(hints.get(), 0, name, value.release());
    return hints;
}

vxArrayPtr missing_string() {
    hs::StringPtr s = hs::createStringArray(1, 1);
    s->setMissing(0);
    return hs::make_String(s);
}

std::string error_id(const vxArray* hints) {
    try {
        make_detection_options(hints);
    } catch (const foundation::core::except::IMsgIDException& e) {
        return e.GetID();
    }
    return "";
}

TEST(make_detection_options, TextFieldsAcceptStringScalarsAndCharRowVectorsOnly) {
    struct Case {
        const char* what;
        vxArrayPtr (*make)();
        std::u16string expected;
    };
    const Case cases[] = {
        {"missing string", [] { return missing_string(); }, u""},
        {"char row vector", [] { return do_create_char(u"//row"); }, u"//row"},
        {"char matrix", [] { return do_create_char(u"abcd", 2, 2); }, u""},
        {"string array of two", [] { return hs::make_String(hs::createStringArray(std::vector<std::u16string>{u"a", u"b"})); }, u""},
    };
    for (const auto& c : cases) {
        const vxArrayPtr hints = with_field({}, "TableSelector", c.make());
        EXPECT_EQ(make_detection_options(hints.get()).TableSelector, c.expected) << c.what;
    }
}

TEST(make_detection_options, StringListsReadEveryElementAndRejectMissingOnes) {
    const vxArrayPtr missing_scalar = with_field({}, "VariableNodeNames", missing_string());
    EXPECT_TRUE(make_detection_options(missing_scalar.get()).VariableNodeNames.empty());

    const vxArrayPtr empty = with_field({}, "VariableNodeNames", hs::make_String(hs::createStringArray(0, 0)));
    EXPECT_TRUE(make_detection_options(empty.get()).VariableNodeNames.empty());

    hs::StringPtr with_gap = hs::createStringArray(std::vector<std::u16string>{u"a", u"b"});
    with_gap->setMissing(1);
    const vxArrayPtr gap = with_field({}, "VariableSelectors", hs::make_String(with_gap));
    EXPECT_EQ(error_id(gap.get()), "TOLVEN:string:MissingNotSupported");
}

TEST(make_detection_options, UnreadableStructuresRaiseUnknownError) {
    const vxArrayPtr not_struct = do_create_numeric(vxClassID::Double, 1, 1);
    EXPECT_EQ(error_id(not_struct.get()), "TOLVEN:io:xml:common:UnknownError");

    // The structure is read field by field: a bad earlier field is reported before the absent last one.
    hs::StringPtr with_gap = hs::createStringArray(std::vector<std::u16string>{u"a", u"b"});
    with_gap->setMissing(0);
    vxArrayPtr partial = do_create_struct();
    vxAddField(partial.get(), "VariableSelectors");
    vxSetField(partial.get(), 0, "VariableSelectors", hs::make_String(with_gap).release());
    EXPECT_EQ(error_id(partial.get()), "TOLVEN:string:MissingNotSupported");

    vxArrayPtr complete = make_hint_struct({});
    vxArrayPtr lacking = do_create_struct();
    for (std::size_t i = 0; i + 1 < vxGetNumberOfFields(complete.get()); ++i) {
        const char* name = vxGetFieldNameByNumber(complete.get(), i);
        vxAddField(lacking.get(), name);
        vxSetField(lacking.get(), 0, name, vxShareArray(vxGetField(complete.get(), 0, name)));
    }
    EXPECT_EQ(std::string(vxGetFieldNameByNumber(complete.get(), 14)), "TrimNonnumeric");
    EXPECT_EQ(error_id(lacking.get()), "TOLVEN:io:xml:common:UnknownError");
}

}  // namespace
