// CSV fields are checked for characters to quote many bytes at a time, and the output buffer copies
// short pieces by size class: a special character at any place of a field of any length, and pieces
// longer than the buffer, must come out as one character at a time would write them.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "import/CsvWriter.hpp"
#include "import/OutputStream.hpp"
#include "support/files.hpp"

namespace {

namespace import = tolven::import;

std::string reference_field(const std::string& text, char separator) {
    if (text.find_first_of(std::string{separator, '"', '\n', '\r'}) == std::string::npos) return text;
    std::string quoted = "\"";
    for (const char c : text) quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
    return quoted + "\"";
}

TEST(CsvWriter, QuotesASpecialCharacterWhereverItIsAndKeepsLongPieces) {
    for (const char separator : {',', '\t'}) {
        std::vector<std::string> fields;
        for (std::size_t length = 0; length <= 40; ++length) {
            fields.emplace_back(length, 'x');
            for (std::size_t at = 0; at < length; ++at)
                for (const char special : {separator, '"', '\n', '\r'}) {
                    fields.emplace_back(length, 'x');
                    fields.back()[at] = special;
                }
        }
        fields.emplace_back(std::size_t{3} << 20, 'y');  // longer than the output buffer
        fields.back()[(std::size_t{3} << 20) - 1] = '"';

        const std::string path = tolven::testing::write_temp_file("out.csv", "");
        const int fd = ::open(path.c_str(), O_WRONLY | O_TRUNC);
        std::string expected = "a,b\n";
        expected[1] = separator;
        {
            import::OutputStream out(fd, "<test>");
            import::CsvWriter writer(out, separator);
            std::vector<import::Column> columns(2);
            columns[0].name = "a";
            columns[1].name = "b";
            writer.begin(columns);
            for (const std::string& field : fields) {
                const import::Cell cells[] = {{import::Cell::Kind::Text, field, {}}, {import::Cell::Kind::Number, "1", {}}};
                writer.write_row(cells);
                expected += reference_field(field, separator) + separator + "1\n";
            }
            writer.end();
            out.flush();
        }
        ::close(fd);
        EXPECT_TRUE(tolven::testing::slurp(path) == expected) << "separator " << int(separator);
    }
}

}  // namespace
