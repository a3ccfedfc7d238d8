// The progress bar under a terminal: however the run ends, it leaves no line behind.
#include <gtest/gtest.h>

#include <string>

#include "cli/support/run_in_pty.hpp"
#include "support/files.hpp"

namespace {

using tolven::testing::run_in_pty;
using tolven::testing::screen;
using tolven::testing::write_temp_file;

// Large enough to be streamed with a bar, and to fill a pipe several times over (about 3 MB of CSV).
std::string big_file(bool broken) {
    std::string xml = "<t>\n";
    for (int i = 0; i < 120000; ++i) xml += "<r><a>" + std::to_string(1000000 + i) + "</a><b>some text value</b></r>\n";
    return "'" + write_temp_file("big.xml", xml + (broken ? "<r><a>1</x>\n" : "</t>\n")) + "'";
}

TEST(ProgressBar, LeavesNothingOnTheScreenWhenOutputEndsEarly) {
    const std::string file = big_file(false);
    const std::string broken = big_file(true);
    // The consumers hold off reading past the bar's first drawing (a second after detection, which
    // a small sample keeps short), so that it is drawn.
    struct Case {
        std::string pipeline, shows;
        int drawn;  // -1: either way
    };
    for (const Case& c : {
             // head closes the pipe after two lines; the bar may be drawn while the columns are
             // surveyed first (a slow build takes over a second), but never left over those lines.
             Case{"\"$TOLVEN\" read " + file + " | head -n 2", ",some text value", -1},
             // The consumer goes away mid-way: SIGPIPE, or EPIPE where SIGPIPE is ignored.
             Case{"\"$TOLVEN\" read " + file + " --sample-bytes 64KiB | { sleep 1.5; head -c 1500000 >/dev/null; }; echo done", "done", 1},
             Case{"trap '' PIPE; \"$TOLVEN\" read " + file + " --sample-bytes 64KiB | { sleep 1.5; head -c 1500000 >/dev/null; }",
                  "Cannot write '<stdout>'", 1},
             // The document breaks off: the pass that looks for late columns meets it before any row
             // is written, with the bar drawn or not yet.
             Case{"\"$TOLVEN\" read " + broken + " --sample-bytes 64KiB | { sleep 1.5; cat >/dev/null; }", "not well-formed", -1},
         }) {
        const auto run = run_in_pty(c.pipeline);
        const std::string shown = screen(run.output);
        EXPECT_NE(shown.find(c.shows), std::string::npos) << c.pipeline << "\n" << shown;
        EXPECT_EQ(shown.find("rows/s"), std::string::npos) << c.pipeline << "\n" << shown;
        if (c.drawn >= 0) {
            EXPECT_EQ(run.output.find("rows/s") != std::string::npos, c.drawn == 1) << c.pipeline;
        }
    }
}

}  // namespace
