// The result structure built from a table or from none, and the variable walk behind it.

#include <gtest/gtest.h>

#include <stdexcept>

#include "detection/support/SearchProbe.hpp"
#include "host/String.hpp"
#include "xml/xpath/NodeList.hpp"

namespace {

using tolven::io::xml::common::xpath::NodeList;
using tolven::testing::make_options;
using tolven::testing::read_result;
using tolven::testing::SearchProbe;
using Strings = std::vector<std::string>;

class ImportOptionsResult : public ::testing::Test {
protected:
    void load(std::string_view xml) {
        doc_ = tolven::testing::parse_xml(xml);
        probe_ = std::make_unique<SearchProbe>(doc_.get(), make_options());
    }
    std::optional<tolven::io::xml::detection::Table> rows(const std::u16string& selector) const {
        const NodeList list(probe_->context(), selector);
        return probe_->getRowListTable(selector, std::nullopt, list);
    }
    std::shared_ptr<tolven::io::xml::common::vcos::DocWrapper> doc_;
    std::unique_ptr<SearchProbe> probe_;
};

TEST_F(ImportOptionsResult, WithoutATableTheVariableFieldsAreEmptyZeroByZero) {
    load("<r/>");
    const vxArrayPtr result = probe_->MakeImportOptions(std::nullopt);
    ASSERT_EQ(vxGetNumberOfFields(result.get()), 7u);
    Strings order;
    for (std::size_t i = 0; i < 7; ++i) order.push_back(vxGetFieldNameByNumber(result.get(), i));
    EXPECT_EQ(order, (Strings{"TableDetected", "TableSelector", "RowSelector", "VariableNames", "VariableTypes",
                              "VariableSelectors", "RegisteredNamespaces"}));
    for (const char* field : {"VariableNames", "VariableTypes", "VariableSelectors"}) {
        const vxArray* value = vxGetField(result.get(), 0, field);
        EXPECT_EQ(vxGetM(value), 0u) << field;
        EXPECT_EQ(vxGetN(value), 0u) << field;
    }
    EXPECT_FALSE(read_result(result.get()).detected);
}

TEST_F(ImportOptionsResult, VariableFieldsAreOneByNAndWithNeitherSelectorStartFromTheDocument) {
    load("<r><row><v>1</v></row><row><v>2</v></row></r>");
    auto table = rows(u"//row");
    ASSERT_TRUE(table.has_value());
    table->row_selector.reset();
    table->table_selector.reset();
    const vxArrayPtr result = probe_->MakeImportOptions(table);
    for (const char* field : {"VariableNames", "VariableTypes", "VariableSelectors"}) {
        EXPECT_EQ(vxGetM(vxGetField(result.get(), 0, field)), 1u) << field;
        EXPECT_EQ(vxGetN(vxGetField(result.get(), 0, field)), 1u) << field;
    }
    EXPECT_EQ(read_result(result.get()).selectors, Strings{"//v"});
    // A table selector alone is the base otherwise.
    table->table_selector = u"/r/row";
    EXPECT_EQ(read_result(probe_->MakeImportOptions(table).get()).selectors, Strings{"/r/row/v"});
}

// The variable count evaluateTable gave must be what the walk finds.
TEST_F(ImportOptionsResult, ACountTheTreeDoesNotHoldIsAFault) {
    load("<r><row><v>1</v></row><row><v>2</v></row></r>");
    auto table = rows(u"//row");
    ASSERT_TRUE(table.has_value());
    table->num_variables = 2;
    EXPECT_THROW(probe_->MakeImportOptions(table), std::logic_error);
    table->num_variables = 0;
    EXPECT_THROW(probe_->MakeImportOptions(table), std::logic_error);
}

}  // namespace
