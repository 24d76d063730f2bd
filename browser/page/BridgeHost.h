// What the page's bridge needs of the program around it.
#pragma once

#include <QImage>
#include <QJsonObject>
#include <QString>

namespace browser {

// What the viewer has set up on the television.
struct ViewerSettings {
    QString audioLanguage = QStringLiteral("eng");
    QString subtitleLanguage = QStringLiteral("eng");
    QString countryId = QStringLiteral("GBR");
    bool subtitlesEnabled = true;
};

class BridgeHost {
public:
    virtual ViewerSettings Settings() const = 0;
    virtual QString UserAgent() const = 0;
    // True in a run that ends with the page's own verdict.
    virtual bool IsTesting() const = 0;

    virtual void LogFromPage(const QString& text) = 0;
    // Something that the page saw or says.
    virtual void EventFromPage(const QJsonObject& event) = 0;
    virtual void SetKeyset(unsigned int mask) = 0;
    virtual void OpenUrl(const QString& url) = 0;
    virtual void Quit(int status) = 0;

    // The planes as one sees them, at the size of the graphics plane.
    virtual QImage ComposedPlanes() = 0;
    // Carries out a line of the remote's protocol and returns the answer.
    virtual QString RemoteLine(const QString& line) = 0;

protected:
    ~BridgeHost() = default;
};

}  // namespace browser
