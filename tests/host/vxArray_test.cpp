#include "host/vxArray.hpp"

#include <gtest/gtest.h>

namespace {

struct Counted : vxObject {
    explicit Counted(int& alive) : alive_(alive) { ++alive_; }
    ~Counted() override { --alive_; }
    std::string_view class_name() const noexcept override { return "Counted"; }
    int& alive_;
};

TEST(vxArray, StructFieldsKeepOrderAndOwnTheirValues) {
    int alive = 0;
    {
        vxArrayPtr s = do_create_struct();
        EXPECT_EQ(vxAddField(s.get(), "b"), 0u);
        EXPECT_EQ(vxAddField(s.get(), "a"), 1u);
        EXPECT_EQ(vxAddField(s.get(), "b"), 0u);
        EXPECT_EQ(vxGetField(s.get(), 0, "a"), nullptr);  // added, never set
        vxSetField(s.get(), 0, "a", do_create_object(std::make_shared<Counted>(alive)).release());
        EXPECT_EQ(alive, 1);
        vxSetField(s.get(), 0, "a", do_create_char(u"x").release());  // the replaced value is released
        EXPECT_EQ(alive, 0);
        vxSetField(s.get(), 0, "b", do_create_object(std::make_shared<Counted>(alive)).release());
        EXPECT_EQ(vxGetNumberOfFields(s.get()), 2u);
        EXPECT_STREQ(vxGetFieldNameByNumber(s.get(), 0), "b");
        EXPECT_EQ(vxGetField(s.get(), 0, "missing"), nullptr);
        EXPECT_EQ(vxGetField(s.get(), 1, "a"), nullptr);
        EXPECT_THROW(vxSetField(s.get(), 0, "missing", do_create_char(u"y").release()), std::invalid_argument);
    }
    EXPECT_EQ(alive, 0);
}

TEST(vxArray, SharedArraysLiveUntilTheirLastReference) {
    int alive = 0;
    vxArrayPtr object = do_create_object(std::make_shared<Counted>(alive));
    vxArray* shared = vxShareArray(object.get());
    object.reset();
    EXPECT_EQ(alive, 1);
    EXPECT_EQ(vxGetObject(shared)->class_name(), "Counted");
    destroyArray(shared);
    EXPECT_EQ(alive, 0);
}

}  // namespace
