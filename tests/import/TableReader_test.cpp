// TableReader on bytes held in memory, which it can read twice: a column past the sample is found by
// a pass over them all, within the bound set on the distinct paths it keeps.
#include "import/TableReader.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "detection/support/detect_helpers.hpp"

namespace {

namespace import = tolven::import;

TEST(TableReader, LateColumnsOfBytesInMemoryAreFoundWithinTheBoundOnPaths) {
    std::string xml = "<t>";
    for (int i = 0; i < 300; ++i)
        xml += "<r><a>" + std::to_string(i) + "</a>" + (i == 250 ? "<b>x</b><c>2</c>" : "") + "</r>";
    xml += "</t>";
    const struct {
        std::size_t max_paths;
        std::vector<std::string> columns;
        bool bounded;
    } cases[] = {{64, {"a", "b", "c"}, false}, {2, {"a", "b"}, true}};
    for (const auto& c : cases) {
        import::InputDocument input(xml, "doc");
        import::ReadSettings settings;
        settings.sample_bytes = 512;
        settings.max_survey_paths = c.max_paths;
        std::string notes;
        const auto hints = tolven::testing::make_hint_struct({});
        const import::TableReader reader(input, hints.get(), settings, [&](std::string_view n) { (notes += n) += '\n'; });
        ASSERT_TRUE(reader.streaming());
        std::vector<std::string> names;
        for (const auto& column : reader.columns()) names.push_back(column.name);
        EXPECT_EQ(names, c.columns) << c.max_paths;
        EXPECT_EQ(notes.find("distinct element and attribute paths") != std::string::npos, c.bounded) << notes;
        EXPECT_NE(notes.find("b (row 251)"), std::string::npos) << notes;
    }
}

}  // namespace
