#include "browser/tour/PictureCheck.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

namespace browser {

namespace {

constexpr double kLeastShareOfHole = 0.25;  // of the object's rectangle: the page may lay panels over a part
constexpr double kLeastSpread = 4;          // standard deviation of the brightness
constexpr double kLeastBrightness = 8;
constexpr double kTolerance = 12;           // mean difference of a colour: pictures are scaled in more than one step
constexpr double kEdge = 2;                 // pixels along the edges that scaling mixes with what lies beside

QRectF Fit(const QRectF& object, double aspectRatio) {
    const QSizeF size = QSizeF(aspectRatio, 1).scaled(object.size(), Qt::KeepAspectRatio);
    QRectF fitted(QPointF(), size);
    fitted.moveCenter(object.center());
    return fitted;
}

QImage Expected(const ScreenAndPicture& seen, const QRectF& place) {
    QImage image(seen.screen.size(), QImage::Format_RGB32);
    image.fill(Qt::black);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(place, seen.picture);
    return image;
}

int Difference(QRgb one, QRgb other) {
    return std::abs(qRed(one) - qRed(other)) + std::abs(qGreen(one) - qGreen(other)) +
           std::abs(qBlue(one) - qBlue(other));
}

struct Statistics {
    double pixels = 0, brightness = 0, brightnessSquared = 0, difference = 0;

    void Add(QRgb shown, QRgb expected) {
        const double gray = qGray(shown);
        pixels += 1;
        brightness += gray;
        brightnessSquared += gray * gray;
        difference += Difference(shown, expected) / 3.0;
    }
    double Brightness() const { return brightness / pixels; }
    double Spread() const { return std::sqrt(std::max(0.0, brightnessSquared / pixels - Brightness() * Brightness())); }
    double MeanDifference() const { return difference / pixels; }
};

// Over the fully transparent pixels of the page inside the picture's place.
Statistics LookThroughHole(const ScreenAndPicture& seen, const QRectF& place) {
    const QRect inside = place.adjusted(kEdge, kEdge, -kEdge, -kEdge).toRect() & seen.screen.rect();
    const QImage expected = Expected(seen, place);
    Statistics statistics;
    for (int y = inside.top(); y <= inside.bottom(); ++y) {
        for (int x = inside.left(); x <= inside.right(); ++x) {
            if (qAlpha(seen.graphics.pixel(x, y)) == 0) {
                statistics.Add(seen.screen.pixel(x, y), expected.pixel(x, y));
            }
        }
    }
    return statistics;
}

}  // namespace

QString WhyNoPicture(const ScreenAndPicture& seen) {
    if (seen.object.isEmpty()) {
        return QStringLiteral("the object has no size");
    }
    const Statistics through = LookThroughHole(seen, Fit(seen.object, seen.aspectRatio));
    if (through.pixels < kLeastShareOfHole * seen.object.width() * seen.object.height()) {
        return QStringLiteral("the page is not transparent where the object lies");
    }
    if (through.Brightness() < kLeastBrightness || through.Spread() < kLeastSpread) {
        return QStringLiteral("the screen is black or of one colour where the object lies");
    }
    if (through.MeanDifference() > kTolerance) {
        return QStringLiteral("the screen shows something else than the television's picture where the object lies "
                              "(colours differ by %1 on average)").arg(through.MeanDifference(), 0, 'f', 1);
    }
    return {};
}

}  // namespace browser
