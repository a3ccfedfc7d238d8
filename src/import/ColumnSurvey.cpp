#include "import/ColumnSurvey.hpp"

#include <libxml/tree.h>

#include <set>

#include "host/utf.hpp"
#include "import/EventPass.hpp"
#include "text/ConvertTolvenTypeToString.hpp"
#include "text/textio/trim.hpp"

namespace tolven::import {

namespace {

namespace parser = io::xml::common::parser;

// Detection keeps at most this many samples of a name and votes its type from them.
constexpr std::uint64_t kMaxSamples = 250;
const std::string kXmlNamespace = reinterpret_cast<const char*>(XML_XML_NAMESPACE);

std::string_view view(const xmlChar* s) {
    return s != nullptr ? std::string_view(reinterpret_cast<const char*>(s)) : std::string_view();
}

}  // namespace

std::string ColumnSurvey::unsupported(const DetectionResult& result, const ImportPlan& plan, bool variable_hints) {
    if (variable_hints) return "the hints chose its variables";
    if (result.row_selector.empty() || plan.rows_from_ancestor || !plan.row_pattern || plan.row_pattern->attribute)
        return "the table has no row element to look under";
    return {};
}

std::size_t ColumnSurvey::KeyHash::operator()(const Key& k) const noexcept {
    // Names are interned: their addresses tell them apart.
    std::size_t h = k.parent * 0x9E3779B97F4A7C15ull;
    h ^= reinterpret_cast<std::uintptr_t>(k.local) + 0x9E3779B9u + (h << 6) + (h >> 2);
    h ^= reinterpret_cast<std::uintptr_t>(k.uri) + 0x9E3779B9u + (h << 6) + (h >> 2);
    return h ^ static_cast<std::size_t>(k.attribute);
}

ColumnSurvey::ColumnSurvey(const DetectionResult& result, const ImportPlan& plan, SurveySettings settings)
    : result_(result), settings_(std::move(settings)), rows_tracker_({&*plan.row_pattern}) {
    // Detection writes the variables below the row selector, in parentheses when a hint gave it.
    const std::string wrapped = "(" + result.row_selector + ")";
    base_ = result.row_selector;
    for (const auto& v : result.variables)
        if (v.selector.compare(0, wrapped.size(), wrapped) == 0) base_ = wrapped;
    rows_tracker_.reset();

    bound_.emplace("xml", kXmlNamespace);
    bound_.emplace("xmlns", "http://www.w3.org/2000/xmlns/");
    prefixes_.emplace(kXmlNamespace, "xml");
    for (const auto& [prefix, uri] : result.namespaces) {
        bound_.emplace(prefix, uri);
        prefixes_.emplace(uri, prefix);
    }
}

void ColumnSurvey::bind(const std::function<const char*(std::string_view)>& intern) { rows_tracker_.bind(intern); }

void ColumnSurvey::run(InputDocument& input, const parser::ParserSettings& settings, Progress* progress,
                       bool parallel) {
    EventPass pass;
    pass.parallel = parallel;
    pass.bind = [this](const std::function<const char*(std::string_view)>& intern) { bind(intern); };
    if (progress != nullptr) pass.after_chunk = [progress](std::uint64_t input_bytes) { progress->update(input_bytes, 0); };
    pass.run(input, settings, *this);
}

bool ColumnSurvey::start_element(const parser::ElementEvent& element) {
    const std::size_t depth = depth_++;
    if (settings_.detect_namespaces)
        for (int i = 0; i < element.namespace_count; ++i)
            declare(view(element.namespaces[2 * i]), view(element.namespaces[2 * i + 1]));

    std::size_t path = kNone;
    if (in_row_) {
        // Rows do not nest (their path is absolute), so the row tracker has nothing to do in one.
        Frame& parent = frames_[open_ - 1];
        if (!parent.run.empty()) {
            flush(parent);
            parent.wants = wants_text(parent.path);
        }
        if (parent.path != kNone) {
            paths_[parent.path].leaf = false;
            path = find(parent.path, false, element.uri, element.local, element.prefix);
        }
    } else if (!rows_tracker_.open(depth, element.uri, element.local).empty()) {
        if (settings_.max_rows && rows_ >= *settings_.max_rows) return false;
        ++rows_;
        in_row_ = true;
        row_depth_ = depth;
        // Every row joins one entry, named after the first.
        if (paths_.empty()) {
            Path& first = paths_.emplace_back();
            first.has_uri = element.uri != nullptr;
            if (element.uri != nullptr) first.uri = element.uri;
            first.local = element.local;
            if (element.prefix != nullptr) first.prefix = element.prefix;
            first.first_row = rows_;
        }
        path = 0;
    } else {
        return true;
    }

    if (path != kNone) {
        enter(path);
        // An element with attributes is never a leaf, whether or not its attributes are imported.
        if (element.attribute_count > 0) paths_[path].leaf = false;
        if (settings_.import_attributes)
            for (int i = 0; i < element.attribute_count; ++i) {
                const xmlChar* const* a = element.attributes + 5 * i;
                const std::size_t attribute = find(path, true, parser::chars(a[2]), parser::chars(a[0]),
                                                   parser::chars(a[1]));
                if (attribute == kNone) continue;
                enter(attribute);
                sample(attribute, std::string_view(parser::chars(a[3]), static_cast<std::size_t>(a[4] - a[3])));
            }
    }
    // Frames are kept when closed, so their text buffers are allocated once, not per element.
    if (open_ == frames_.size()) frames_.emplace_back();
    Frame& frame = frames_[open_++];
    frame.path = path;
    frame.wants = path != kNone && wants_text(path);
    frame.run.clear();
    return true;
}

bool ColumnSurvey::end_element() {
    const std::size_t depth = --depth_;
    if (!in_row_) {
        rows_tracker_.close(depth);
        return true;
    }
    Frame& frame = frames_[--open_];
    if (!frame.run.empty()) flush(frame);
    if (depth == row_depth_) {
        in_row_ = false;
        rows_tracker_.close(depth);
    }
    return true;
}

void ColumnSurvey::gather(Frame& frame, std::string_view text) {
    // Samples are classified trimmed: blanks that start a run need not be kept, and most runs
    // between the tags of a row are nothing else.
    if (frame.run.empty()) {
        std::size_t start = 0;
        while (start < text.size() && io::text::textio::blank(text[start])) ++start;
        if (start == text.size()) return;
        text.remove_prefix(start);
    }
    frame.run.append(text);
}

std::size_t ColumnSurvey::find(std::size_t parent, bool attribute, const char* uri, const char* local,
                               const char* prefix) {
    // Names are interned, so a name is its pointers. Rows mostly repeat their children in the same
    // order: the child after the last one found is tried first; then a few are scanned, many looked up.
    Path& p = paths_[parent];
    const std::size_t n = p.children.size();
    const auto is = [&](const Child& c) { return c.local == local && c.uri == uri && c.attribute == attribute; };
    const auto found = [&](std::size_t at) {
        p.next_child = at + 1;
        return p.children[at].path;
    };
    if (p.next_child < n && is(p.children[p.next_child])) return found(p.next_child);
    const Key key{parent, attribute, uri, local};
    if (n <= kScannedChildren) {
        for (std::size_t at = 0; at < n; ++at)
            if (is(p.children[at])) return found(at);
    } else if (const auto it = index_.find(key); it != index_.end()) {
        return found(it->second);
    }
    // The rows' own entry is not counted against the limit.
    if (paths_.size() > settings_.max_paths) {
        overflowed_ = true;
        return kNone;
    }
    const std::size_t index = paths_.size();
    Path& path = paths_.emplace_back();  // invalidates p
    path.parent = parent;
    path.attribute = attribute;
    path.has_uri = uri != nullptr;
    if (uri != nullptr) path.uri = uri;
    path.local = local;
    if (prefix != nullptr) path.prefix = prefix;
    path.first_row = rows_;
    auto& children = paths_[parent].children;
    children.push_back({uri, local, attribute, index});
    // Past a few children, each is indexed by its name, to its place among them.
    if (children.size() == kScannedChildren + 1)
        for (std::size_t at = 0; at < children.size(); ++at)
            index_.emplace(Key{parent, children[at].attribute, children[at].uri, children[at].local}, at);
    else if (children.size() > kScannedChildren + 1)
        index_.emplace(key, children.size() - 1);
    paths_[parent].next_child = children.size();
    return index;
}

// One more occurrence of path in the current row.
void ColumnSurvey::enter(std::size_t path) {
    Path& p = paths_[path];
    if (p.last_row != rows_) {
        p.last_row = rows_;
        p.sampled_in_row = false;
    }
}

bool ColumnSurvey::wants_text(std::size_t path) const {
    const Path& p = paths_[path];
    return !p.sampled_in_row && (!p.non_empty || p.vote.samples() < kMaxSamples);
}

// As detection samples: the first non-blank text a name has in a row, once per row.
void ColumnSurvey::sample(std::size_t path, std::string_view value) {
    Path& p = paths_[path];
    if (p.sampled_in_row || (p.non_empty && p.vote.samples() >= kMaxSamples)) return;
    if (io::text::textio::trim_whitespace(value).empty()) return;
    if (p.vote.samples() < kMaxSamples) p.vote.add(settings_.analyzer, value, scratch_);
    p.sampled_in_row = true;
    p.non_empty = true;
}

// Text up to a tag is one text node of the tree detection would have seen.
void ColumnSurvey::flush(Frame& frame) {
    if (frame.path != kNone) sample(frame.path, frame.run);
    frame.run.clear();
}

// A namespace declaration, registered as detection registers those of the whole document.
void ColumnSurvey::declare(std::string_view prefix, std::string_view uri) {
    if (uri.empty() || uri == kXmlNamespace || prefix == "xml") return;
    std::string key(prefix);
    key.push_back('\0');
    key.append(uri);
    if (!declarations_seen_.insert(std::move(key)).second) return;
    const std::string uri_text(uri);
    if (prefixes_.count(uri_text) != 0) {
        // A second prefix for a known URI is registered last, where still free.
        if (!prefix.empty() && bound_.count(std::string(prefix)) == 0) aliases_.emplace_back(prefix, uri_text);
        return;
    }
    const std::string base = prefix.empty() ? std::string("ns") : std::string(prefix);
    std::string free = base;
    if (bound_.count(free) != 0) {
        // Prefixes are never unbound: the count resumes where it stopped.
        unsigned& n = next_number_.try_emplace(base, 2).first->second;
        for (free = base + std::to_string(n); bound_.count(free) != 0;) free = base + std::to_string(++n);
    }
    bind_prefix(free, uri_text);
}

void ColumnSurvey::bind_prefix(const std::string& prefix, const std::string& uri) {
    bound_.emplace(prefix, uri);
    prefixes_.emplace(uri, prefix);
    late_namespaces_.emplace_back(prefix, uri);
}

std::vector<std::pair<std::string, std::string>> ColumnSurvey::late_namespaces() const {
    auto pairs = late_namespaces_;
    std::set<std::string> taken;
    for (const auto& [prefix, uri] : aliases_)
        if (bound_.count(prefix) == 0 && taken.insert(prefix).second) pairs.emplace_back(prefix, uri);
    return pairs;
}

std::string ColumnSurvey::prefix_of(const std::string& uri) const {
    if (uri.empty()) return {};
    const auto it = prefixes_.find(uri);
    return it == prefixes_.end() ? std::string() : it->second;
}

std::string ColumnSurvey::selector(std::size_t path) const {
    if (path == 0) return base_;
    const Path& p = paths_[path];
    std::string step = p.attribute ? "@" : "";
    const std::string prefix = p.has_uri ? prefix_of(p.uri) : std::string();
    if (!prefix.empty()) step += prefix + ":";
    // A name holding ':' cannot be written as a plain step.
    if (p.local.find(':') != std::string::npos) step += "*[local-name()='" + p.local + "']";
    else step += p.local;
    return selector(p.parent) + "/" + step;
}

std::vector<LateColumn> ColumnSurvey::late_columns() const {
    std::set<std::string> known;
    for (const auto& v : result_.variables) known.insert(v.selector);
    std::vector<LateColumn> found;
    for (std::size_t i = 0; i < paths_.size(); ++i) {
        const Path& p = paths_[i];
        if (!is_variable(p)) continue;
        std::string where = selector(i);
        if (known.count(where) != 0) continue;
        std::string name = p.attribute ? "@" : "";
        if (!p.prefix.empty()) name += p.prefix + ":";
        name += p.local;
        found.push_back({{std::move(name), fl::i18n::ustring_to_utf8(io::text::ConvertTolvenTypeToString(p.vote.result())),
                          std::move(where)},
                         p.first_row});
    }
    return found;
}

void ColumnSurvey::revote(std::vector<Variable>& variables) const {
    std::unordered_map<std::string, std::size_t> by_selector;
    for (std::size_t i = 0; i < paths_.size(); ++i) by_selector.emplace(selector(i), i);
    for (auto& v : variables)
        if (const auto it = by_selector.find(v.selector); it != by_selector.end())
            v.type = fl::i18n::ustring_to_utf8(io::text::ConvertTolvenTypeToString(paths_[it->second].vote.result()));
}

}  // namespace tolven::import
