#include "import/SampleExtractor.hpp"

#include <gtest/gtest.h>

namespace {

using tolven::import::close_sample;

TEST(SampleExtractor, CutsAfterTheLastCompleteMarkupAndClosesWhatIsOpen) {
    EXPECT_EQ(close_sample("<?xml version=\"1.0\"?>\n<t a=\"x>y\"><r><v>1</v></r><r><v>2"),
              "<?xml version=\"1.0\"?>\n<t a=\"x>y\"><r><v>1</v></r><r><v></v></r></t>");
    // A tag cut in the middle goes, and so does text that may end inside a reference.
    EXPECT_EQ(close_sample("<t><r/><r><v>a &am"), "<t><r/><r><v></v></r></t>");
    EXPECT_EQ(close_sample("<t><r/><r x='1"), "<t><r/></t>");
    // Markup inside comments, CDATA and the document type opens nothing.
    EXPECT_EQ(close_sample("<!DOCTYPE t [<!ENTITY e '<x>'> <!-- ] > -->]><t><!-- <r> --><![CDATA[<r>]]><r>"),
              "<!DOCTYPE t [<!ENTITY e '<x>'> <!-- ] > -->]><t><!-- <r> --><![CDATA[<r>]]><r></r></t>");
    EXPECT_EQ(close_sample("<t><!-- open comment <r>"), "<t></t>");
}

TEST(SampleExtractor, RefusesWhatCannotBeCutByteByByte) {
    EXPECT_EQ(close_sample("<?xml version=\"1.0\"?>\n<!-- only a comment"), std::nullopt);
    EXPECT_EQ(close_sample(std::string("<\0t\0>\0", 6)), std::nullopt);
}

}  // namespace
