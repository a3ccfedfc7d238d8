#include "detection/variables/node_helpers.hpp"

#include <gtest/gtest.h>

#include "detection/support/detect_helpers.hpp"

namespace {

using tolven::io::xml::common::xpath::NamespaceMap;
using tolven::io::xml::detection::variables::make_child_selector;
using tolven::io::xml::detection::variables::make_name_step;

class NodeHelpers : public ::testing::Test {
protected:
    void SetUp() override {
        doc_ = tolven::testing::parse_xml(
            R"(<r xmlns:x="urn:b"><x:price id="7" x:cur="EUR">1</x:price><plain/></r>)");
        root_ = xmlDocGetRootElement(doc_->doc().get());
        price_ = xmlFirstElementChild(const_cast<xmlNode*>(root_));
        plain_ = xmlNextElementSibling(const_cast<xmlNode*>(price_));
    }
    const xmlNode* attribute(int i) const {
        const xmlAttr* a = price_->properties;
        while (i-- > 0) a = a->next;
        return reinterpret_cast<const xmlNode*>(a);
    }
    std::shared_ptr<tolven::io::xml::common::vcos::DocWrapper> doc_;
    const xmlNode* root_ = nullptr;
    const xmlNode* price_ = nullptr;
    const xmlNode* plain_ = nullptr;
    NamespaceMap namespaces_{{"urn:b", "b"}};
};

TEST_F(NodeHelpers, StepsUseTheRegisteredPrefixNotTheWrittenOne) {
    EXPECT_EQ(make_name_step(price_, namespaces_), u"b:price");
    EXPECT_EQ(make_name_step(plain_, namespaces_), u"plain");
    // Unregistered namespace: the local name alone.
    EXPECT_EQ(make_name_step(price_, NamespaceMap{}), u"price");
}

TEST_F(NodeHelpers, AttributeStepsHaveNoAtSignButChildSelectorsAddIt) {
    EXPECT_EQ(make_name_step(attribute(0), namespaces_), u"id");
    EXPECT_EQ(make_name_step(attribute(1), namespaces_), u"b:cur");
    EXPECT_EQ(make_child_selector(attribute(0), u"/r/b:price", namespaces_), u"/r/b:price/@id");
    EXPECT_EQ(make_child_selector(price_, u"/r", namespaces_), u"/r/b:price");
}

TEST_F(NodeHelpers, NameHoldingAColonIsMatchedByLocalName) {
    xmlNode* odd = xmlNewNode(nullptr, BAD_CAST "a:b");
    EXPECT_EQ(make_name_step(odd, namespaces_), u"*[local-name()='a:b']");
    xmlFreeNode(odd);
}

}  // namespace
