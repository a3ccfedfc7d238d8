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

TEST(TableDetector, ChoosesTheStrategyOfTheGivenHint) {
    const std::vector<std::pair<HintFields, std::string>> cases{
        {{}, "DefaultStrategy"},
        {{.TableSelector = u"/catalog"}, "TableSelectorStrategy"},
        {{.TableNodeName = u"catalog"}, "TableNodeNameStrategy"},
        {{.RowSelector = u"//book"}, "RowSelectorStrategy"},
        {{.RowNodeName = u"book"}, "RowNodeNameStrategy"},
        {{.VariableSelectors = {u"//t"}}, "VariableSelectorsStrategy"},
        {{.VariableNodeNames = {u"t"}}, "VariableNodeNamesStrategy"},
        // Any VariableSelectors list selects its strategy; a VariableNodeNames list whose first
        // element is empty falls through to the default.
        {{.VariableSelectors = {u""}}, "VariableSelectorsStrategy"},
        {{.VariableNodeNames = {u"", u"t"}}, "DefaultStrategy"},
        // An empty first element counts as no hint, so it may stand beside another one.
        {{.RowNodeName = u"book", .VariableSelectors = {u""}}, "RowNodeNameStrategy"},
    };
    for (const auto& [hints, strategy] : cases) EXPECT_EQ(chosen_strategy(hints), strategy);
    EXPECT_FALSE(detect_error(kDoc, {.VariableNodeNames = {u"", u"t"}}).has_value());
    EXPECT_FALSE(detect_error(kDoc, {.RowNodeName = u"book", .VariableSelectors = {u""}}).has_value());
}

TEST(TableDetector, TwoHintsFailInTheChosenStrategysConstruction) {
    for (const HintFields& two : {HintFields{.RowNodeName = u"book", .TableSelector = u"/catalog"},
                                  HintFields{.VariableNodeNames = {u"t"}, .VariableSelectors = {u"//t"}}}) {
        const auto error = detect_error(kDoc, two);
        ASSERT_TRUE(error.has_value());
        EXPECT_EQ(error->id, "TOLVEN:io:xml:detection:ProvideAtMostOneDetectionHint");
        EXPECT_TRUE(error->arguments.empty());
    }
}

TEST(TableDetector, NamespacesAreRegisteredBeforeTheHintCountIsChecked) {
    const auto error = detect_error(
        kDoc, {.RowNodeName = u"book", .TableSelector = u"/catalog", .RegisteredNamespaces = {{u"xml", u"urn:x"}}});
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
    log::LogCapture capture(log::kTraceMask);
    ASSERT_TRUE(detect_error(kDoc, {.RowNodeName = u"book", .TableSelector = u"/catalog"}).has_value());
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

TEST(TableDetector, ErrorsAreRaisedWithTheOutputLeftUntouched) {
    const auto raised = [](vxArrayPtr first, const HintFields& hints) {
        vxArrayPtr hint_struct = tolven::testing::make_hint_struct(hints);
        const vxArray* inputs[2] = {first.get(), hint_struct.get()};
        vxArrayPtr outputs[1] = {do_create_char(u"before")};
        std::string id;
        try {
            tolven::io::xml::detection::detect(1, outputs, 2, inputs);
        } catch (const foundation::core::except::IMsgIDException& e) {
            id = e.GetID();
        }
        EXPECT_EQ(vxGetChars(outputs[0].get()), u"before");
        return id;
    };
    EXPECT_EQ(raised(do_create_object(tolven::testing::parse_xml(kDoc)),
                     {.TableSelector = u"/catalog", .RowSelector = u"//book"}),
              "TOLVEN:io:xml:detection:ProvideAtMostOneDetectionHint");
    EXPECT_EQ(raised(do_create_char(u"catalog.xml"), {}), "TOLVEN:io:xml:common:NotADocumentObject");
}

}  // namespace
