// Rectangles of the planes, and delivery system descriptors.
#include <gtest/gtest.h>

#include "television/Geometry.h"

inline bool operator==(const TPTRect& a, const TPTRect& b) {
    return a.x == b.x && a.y == b.y && a.width == b.width && a.height == b.height;
}

namespace television {
namespace {

constexpr double kWide = 16.0 / 9.0, kOld = 4.0 / 3.0;

TEST(Geometry, FitsThePictureIntoTheMiddle) {
    EXPECT_EQ(Fit({0, 0, 1280, 720}, kWide), (TPTRect{0, 0, 1280, 720}));
    EXPECT_EQ(Fit({0, 0, 1280, 720}, kOld), (TPTRect{160, 0, 960, 720}));
    EXPECT_EQ(Fit({10, 20, 300, 300}, kWide), (TPTRect{10, 85, 300, 169}));
    EXPECT_EQ(Fit({-100, -50, 640, 360}, kOld), (TPTRect{-20, -50, 480, 360}));
}

TEST(Geometry, LeavesARectangleWithoutAreaAlone) {
    EXPECT_EQ(Fit({5, 6, 0, 100}, kWide), (TPTRect{5, 6, 0, 100}));
    EXPECT_EQ(Fit({5, 6, 100, 100}, 0), (TPTRect{5, 6, 100, 100}));
}

TEST(Geometry, ScalesEdgesSoThatNeighboursStillTouch) {
    const TPTRect from{0, 0, 1280, 720}, to{0, 0, 1920, 1080};
    TPTRect left, right;
    EXPECT_TRUE(Convert({0, 0, 333, 720}, from, to, left));
    EXPECT_TRUE(Convert({333, 0, 947, 720}, from, to, right));
    EXPECT_EQ(left.x + left.width, right.x);
    EXPECT_EQ(right.x + right.width, 1920);
    EXPECT_TRUE(Convert({-10, -20, 1280, 720}, from, to, left));
    EXPECT_EQ(left, (TPTRect{-15, -30, 1920, 1080}));
}

TEST(Geometry, WritesTheRectangleEvenWhenItCannotConvert) {
    TPTRect result{};
    EXPECT_FALSE(Convert({1, 2, 3, 4}, {0, 0, 0, 720}, {0, 0, 1920, 1080}, result));
    EXPECT_EQ(result, (TPTRect{1, 2, 3, 4}));
}

}  // namespace
}  // namespace television
