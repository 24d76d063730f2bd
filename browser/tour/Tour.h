// The tour: drives the page's video/broadcast object through a fixed course (tour.js) and judges what is seen.
#pragma once

#include <QJsonObject>
#include <QObject>

#include "browser/page/Page.h"
#include "browser/planes/TvWindow.h"

namespace browser {

class Tour : public QObject {
    Q_OBJECT

public:
    // The screenshot is taken when the picture is seen; an empty name: none.
    Tour(Page& page, TvWindow& window, const QString& screenshot);

    void Start();

    // The script's side.
public Q_SLOTS:
    void event(const QString& json);
    void step(const QString& text);
    // Whether the picture is seen in that part of the page: an empty text, or why it is not.
    QString picture(double left, double top, double width, double height);
    void done(bool ok, const QString& text);

public:
    using QObject::event;

Q_SIGNALS:
    void scriptEvent(const QJsonObject& event);
    // A line for the one who watches.
    void line(const QString& text);
    void ended(bool ok);

private:
    bool TakeScreenshot();

    Page& m_page;
    TvWindow& m_window;
    const QString m_screenshot;
    bool m_pictureSeen = false;
    bool m_ended = false;
};

}  // namespace browser
