#pragma once
// One streaming pass over a whole document that finds the columns a table detected on a sample of it
// lacks: under every row, each element and attribute path that detection would have made a variable
// had it seen the node, named, addressed and typed as detection names, addresses and types its
// variables. Memory holds the distinct paths with their type tallies, never the rows.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "import/DetectionResult.hpp"
#include "import/ImportPlan.hpp"
#include "import/InputDocument.hpp"
#include "import/PathTracker.hpp"
#include "import/Progress.hpp"
#include "text/TypeAnalyzerOptions.hpp"
#include "text/typedetection/TypeVote.hpp"
#include "xml/parser/ParserSettings.hpp"
#include "xml/parser/SaxHandler.hpp"

namespace tolven::import {

struct SurveySettings {
    bool import_attributes = true;  // the ImportAttributes hint
    bool detect_namespaces = true;  // the DetectNamespaces hint
    io::text::typedetection::TypeAnalyzerOptions analyzer;
    std::optional<std::uint64_t> max_rows;  // stop after so many rows (read --head)
    // Distinct paths below the rows kept at most; the rest are counted, not looked into.
    std::size_t max_paths = 4096;
};

// A column the survey found, and the row (from 1) it first holds a node in.
struct LateColumn {
    Variable variable;
    std::uint64_t first_row = 0;
};

class ColumnSurvey final : public io::xml::common::parser::SaxHandler {
public:
    // The reason the survey cannot follow the table result of plan; "" when it can. It follows rows
    // only: a table made of side-by-side names, or of variables the hints chose, has none to follow.
    static std::string unsupported(const DetectionResult& result, const ImportPlan& plan, bool variable_hints);

    // result and plan must outlive the survey, and unsupported() must be "".
    ColumnSurvey(const DetectionResult& result, const ImportPlan& plan, SurveySettings settings);

    // Reads input from its start with a parser of its own (same settings, limits and errors as
    // every other pass). Raises what PushParser raises.
    // progress, when given, is told how far it is (no rows). With parallel, the events are handled
    // on a second thread while this one parses.
    void run(InputDocument& input, const io::xml::common::parser::ParserSettings& parser, Progress* progress = nullptr,
             bool parallel = false);
    // For a pass driven by someone else: names are interned by intern from now on.
    void bind(const std::function<const char*(std::string_view)>& intern);

    bool start_element(const io::xml::common::parser::ElementEvent& element) override;
    bool end_element() override;
    // Inline: called for every piece of text, and most need nothing.
    bool text(std::string_view text) override {
        if (in_row_ && frames_[open_ - 1].wants) gather(frames_[open_ - 1], text);
        return true;
    }

    std::uint64_t rows() const noexcept { return rows_; }
    // True when more distinct paths were met than max_paths.
    bool overflowed() const noexcept { return overflowed_; }
    std::size_t max_paths() const noexcept { return settings_.max_paths; }

    // After the pass: the variables result lacks, in order of first appearance.
    std::vector<LateColumn> late_columns() const;
    // Namespace pairs the document declares that result lacks, registered as detection registers them.
    std::vector<std::pair<std::string, std::string>> late_namespaces() const;
    // Gives each of variables that the pass met the type detection votes from the values met.
    void revote(std::vector<Variable>& variables) const;

private:
    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
    static constexpr std::size_t kScannedChildren = 16;  // beyond these, children are found by index_

    struct Child {
        const char* uri;
        const char* local;
        bool attribute;
        std::size_t path;
    };

    struct Path {
        std::size_t parent = kNone;
        bool attribute = false;
        bool has_uri = false;
        std::string uri, local, prefix;  // the prefix as first written
        std::uint64_t first_row = 0;
        std::uint64_t last_row = 0;
        bool sampled_in_row = false;
        bool leaf = true;
        bool non_empty = false;  // some row gave it non-blank text
        io::text::typedetection::TypeVote vote;
        std::vector<Child> children;  // by their names in this parse, in order of first appearance
        std::size_t next_child = 0;   // where the next search of children starts
    };
    struct Key {
        std::size_t parent;
        bool attribute;
        const char* uri;
        const char* local;
        bool operator==(const Key&) const = default;
    };
    struct KeyHash {
        std::size_t operator()(const Key& k) const noexcept;
    };
    struct Frame {
        std::size_t path;  // kNone: past the limit of paths
        bool wants;        // the path still wants a sample from this element
        std::string run;   // text since the last tag, while the path still wants a sample
    };

    std::size_t find(std::size_t parent, bool attribute, const char* uri, const char* local, const char* prefix);
    void enter(std::size_t path);
    void sample(std::size_t path, std::string_view value);
    bool wants_text(std::size_t path) const;
    void gather(Frame& frame, std::string_view text);
    // Samples the text gathered in frame (not empty).
    void flush(Frame& frame);
    void declare(std::string_view prefix, std::string_view uri);
    void bind_prefix(const std::string& prefix, const std::string& uri);
    std::string selector(std::size_t path) const;
    std::string prefix_of(const std::string& uri) const;
    bool is_variable(const Path& path) const { return path.attribute || path.leaf || path.non_empty; }

    const DetectionResult& result_;
    SurveySettings settings_;
    std::string base_;  // the selector the variables are written below
    PathTracker rows_tracker_;
    std::vector<Path> paths_;  // [0]: the rows themselves
    std::unordered_map<Key, std::size_t, KeyHash> index_;  // a child, by parent and name, to its place among the children
    std::vector<Frame> frames_;  // the elements open inside the current row: the first open_
    std::size_t open_ = 0;
    std::size_t depth_ = 0;      // elements open in the document
    std::size_t row_depth_ = 0;
    bool in_row_ = false;
    std::uint64_t rows_ = 0;
    bool overflowed_ = false;
    io::text::textio::MutableField scratch_;  // one buffer to classify every sample in

    // Namespace registration, continued from the sample's.
    std::unordered_map<std::string, std::string> bound_;     // prefix -> URI
    std::unordered_map<std::string, std::string> prefixes_;  // URI -> its first prefix
    std::unordered_map<std::string, unsigned> next_number_;  // base -> the number to try first
    std::vector<std::pair<std::string, std::string>> late_namespaces_;
    std::vector<std::pair<std::string, std::string>> aliases_;
    std::set<std::string, std::less<>> declarations_seen_;
};

}  // namespace tolven::import
