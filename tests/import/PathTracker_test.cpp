#include "import/PathTracker.hpp"

#include <gtest/gtest.h>
#include <libxml/tree.h>
#include <libxml/xpathInternals.h>

#include <set>
#include <string>
#include <variant>

#include "host/utf.hpp"
#include "xml/vcos/load_document.hpp"
#include "xml/xpath/NodeList.hpp"
#include "xml/xpath/make_context.hpp"

namespace {

using tolven::import::PathPattern;
using tolven::import::PathTracker;
namespace xpath = tolven::io::xml::common::xpath;

const char* chars(const xmlChar* s) { return reinterpret_cast<const char*>(s); }

// The elements each pattern matches on a walk of the whole document; with a dictionary, names are
// given as the dictionary's pointers, as a parse gives them.
std::vector<std::set<const xmlNode*>> walk(const xmlDoc* doc, PathTracker& tracker, std::size_t patterns,
                                           xmlDict* dict) {
    const auto name = [dict](const xmlChar* n) { return chars(dict != nullptr ? xmlDictLookup(dict, n, -1) : n); };
    std::vector<std::set<const xmlNode*>> matched(patterns);
    tracker.reset();
    const auto descend = [&](const auto& self, const xmlNode* parent, std::size_t depth) -> void {
        for (const xmlNode* e = parent->children; e != nullptr; e = e->next) {
            if (e->type != XML_ELEMENT_NODE) continue;
            for (const std::size_t p : tracker.open(depth, e->ns ? name(e->ns->href) : nullptr, name(e->name)))
                matched[p].insert(e);
            if (tracker.alive_below(depth)) self(self, e, depth + 1);
            tracker.close(depth);
        }
    };
    descend(descend, reinterpret_cast<const xmlNode*>(doc), 0);
    return matched;
}

TEST(PathTracker, MatchesWhatXPathSelectsWhetherNamesAreTextOrInterned) {
    const auto doc = tolven::io::xml::common::vcos::load_document_from_memory(
        "<t xmlns:p='urn:p'><h/><r><a>1</a><a>2</a><b/></r><p:r><a>3</a></p:r><r><x><a>4</a></x><a>5</a></r>"
        "<r/><q><a>6</a></q></t>",
        "t.xml");
    const std::vector<std::string> selectors = {
        "/t/r",     "/t/r[2]",    "/t/*/a",  "/t/r/a",      "/t/r[2]/a", "/t/*[local-name()='r']/a",
        "/t/p:r/a", "/t/r/a[2]",  "/t/*[3]", "/t/r[1]/b",   "/t/r/x/a",  "/t/r",
    };
    std::vector<PathPattern> patterns;
    std::vector<const PathPattern*> pointers;
    for (const auto& s : selectors)
        patterns.push_back(std::get<PathPattern>(tolven::import::compile_path(s, false, {{"p", "urn:p"}})));
    for (const auto& p : patterns) pointers.push_back(&p);

    auto context = xpath::make_context(doc->doc());
    xmlXPathRegisterNs(context.get(), reinterpret_cast<const xmlChar*>("p"),
                       reinterpret_cast<const xmlChar*>("urn:p"));
    PathTracker text(pointers), interned(pointers);
    xmlDict* dict = doc->doc()->dict;
    interned.bind([dict](std::string_view n) {
        return chars(xmlDictLookup(dict, reinterpret_cast<const xmlChar*>(n.data()), static_cast<int>(n.size())));
    });
    const auto by_text = walk(doc->doc().get(), text, patterns.size(), nullptr);
    const auto by_pointer = walk(doc->doc().get(), interned, patterns.size(), dict);
    for (std::size_t i = 0; i < selectors.size(); ++i) {
        const xpath::NodeList expected(context, fl::i18n::utf8_to_ustring(selectors[i]));
        std::set<const xmlNode*> nodes;
        for (std::size_t k = 0; k < expected.size(); ++k) nodes.insert(expected.get_node_at_index(k));
        EXPECT_EQ(by_text[i], nodes) << selectors[i];
        EXPECT_EQ(by_pointer[i], nodes) << selectors[i];
    }
}

}  // namespace
