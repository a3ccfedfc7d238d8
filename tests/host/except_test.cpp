#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <set>

#include "host/MessageCatalog.hpp"
#include "host/except/Exception.hpp"
#include "host/utf.hpp"

namespace {

TOLVEN_DECLARE_MSGID("TOLVEN:io:xml:common", NodeNameNotFound, 3)

TEST(vxErrMsgId, RaisesTheRecordWithIdentifierArgumentsAndCatalogText) {
    try {
        vxErrMsgId(NodeNameNotFound(u"TableNodeName", std::u16string(u"b\u00fccher"), "doc.xml"));
        FAIL() << "vxErrMsgId returned";
    } catch (const foundation::core::except::Exception<NodeNameNotFound>& e) {
        EXPECT_EQ(e.GetID(), "TOLVEN:io:xml:common:NodeNameNotFound");
        EXPECT_EQ(e.GetBaseMsgIDObj().arguments_utf8(),
                  (std::vector<std::string>{"TableNodeName", "b\xc3\xbc" "cher", "doc.xml"}));
        EXPECT_EQ(std::string(e.what()), "TableNodeName: no element named 'b\xc3\xbc" "cher' exists in doc.xml.");
        // clone/rethrow keep the dynamic type.
        std::unique_ptr<foundation::core::except::IUserException> copy(e.clone());
        EXPECT_THROW(copy->rethrow(), foundation::core::except::Exception<NodeNameNotFound>);
    }
}

TEST(MessageCatalog, EveryEntryHasPlaceholdersForExactlyItsArguments) {
    std::set<std::string_view> seen;
    for (const auto& entry : tolven::host::all_messages()) {
        EXPECT_TRUE(seen.insert(entry.identifier).second) << "duplicate " << entry.identifier;
        const std::string text(entry.text);
        std::set<std::size_t> used, expected;
        // Placeholders are "{k}"; <regex> is avoided, GCC 12 warns inside it at -O1 under -Werror.
        for (auto open = text.find('{'); open != std::string::npos; open = text.find('{', open + 1)) {
            const auto close = text.find('}', open);
            const std::string digits = text.substr(open + 1, close == std::string::npos ? 0 : close - open - 1);
            if (!digits.empty() && digits.find_first_not_of("0123456789") == std::string::npos)
                used.insert(std::stoul(digits));
        }
        for (std::size_t k = 1; k <= entry.argument_count; ++k) expected.insert(k);
        EXPECT_EQ(used, expected) << entry.identifier;
    }
    EXPECT_GE(seen.size(), 24u);
}

TEST(MessageCatalog, ReadmeListsEveryIdentifier) {
    std::ifstream in(std::string(TOLVEN_SOURCE_DIR) + "/README.md");
    const std::string readme((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    for (const auto& entry : tolven::host::all_messages())
        EXPECT_NE(readme.find("`" + std::string(entry.identifier) + "`"), std::string::npos)
            << entry.identifier << " is missing from README.md: run scripts/error_table.py";
}

TEST(utf, InvalidInputIsReplacedNotFatal) {
    EXPECT_EQ(fl::i18n::utf8_to_ustring("a\xff" "b"), u"a\uFFFDb");
    EXPECT_EQ(fl::i18n::ustring_to_utf8(std::u16string(u"x") + char16_t(0xD800)), "x\xef\xbf\xbd");
}

}  // namespace
