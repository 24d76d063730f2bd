#include "browser/planes/GraphicsPlane.h"

#include <QPainter>
#include <QWebFrame>
#include <utility>

#include "browser/planes/Geometry.h"

namespace browser {

GraphicsPlane::GraphicsPlane(QWebPage& page, QObject* parent)
    : QObject(parent), m_page(page), m_image(kGraphicsPlane, QImage::Format_ARGB32_Premultiplied),
      m_dirty(m_image.rect()) {
    connect(&page, &QWebPage::repaintRequested, this, &GraphicsPlane::Spoil);
    // What was scrolled is painted again rather than moved: a moved hole would not be where the video is.
    connect(&page, &QWebPage::scrollRequested, this, [this] { Spoil(m_image.rect()); });
}

void GraphicsPlane::Spoil(const QRect& rectangle) {
    const QRect visible = rectangle & m_image.rect();
    if (!visible.isEmpty()) {
        m_dirty += visible;
        Q_EMIT changed(visible);
    }
}

const QImage& GraphicsPlane::Image() {
    // The page may lay itself out while it is painted and report more: that stays for the next time.
    const QRegion dirty = std::exchange(m_dirty, {});
    if (!dirty.isEmpty()) {
        QPainter painter(&m_image);
        painter.setClipRegion(dirty);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.fillRect(m_image.rect(), Qt::transparent);
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
        painter.setClipping(false);
        m_page.mainFrame()->render(&painter, dirty);
    }
    return m_image;
}

void GraphicsPlane::Refresh() {
    m_dirty = m_image.rect();
    Image();
}

}  // namespace browser
