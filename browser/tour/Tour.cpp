#include "browser/tour/Tour.h"

#include <QJsonDocument>
#include <QWebFrame>
#include <utility>

#include "browser/Resource.h"
#include "browser/planes/Geometry.h"
#include "browser/tour/PictureCheck.h"
#include "television/Television.h"

namespace browser {

namespace {

using television::Television;

// What the window paints, at the size of the graphics plane.
QImage Screen(TvWindow& window) {
    const QImage screen = window.grab().toImage();
    const QRect stage = StageIn(window.size());
    return screen.copy(stage).scaled(kGraphicsPlane, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

QString Describe(const QJsonObject& event) {
    QJsonObject details = event;
    const QString type = details.take(QStringLiteral("type")).toString();
    details.remove(QStringLiteral("source"));
    return QStringLiteral("    %1 %2").arg(type, QString::fromUtf8(QJsonDocument(details).toJson(QJsonDocument::Compact)));
}

}  // namespace

Tour::Tour(Page& page, TvWindow& window, const QString& screenshot)
    : m_page(page), m_window(window), m_screenshot(screenshot) {}

void Tour::Start() {
    m_page.mainFrame()->addToJavaScriptWindowObject(QStringLiteral("__tour"), this);
    m_page.Evaluate(ReadResource(QStringLiteral("tour/tour.js")));
    m_page.Evaluate(QStringLiteral("delete window.__tour"));
}

void Tour::event(const QString& json) {
    const QJsonObject details = QJsonDocument::fromJson(json.toUtf8()).object();
    Q_EMIT scriptEvent(details);
    Q_EMIT line(Describe(details));
}

void Tour::step(const QString& text) {
    Q_EMIT line(QStringLiteral("  ") + text);
}

// The television's next picture may come while the window is painted: then the window shows one or the other.
QString Tour::picture(double left, double top, double width, double height) {
    const auto before = Television::Instance().CurrentPicture();
    const QImage screen = Screen(m_window);
    const auto after = Television::Instance().CurrentPicture();
    QString reason = QStringLiteral("the television shows none");
    for (const auto& shown : {before, after}) {
        if (shown == nullptr || reason.isEmpty()) {
            continue;
        }
        const QImage image(shown->pixels, shown->width, shown->height, shown->stride, QImage::Format_RGB32);
        reason = WhyNoPicture({screen, m_window.Graphics(), image, shown->aspectRatio,
                               QRectF(left, top, width, height)});
    }
    if (reason.isEmpty() && !TakeScreenshot()) {
        return QStringLiteral("the screenshot cannot be written to ") + m_screenshot;
    }
    if (reason.isEmpty()) {
        m_pictureSeen = true;
        Q_EMIT line(QStringLiteral("    the picture is seen through the object"));
    }
    return reason;
}

bool Tour::TakeScreenshot() {
    return m_screenshot.isEmpty() || m_window.Composed().save(m_screenshot);
}

void Tour::done(bool ok, const QString& text) {
    if (!std::exchange(m_ended, true)) {
        const bool passed = ok && m_pictureSeen;
        Q_EMIT line((passed ? QStringLiteral("Tour passed: ") : QStringLiteral("Tour failed: ")) + text);
        Q_EMIT ended(passed);
    }
}

}  // namespace browser
