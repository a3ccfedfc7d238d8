// Detection and import on several threads at once give what they give one after another.
#include <gtest/gtest.h>

#include <tolven/xml.hpp>

#include <zlib.h>

#include <thread>

#include "api/support/collect.hpp"
#include "support/files.hpp"

namespace {

namespace tx = tolven::xml;
using tolven::testing::Outcome;

struct Job {
    tx::Source source;
    tx::Hints hints;
    tx::ReadSettings settings;
};

// A document large enough to be streamed from a small sample, with dates and a second locale.
std::string generated_document() {
    std::string xml = "<export xmlns:m=\"urn:m\">";
    for (int i = 0; i < 400; ++i) {
        xml += "<m:row id=\"" + std::to_string(i) + "\"><when>" + std::to_string(1 + i % 28) +
               ". März 2024</when><n>" + std::to_string(i) + ",5</n><d>01:" + std::to_string(10 + i % 50) +
               ":00</d></m:row>";
    }
    return xml + "</export>";
}

// xml in gzip's format.
std::string gzipped(const std::string& xml) {
    z_stream z{};
    deflateInit2(&z, Z_DEFAULT_COMPRESSION, Z_DEFLATED, 15 + 16, 8, Z_DEFAULT_STRATEGY);
    std::string out(deflateBound(&z, xml.size()), '\0');
    z.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(xml.data()));
    z.avail_in = static_cast<uInt>(xml.size());
    z.next_out = reinterpret_cast<Bytef*>(out.data());
    z.avail_out = static_cast<uInt>(out.size());
    deflate(&z, Z_FINISH);
    out.resize(z.total_out);
    deflateEnd(&z);
    return out;
}

std::string run(const Job& job) {
    std::string s;
    try {
        const tx::Detection d = tx::detect(job.source, job.hints);
        s = d.row_selector;
        for (const auto& v : d.variables) s += " " + v.name + ":" + v.type;
    } catch (const tx::Error& e) {
        s = e.identifier();
    }
    const Outcome outcome = tolven::testing::read_outcome(job.source, job.hints, job.settings);
    s += "\n" + outcome.error;
    for (const auto& h : outcome.table.header) s += " " + h;
    for (const auto& row : outcome.table.rows)
        for (const auto& cell : row) s += "|" + cell;
    return s;
}

TEST(Threads, DetectionsAndImportsOnSeveralThreadsMatchASequentialRun) {
    const std::string big = generated_document();
    const std::string cut = big.substr(0, big.size() / 2);
    tx::Hints german;
    german.date_locale = "de_DE";
    german.decimal_separator = ",";
    tx::Hints by_selector;
    by_selector.row_selector = "//item";
    tx::Hints bad_selector;
    bad_selector.row_selector = "//nothing";
    const tx::ReadSettings streamed = tolven::testing::in_mode(tx::ReadSettings::Mode::Stream, 4096);
    std::vector<Job> jobs;
    for (const char* name : {"catalog.xml", "feed.xml", "atom-feed.xml", "key-value.xml"})
        jobs.push_back({tx::Source::file(tolven::testing::example(name)), {}, {}});
    jobs.push_back({tx::Source::file(tolven::testing::example("feed.xml")), by_selector, streamed});
    jobs.push_back({tx::Source::file(tolven::testing::example("feed.xml")), bad_selector, {}});
    jobs.push_back({tx::Source::memory(big, "big"), german, streamed});
    jobs.push_back({tx::Source::memory(big, "big"), {}, {}});
    jobs.push_back({tx::Source::memory(cut, "cut"), german, streamed});
    // The same two with rows assembled on a second thread of their own.
    tx::ReadSettings parallel = streamed;
    parallel.parallel = true;
    jobs.push_back({tx::Source::memory(big, "big"), german, parallel});
    jobs.push_back({tx::Source::memory(cut, "cut"), german, parallel});
    // Compressed, it is also inflated ahead on a third thread.
    const std::string packed = gzipped(big);
    jobs.push_back({tx::Source::memory(packed, "big.gz"), german, parallel});

    std::vector<std::string> expected;
    for (const auto& job : jobs) expected.push_back(run(job));

    constexpr std::size_t kThreads = 4, kRounds = 3;
    std::vector<std::vector<std::string>> got(kThreads);
    std::vector<std::thread> threads;
    for (std::size_t t = 0; t < kThreads; ++t) {
        threads.emplace_back([&, t] {
            // Each thread starts at another job, so different documents and locales overlap.
            for (std::size_t i = 0; i < jobs.size() * kRounds; ++i) got[t].push_back(run(jobs[(i + t) % jobs.size()]));
        });
    }
    for (auto& thread : threads) thread.join();
    for (std::size_t t = 0; t < kThreads; ++t)
        for (std::size_t i = 0; i < got[t].size(); ++i)
            EXPECT_EQ(got[t][i], expected[(i + t) % jobs.size()]) << "thread " << t << ", job " << (i + t) % jobs.size();
    EXPECT_NE(expected[6].find("when:datetime"), std::string::npos) << expected[6];
    EXPECT_NE(expected[8].find("MalformedDocument"), std::string::npos) << expected[8];
    EXPECT_EQ(expected[9], expected[6]);
    EXPECT_EQ(expected[10], expected[8]);
    EXPECT_EQ(expected[11], expected[9]);
}

}  // namespace
