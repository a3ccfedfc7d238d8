#include "xml/vcos/DocWrapper.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "xml/support/parse_xml.hpp"

namespace {

using tolven::io::xml::common::vcos::get_doc_wrapper_ptr;

struct OtherObject : vxObject {
    std::string_view class_name() const noexcept override { return "OtherObject"; }
};

TEST(DocWrapper, OnlyADocumentObjectGivesBackItsDocument) {
    const auto doc = tolven::test::parse_xml("<a/>");
    EXPECT_EQ(get_doc_wrapper_ptr(do_create_object(doc).get()), doc.get());

    const auto other = do_create_object(std::make_shared<OtherObject>());
    const auto text = do_create_char(u"doc.xml");
    for (const vxArray* array : std::vector<const vxArray*>{nullptr, other.get(), text.get()}) {
        const auto raised = tolven::test::raised_by([&] { get_doc_wrapper_ptr(array); });
        EXPECT_EQ(raised.id, "TOLVEN:io:xml:common:NotADocumentObject");
        EXPECT_TRUE(raised.arguments.empty());
    }
}

}  // namespace
