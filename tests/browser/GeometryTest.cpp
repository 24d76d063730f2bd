// Where the planes lie in a window.
#include "browser/planes/Geometry.h"

#include <gtest/gtest.h>

#include "tests/browser/Printing.h"

namespace browser {

namespace {

TEST(Geometry, AWindowOfThePlanesShapeIsAllStage) {
    EXPECT_EQ(StageIn({1280, 720}), QRect(0, 0, 1280, 720));
    EXPECT_EQ(StageIn({1920, 1080}), QRect(0, 0, 1920, 1080));
}

TEST(Geometry, OtherWindowsHaveBarsOnTwoSides) {
    EXPECT_EQ(StageIn({1280, 800}), QRect(0, 40, 1280, 720));
    EXPECT_EQ(StageIn({1480, 720}), QRect(100, 0, 1280, 720));
}

TEST(Geometry, TheVideoPlaneFillsTheStage) {
    const QRect stage(0, 40, 1280, 720);
    EXPECT_EQ(VideoOnStage({0, 0, 1920, 1080}, stage), stage);
    EXPECT_EQ(VideoOnStage({960, 540, 960, 540}, stage), QRect(640, 400, 640, 360));
    EXPECT_EQ(VideoOnStage({-150, 0, 300, 150}, stage), QRect(-100, 40, 200, 100));
}

TEST(Geometry, ChangedGraphicsCoverWholePixelsOfTheStage) {
    EXPECT_EQ(GraphicsOnStage({10, 10, 10, 10}, {0, 0, 1280, 720}), QRect(10, 10, 10, 10));
    EXPECT_EQ(GraphicsOnStage({1, 1, 1, 1}, {0, 0, 640, 360}), QRect(0, 0, 1, 1));
}

TEST(Geometry, APointOfTheWindowIsFoundOnTheGraphicsPlane) {
    EXPECT_EQ(WindowToGraphics({320, 220}, {0, 40, 640, 360}), QPointF(640, 360));
}

}  // namespace

}  // namespace browser
