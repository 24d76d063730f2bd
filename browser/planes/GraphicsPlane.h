// The graphics plane: the page painted into an image with alpha.
//
// Only what the page reports as changed is painted again, so that a new video picture 25 times a second costs no
// painting of the page (and no reading of plug-in surfaces).
#pragma once

#include <QImage>
#include <QObject>
#include <QRegion>
#include <QWebPage>

namespace browser {

class GraphicsPlane : public QObject {
    Q_OBJECT

public:
    explicit GraphicsPlane(QWebPage& page, QObject* parent = nullptr);

    // Brought up to date by the call, as far as the page has reported changes.
    const QImage& Image();
    // Paints the whole anew: while a page loads, Qt WebKit reports its changes with a delay.
    void Refresh();

Q_SIGNALS:
    void changed(const QRect& rectangle);

private:
    void Spoil(const QRect& rectangle);

    QWebPage& m_page;
    QImage m_image;
    QRegion m_dirty;
};

}  // namespace browser
