#include "browser/planes/TvWindow.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QRegion>

#include "browser/planes/Geometry.h"
#include "browser/planes/SubtitlePlane.h"
#include "browser/planes/VideoPlane.h"

namespace browser {

namespace {

// The page's own background is transparent: where nothing is drawn, the video shows.
void MakeTransparent(QWebPage& page) {
    QPalette palette = page.palette();
    palette.setBrush(QPalette::Base, Qt::transparent);
    page.setPalette(palette);
}

}  // namespace

TvWindow::TvWindow(QWebPage& page) : m_page(page), m_graphics(page) {
    MakeTransparent(page);
    page.setView(this);
    page.setViewportSize(kGraphicsPlane);
    setWindowTitle(QStringLiteral("TV browser"));
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    resize(kGraphicsPlane);
    connect(&m_graphics, &GraphicsPlane::changed, this,
            [this](const QRect& part) { update(GraphicsOnStage(part, StageIn(size()))); });
}

QImage TvWindow::Composed() {
    QImage image(kGraphicsPlane, QImage::Format_RGB32);
    QPainter painter(&image);
    m_graphics.Refresh();
    PaintPlanes(painter, image.rect());
    return image;
}

void TvWindow::PaintPlanes(QPainter& painter, const QRect& stage) {
    PaintVideoPlane(painter, stage);
    PaintSubtitlePlane(painter, stage);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, stage.size() != kGraphicsPlane);
    painter.drawImage(stage, m_graphics.Image());
}

void TvWindow::PaintNotice(QPainter& painter) {
    if (m_notice.isEmpty()) {
        return;
    }
    QFont font = painter.font();
    font.setPixelSize(qMax(12, height() / 36));
    painter.setFont(font);
    const QRect text = painter.fontMetrics().boundingRect(rect(), Qt::AlignCenter, m_notice);
    painter.fillRect(text.adjusted(-24, -16, 24, 16), QColor(16, 24, 40, 224));
    painter.setPen(Qt::white);
    painter.drawText(text, Qt::AlignLeft | Qt::AlignVCenter, m_notice);
}

void TvWindow::SetNotice(const QString& notice) {
    m_notice = notice;
    update();
}

void TvWindow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QRect stage = StageIn(size());
    const QRegion aside = QRegion(rect()) - stage;
    for (const QRect& bar : aside) {
        painter.fillRect(bar, Qt::black);
    }
    PaintPlanes(painter, stage);
    PaintNotice(painter);
}

void TvWindow::resizeEvent(QResizeEvent*) {
    update();
}

void TvWindow::PictureChanged() {
    if (!m_pictureUpdatePending.exchange(true)) {
        QMetaObject::invokeMethod(this, [this] { UpdatePicture(); }, Qt::QueuedConnection);
    }
}

void TvWindow::UpdatePicture() {
    m_pictureUpdatePending = false;
    update(PictureOnStage(StageIn(size())));
}

void TvWindow::LayoutChanged() {
    QMetaObject::invokeMethod(this, [this] { update(); }, Qt::QueuedConnection);
}

void TvWindow::keyPressEvent(QKeyEvent* event) {
    Q_EMIT keyPressed(event);
}

void TvWindow::keyReleaseEvent(QKeyEvent* event) {
    Q_EMIT keyReleased(event);
}

void TvWindow::ForwardMouse(QMouseEvent* event) {
    const QPointF point = WindowToGraphics(event->localPos(), StageIn(size()));
    QMouseEvent onPlane(event->type(), point, event->windowPos(), event->screenPos(), event->button(),
                        event->buttons(), event->modifiers());
    m_page.event(&onPlane);
}

void TvWindow::mouseMoveEvent(QMouseEvent* event) {
    ForwardMouse(event);
}

void TvWindow::mousePressEvent(QMouseEvent* event) {
    ForwardMouse(event);
}

void TvWindow::mouseReleaseEvent(QMouseEvent* event) {
    ForwardMouse(event);
}

void TvWindow::focusInEvent(QFocusEvent* event) {
    m_page.event(event);
}

void TvWindow::focusOutEvent(QFocusEvent* event) {
    m_page.event(event);
}

bool TvWindow::focusNextPrevChild(bool) {
    return false;  // Tab is the page's
}

void TvWindow::closeEvent(QCloseEvent* event) {
    QWidget::closeEvent(event);
    Q_EMIT closed();
}

}  // namespace browser
