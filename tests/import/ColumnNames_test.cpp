#include "import/ColumnNames.hpp"

#include <gtest/gtest.h>

namespace {

using tolven::import::make_column_names;
using Names = std::vector<std::string>;

TEST(ColumnNames, DuplicatesAreNumberedAvoidingTakenNames) {
    EXPECT_EQ(make_column_names({"title", "title", "title"}, "Attribute"), (Names{"title", "title_2", "title_3"}));
    // The suffixed attribute lands on an element's name: numbered like any duplicate.
    EXPECT_EQ(make_column_names({"@id", "id", "idAttribute"}, "Attribute"),
              (Names{"idAttribute", "id", "idAttribute_2"}));
    // A number already used by a column is skipped.
    EXPECT_EQ(make_column_names({"a", "a", "a_2"}, "Attribute"), (Names{"a", "a_3", "a_2"}));
    EXPECT_EQ(make_column_names({"@a", "@a", "a"}, ""), (Names{"a", "a_2", "a_3"}));
}

}  // namespace
