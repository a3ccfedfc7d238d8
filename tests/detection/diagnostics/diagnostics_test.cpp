#include <gtest/gtest.h>

#include "detection/diagnostics/printers.hpp"
#include "detection/variables/VariableStatistics.hpp"

namespace {

namespace diagnostics = tolven::io::xml::detection::diagnostics;
using tolven::io::xml::detection::VariableStatistics;

TEST(printers, OptionsDumpListsTenFieldsInFixedOrder) {
    tolven::io::xml::detection::options::DetectionOptions o;
    o.RowNodeName = u"book";
    o.VariableSelectors = {u"//a", u"//b"};
    o.AttributeSuffix = u"Attribute";
    o.ImportAttributes = true;
    o.DetectNamespaces = false;
    EXPECT_EQ(diagnostics::print_options(o),
              "\nDetectionOptions = \n{\n"
              "    TableNodeName: \"\",\n"
              "    RowNodeName: \"book\",\n"
              "    VariableNodeNames: [],\n"
              "    TableSelector: \"\",\n"
              "    RowSelector: \"\",\n"
              "    VariableSelectors: [\"//a\", \"//b\"],\n"
              "    AttributeSuffix: \"Attribute\",\n"
              "    DateLocale: \"\",\n"
              "    ImportAttributes: true,\n"
              "    DetectNamespaces: false,\n"
              "}");
}

TEST(printers, StatisticsDumpPrintsTheDerivedVariableFlag) {
    EXPECT_EQ(tolven::io::xml::detection::print_statistics({}), "{\n}");
    VariableStatistics s;
    s.num_row_appearances = 2;
    s.total_appearences = 3;
    s.is_leaf = false;
    EXPECT_EQ(tolven::io::xml::detection::print_statistics({s}),
              "{\n    {\n"
              "        total_appearences = 3,\n"
              "        num_row_appearances = 2,\n"
              "        num_non_empty_samples = 0,\n"
              "        is_variable = false,\n"
              "        is_attribute = false,\n"
              "        is_leaf = false,\n"
              "    },\n}");
}

}  // namespace
