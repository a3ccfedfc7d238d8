#include "cli/import/RowSink.hpp"

#include <algorithm>
#include <ostream>

#include "text/textio/trim.hpp"

namespace tolven::cli::import {

using io::text::textio::trim_whitespace;

RowSink::RowSink(std::vector<Column> columns, const io::text::typedetection::TypeAnalyzerOptions& options,
                 TableWriter& writer, std::optional<std::uint64_t> head)
    : columns_(std::move(columns)), counts_(columns_.size()), cells_(columns_.size()), writer_(writer), head_(head) {
    converters_.reserve(columns_.size());
    for (const auto& c : columns_) converters_.emplace_back(c.type, options);
}

void RowSink::begin() {
    std::vector<std::string> names;
    names.reserve(columns_.size());
    for (const auto& c : columns_) names.push_back(c.name);
    writer_.begin(names);
}

bool RowSink::accept(std::span<const RawValue> values) {
    if (full()) return false;
    for (std::size_t i = 0; i < cells_.size(); ++i) {
        const RawValue& v = values[i];
        if (!v.present) {
            ++counts_[i].missing;
            cells_[i] = {};
            continue;
        }
        const std::string_view text = trim_whitespace(v.text);
        cells_[i] = converters_[i].convert(text);
        if (cells_[i].kind == Cell::Kind::Missing) ++(text.empty() ? counts_[i].missing : counts_[i].unconvertible);
    }
    writer_.write_row(cells_);
    ++rows_;
    return !full();
}

void RowSink::end() { writer_.end(); }

void RowSink::write_summary(std::ostream& out) const {
    out << "tolven-xml: " << rows_ << (rows_ == 1 ? " row, " : " rows, ") << columns_.size()
        << (columns_.size() == 1 ? " column\n" : " columns\n");
    std::size_t name_width = 6, type_width = 4;
    for (const auto& c : columns_) {
        name_width = std::max(name_width, c.name.size());
        type_width = std::max(type_width, c.type.size());
    }
    auto pad = [](const std::string& s, std::size_t width) { return s + std::string(width - s.size() + 2, ' '); };
    out << "  " << pad("column", name_width) << pad("type", type_width) << "missing  unconvertible\n";
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        const std::string missing = std::to_string(counts_[i].missing);
        out << "  " << pad(columns_[i].name, name_width) << pad(columns_[i].type, type_width)
            << std::string(missing.size() < 7 ? 7 - missing.size() : 0, ' ') << missing << "  "
            << std::string(13 - std::min<std::size_t>(13, std::to_string(counts_[i].unconvertible).size()), ' ')
            << counts_[i].unconvertible << '\n';
    }
}

}  // namespace tolven::cli::import
