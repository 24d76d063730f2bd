// The judgement whether a picture is seen through an object, and mean colours.
#include "browser/tour/PictureCheck.h"

#include <gtest/gtest.h>

#include <QPainter>

#include "browser/planes/MeanColour.h"
#include "tests/browser/Printing.h"

namespace browser {

namespace {

const QRectF kObject(320, 180, 640, 360);
const QColor kPage(32, 64, 96);

// A picture with a gradient in each direction, so that a wrong place shows.
QImage MakePicture() {
    QImage picture(640, 360, QImage::Format_RGB32);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            picture.setPixel(x, y, qRgb(x * 255 / 640, y * 255 / 360, 128));
        }
    }
    return picture;
}

// A page with a hole where the object lies, and the picture in that place.
ScreenAndPicture Seen(const QRectF& shownAt) {
    ScreenAndPicture seen;
    seen.picture = MakePicture();
    seen.object = kObject;
    seen.graphics = QImage(1280, 720, QImage::Format_ARGB32_Premultiplied);
    seen.graphics.fill(kPage);
    QPainter hole(&seen.graphics);
    hole.setCompositionMode(QPainter::CompositionMode_Source);
    hole.fillRect(kObject, Qt::transparent);
    hole.end();
    seen.screen = QImage(1280, 720, QImage::Format_RGB32);
    seen.screen.fill(Qt::black);
    QPainter screen(&seen.screen);
    screen.drawImage(shownAt, seen.picture);
    screen.drawImage(0, 0, seen.graphics);
    return seen;
}

TEST(PictureCheck, APictureInTheObjectsPlaceIsSeen) {
    EXPECT_EQ(WhyNoPicture(Seen(kObject)), QString());
}

TEST(PictureCheck, APictureElsewhereIsNot) {
    EXPECT_NE(WhyNoPicture(Seen(kObject.translated(-120, 0))), QString());
    EXPECT_NE(WhyNoPicture(Seen({0, 0, 1280, 720})), QString());
}

TEST(PictureCheck, APageThatCoversTheObjectHidesIt) {
    ScreenAndPicture seen = Seen(kObject);
    seen.graphics.fill(kPage);
    EXPECT_TRUE(WhyNoPicture(seen).contains("not transparent"));
}

TEST(PictureCheck, APanelOverAPartOfTheObjectDoesNoHarm) {
    ScreenAndPicture seen = Seen(kObject);
    for (QImage* image : {&seen.graphics, &seen.screen}) {
        QPainter(image).fillRect(QRect(320, 400, 640, 140), Qt::green);
    }
    EXPECT_EQ(WhyNoPicture(seen), QString());
}

TEST(PictureCheck, BlackAndPlainScreensShowNoPicture) {
    ScreenAndPicture seen = Seen(kObject);
    seen.screen.fill(Qt::black);
    EXPECT_NE(WhyNoPicture(seen), QString());
    seen.screen.fill(Qt::gray);
    EXPECT_NE(WhyNoPicture(seen), QString());
}

TEST(PictureCheck, AnObjectWithoutSizeShowsNone) {
    ScreenAndPicture seen = Seen(kObject);
    seen.object = {};
    EXPECT_NE(WhyNoPicture(seen), QString());
}

TEST(PictureCheck, APictureOfAnotherShapeIsFittedIntoTheObject) {
    ScreenAndPicture seen = Seen({400, 180, 480, 360});
    seen.aspectRatio = 4.0 / 3.0;
    EXPECT_EQ(WhyNoPicture(seen), QString());
    seen.aspectRatio = 16.0 / 9.0;
    EXPECT_NE(WhyNoPicture(seen), QString());
}

TEST(MeanColour, IsTakenOverThePartInsideTheImage) {
    QImage image(4, 2, QImage::Format_RGB32);
    image.fill(qRgb(10, 20, 30));
    image.setPixel(0, 0, qRgb(50, 20, 30));
    const MeanColour all = MeanColourOf(image, {0, 0, 2, 2});
    EXPECT_EQ(all.red, 20);
    EXPECT_EQ(all.green, 20);
    EXPECT_EQ(all.pixels, 4);
    EXPECT_EQ(MeanColourOf(image, {3, 1, 100, 100}).pixels, 1);
    EXPECT_EQ(MeanColourOf(image, {10, 10, 5, 5}).pixels, 0);
}

}  // namespace

}  // namespace browser
