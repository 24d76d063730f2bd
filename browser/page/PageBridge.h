// What the scripts of the page environment ask and tell the program. Pages never see it: the scripts keep it to
// themselves. There is one for each window of a page.
#pragma once

#include <QObject>
#include <QVariant>

#include "browser/page/BridgeHost.h"

namespace browser {

class PageBridge : public QObject {
    Q_OBJECT

public:
    explicit PageBridge(BridgeHost& host, QObject* parent = nullptr) : QObject(parent), m_host(host) {}

    using QObject::event;

public Q_SLOTS:
    // Whether the plug-in was given this key to construct objects with.
    bool isKey(const QString& key) const;

    // The channel list, and one of its services by id (null when there is none).
    QVariantList services() const;
    QVariant service(unsigned int id) const;
    // 0 when the television shows none.
    unsigned int currentService() const;
    // The present event, then the following one.
    QVariantList programmes(unsigned int id) const;

    QVariantMap settings() const;
    double freeMemory() const;

    void log(const QString& text);
    // Something that the page saw or says, a JSON object: printed, written with --events, and read in test runs.
    void event(const QString& json);
    void setKeyset(unsigned int mask);
    void openUrl(const QString& url);
    void quit(int status);

    // The mean colour of a rectangle of the screen: red, green, blue, and the number of pixels.
    QVariantMap pixels(int x, int y, int width, int height) const;
    QString remote(const QString& line);
    // How many channel changes came to a picture or sound, and how many milliseconds the last one took.
    QVariantMap tuneTimes() const;
    // The milliseconds since the last stream event came that the page listens for.
    double sinceStreamEvent() const;

Q_SIGNALS:
    void servicesChanged();

private:
    BridgeHost& m_host;
};

}  // namespace browser
