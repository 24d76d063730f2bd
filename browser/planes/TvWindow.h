// The television's screen on the desk: the video plane, the subtitles over it and the graphics plane over both, scaled
// to the window.
#pragma once

#include <QImage>
#include <QWebPage>
#include <QWidget>
#include <atomic>

#include "browser/planes/GraphicsPlane.h"

namespace browser {

class TvWindow : public QWidget {
    Q_OBJECT

public:
    explicit TvWindow(QWebPage& page);

    // What the window shows, at the size of the graphics plane, whatever the window's own size.
    QImage Composed();
    // The page's part of it alone.
    const QImage& Graphics() { return m_graphics.Image(); }

    // A text over the picture, for example while the stream is read; empty: none.
    void SetNotice(const QString& notice);

    // Threads of the television: there is another picture, or another place for it.
    void PictureChanged();
    void LayoutChanged();

Q_SIGNALS:
    void keyPressed(QKeyEvent* event);
    void keyReleased(QKeyEvent* event);
    void closed();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void PaintPlanes(QPainter& painter, const QRect& stage);
    void PaintNotice(QPainter& painter);
    void ForwardMouse(QMouseEvent* event);
    void UpdatePicture();

    QWebPage& m_page;
    GraphicsPlane m_graphics;
    QString m_notice;
    std::atomic<bool> m_pictureUpdatePending = false;
};

}  // namespace browser
