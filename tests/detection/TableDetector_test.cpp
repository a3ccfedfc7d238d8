#include "detection/TableDetector.hpp"

#include <gtest/gtest.h>

#include <algorithm>

#include "detection/support/detect_helpers.hpp"
#include "host/except/Exception.hpp"
#include "xml/log/getLogger.hpp"

namespace {

using tolven::testing::detect_error;
using tolven::testing::HintFields;
using tolven::testing::run_detect;
namespace log = tolven::io::xml::common::log;

constexpr const char* kDoc = R"(<catalog><book id="1"><t>a</t></book><book id="2"><t>b</t></book></catalog>)";

// The strategy line ChooseDetectionStrategy logs, or "" when none was chosen.
std::string chosen_strategy(const HintFields& hints) {
    log::LogCapture capture(log::kProgressMask);
    try {
        run_detect(kDoc, hints);
    } catch (const std::exception&) {
        // Hints that fail later still show which strategy was chosen.
    }
    for (const auto& m : capture.messages())
        if (m.rfind("DetectionStrategy = ", 0) == 0) return m.substr(20);
    return "";
}

TEST(TableDetector, ChoosesTheFirstGivenHintInFixedOrder) {
    HintFields none;
    EXPECT_EQ(chosen_strategy(none), "DefaultStrategy");
    HintFields table_selector;
    table_selector.TableSelector = u"/catalog";
    EXPECT_EQ(chosen_strategy(table_selector), "TableSelectorStrategy");
    HintFields table_name;
    table_name.TableNodeName = u"catalog";
    EXPECT_EQ(chosen_strategy(table_name), "TableNodeNameStrategy");
    HintFields row_selector;
    row_selector.RowSelector = u"//book";
    EXPECT_EQ(chosen_strategy(row_selector), "RowSelectorStrategy");
    HintFields row_name;
    row_name.RowNodeName = u"book";
    EXPECT_EQ(chosen_strategy(row_name), "RowNodeNameStrategy");
    HintFields variable_selectors;
    variable_selectors.VariableSelectors = {u"//t"};
    EXPECT_EQ(chosen_strategy(variable_selectors), "VariableSelectorsStrategy");
    HintFields variable_names;
    variable_names.VariableNodeNames = {u"t"};
    EXPECT_EQ(chosen_strategy(variable_names), "VariableNodeNamesStrategy");
}

TEST(TableDetector, EmptyFirstListElementsAreTreatedUnlike) {
    // Any VariableSelectors list selects its strategy; a VariableNodeNames list whose first
    // element is empty falls through to the default.
    HintFields selectors;
    selectors.VariableSelectors = {u""};
    EXPECT_EQ(chosen_strategy(selectors), "VariableSelectorsStrategy");
    HintFields names;
    names.VariableNodeNames = {u"", u"t"};
    EXPECT_EQ(chosen_strategy(names), "DefaultStrategy");
    EXPECT_FALSE(detect_error(kDoc, names).has_value());
    // An empty first element counts as no hint, so it may stand beside another one.
    HintFields beside;
    beside.VariableSelectors = {u""};
    beside.RowNodeName = u"book";
    EXPECT_EQ(chosen_strategy(beside), "RowNodeNameStrategy");
    EXPECT_FALSE(detect_error(kDoc, beside).has_value());
}

TEST(TableDetector, TwoHintsFailInTheChosenStrategysConstruction) {
    HintFields two;
    two.TableSelector = u"/catalog";
    two.RowNodeName = u"book";
    const auto error = detect_error(kDoc, two);
    ASSERT_TRUE(error.has_value());
    EXPECT_EQ(error->id, "TOLVEN:io:xml:detection:ProvideAtMostOneDetectionHint");
    EXPECT_TRUE(error->arguments.empty());

    HintFields lists;
    lists.VariableSelectors = {u"//t"};
    lists.VariableNodeNames = {u"t"};
    ASSERT_TRUE(detect_error(kDoc, lists).has_value());
    EXPECT_EQ(detect_error(kDoc, lists)->id, "TOLVEN:io:xml:detection:ProvideAtMostOneDetectionHint");
}

TEST(TableDetector, NamespacesAreRegisteredBeforeTheHintCountIsChecked) {
    HintFields hints;
    hints.TableSelector = u"/catalog";
    hints.RowNodeName = u"book";
    hints.RegisteredNamespaces = {{u"xml", u"urn:x"}};
    const auto error = detect_error(kDoc, hints);
    ASSERT_TRUE(error.has_value());
    EXPECT_EQ(error->id, "TOLVEN:io:xml:common:InvalidRegisteredNamespaces");
}

TEST(TableDetector, OneRunLogsItsStagesOnceAndInOrder) {
    log::LogCapture capture(log::kProgressMask);
    run_detect(kDoc);
    const auto messages = capture.messages();
    auto position = [&](const std::string& text) {
        return std::find(messages.begin(), messages.end(), text) - messages.begin();
    };
    EXPECT_EQ(std::count(messages.begin(), messages.end(), "Parsing builtin input arguments (detection hints)..."), 1);
    EXPECT_EQ(std::count(messages.begin(), messages.end(), "Starting detection..."), 1);
    EXPECT_LT(position("Choosing DetectionStrategy..."), position("DetectionStrategy = DefaultStrategy"));
    EXPECT_LT(position("DetectionStrategy = DefaultStrategy"), position("Starting detection..."));
    EXPECT_LT(position("Starting detection..."), position("Creating ImportOptions struct to return to TOLVEN..."));
}

TEST(TableDetector, TraceRecordsMarkFunctionsLeftByAnException) {
    HintFields two;
    two.TableSelector = u"/catalog";
    two.RowNodeName = u"book";
    log::LogCapture capture(log::kTraceMask);
    ASSERT_TRUE(detect_error(kDoc, two).has_value());
    const auto messages = capture.messages();
    const std::string detect_signature =
        "tolven::io::xml::detection::ImportOptions tolven::io::xml::detection::TableDetector::Detect() const";
    EXPECT_EQ(std::count(messages.begin(), messages.end(), detect_signature), 1);
    EXPECT_EQ(std::count(messages.begin(), messages.end(), detect_signature + " [throw]"), 1);
    // make_detection_options finished normally: entered and left without the mark.
    const std::string options_signature =
        "tolven::io::xml::detection::options::DetectionOptions "
        "tolven::io::xml::detection::options::make_detection_options(const VxDetectionOptions*)";
    EXPECT_EQ(std::count(messages.begin(), messages.end(), options_signature), 2);
}

TEST(TableDetector, ErrorsLeaveTheOutputUntouched) {
    auto doc = tolven::testing::parse_xml(kDoc);
    vxArrayPtr object = do_create_object(doc);
    HintFields two;
    two.TableSelector = u"/catalog";
    two.RowSelector = u"//book";
    vxArrayPtr hints = tolven::testing::make_hint_struct(two);
    const vxArray* inputs[2] = {object.get(), hints.get()};
    vxArrayPtr outputs[1] = {do_create_char(u"before")};
    EXPECT_ANY_THROW(tolven::io::xml::detection::detect(1, outputs, 2, inputs));
    EXPECT_EQ(vxGetChars(outputs[0].get()), u"before");
}

TEST(TableDetector, AFirstInputThatIsNoDocumentIsRejected) {
    vxArrayPtr not_a_document = do_create_char(u"catalog.xml");
    vxArrayPtr hints = tolven::testing::make_hint_struct({});
    const vxArray* inputs[2] = {not_a_document.get(), hints.get()};
    vxArrayPtr outputs[1];
    try {
        tolven::io::xml::detection::detect(1, outputs, 2, inputs);
        FAIL() << "expected an error";
    } catch (const foundation::core::except::IMsgIDException& e) {
        EXPECT_EQ(e.GetID(), "TOLVEN:io:xml:common:NotADocumentObject");
    }
}

}  // namespace
