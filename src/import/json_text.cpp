#include "import/json_text.hpp"

namespace tolven::import {

namespace {

// Hands runs of characters that need no escape to append unchanged, in one piece each.
template <class Append>
void escape_json(std::string_view text, Append append) {
    static constexpr char hex[] = "0123456789abcdef";
    append(std::string_view("\"", 1));
    std::size_t start = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto c = static_cast<unsigned char>(text[i]);
        if (c >= 0x20 && c != '"' && c != '\\') continue;
        append(text.substr(start, i - start));
        start = i + 1;
        switch (c) {
            case '"': append(std::string_view("\\\"")); break;
            case '\\': append(std::string_view("\\\\")); break;
            case '\n': append(std::string_view("\\n")); break;
            case '\r': append(std::string_view("\\r")); break;
            case '\t': append(std::string_view("\\t")); break;
            default: {
                const char escape[] = {'\\', 'u', '0', '0', hex[c >> 4], hex[c & 0xF]};
                append(std::string_view(escape, sizeof escape));
            }
        }
    }
    append(text.substr(start));
    append(std::string_view("\"", 1));
}

}  // namespace

void write_json_string(OutputStream& out, std::string_view text) {
    escape_json(text, [&out](std::string_view piece) { out.append(piece); });
}

std::string json_string(std::string_view text) {
    std::string s;
    escape_json(text, [&s](std::string_view piece) { s.append(piece); });
    return s;
}

void write_json_value(OutputStream& out, const Cell& cell) {
    switch (cell.kind) {
        case Cell::Kind::Missing: out.append("null"); break;
        case Cell::Kind::Number: out.append(cell.text); break;
        case Cell::Kind::Text: write_json_string(out, cell.text); break;
        case Cell::Kind::List:
            out.put('[');
            for (std::size_t k = 0; k < cell.items.size(); ++k) {
                if (k > 0) out.put(',');
                write_json_value(out, cell.items[k]);
            }
            out.put(']');
            break;
    }
}

}  // namespace tolven::import
