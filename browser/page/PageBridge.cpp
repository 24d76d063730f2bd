#include "browser/page/PageBridge.h"

#include <QJsonDocument>
#include <unistd.h>

#include "browser/page/ToScript.h"
#include "browser/planes/MeanColour.h"
#include "television/Television.h"

namespace browser {

using television::Television;

bool PageBridge::isKey(const QString& key) const {
    return Television::Instance().IsKey(key.toStdString());
}

QVariantList PageBridge::services() const {
    QVariantList list;
    for (const auto& service : Television::Instance().Services()) {
        list.append(ToScript(service));
    }
    return list;
}

QVariant PageBridge::service(unsigned int id) const {
    const auto service = Television::Instance().FindService(id);
    return service ? QVariant(ToScript(*service)) : QVariant::fromValue(nullptr);
}

unsigned int PageBridge::currentService() const {
    const auto service = Television::Instance().CurrentService();
    return service ? service->id : 0;
}

QVariantList PageBridge::programmes(unsigned int id) const {
    QVariantList list;
    for (const auto& programme : Television::Instance().Programmes(id)) {
        list.append(ToScript(programme));
    }
    return list;
}

QVariantMap PageBridge::settings() const {
    const ViewerSettings settings = m_host.Settings();
    const television::Condition condition = Television::Instance().TheCondition();
    return {{QStringLiteral("audioLanguage"), settings.audioLanguage},
            {QStringLiteral("subtitleLanguage"), settings.subtitleLanguage},
            {QStringLiteral("countryId"), settings.countryId},
            {QStringLiteral("subtitlesEnabled"), settings.subtitlesEnabled},
            {QStringLiteral("volume"), condition.volume},
            {QStringLiteral("mute"), condition.muted},
            {QStringLiteral("userAgent"), m_host.UserAgent()},
            {QStringLiteral("testing"), m_host.IsTesting()}};
}

double PageBridge::freeMemory() const {
    return double(sysconf(_SC_AVPHYS_PAGES)) * double(sysconf(_SC_PAGESIZE));
}

void PageBridge::log(const QString& text) {
    m_host.LogFromPage(text);
}

void PageBridge::event(const QString& json) {
    m_host.EventFromPage(QJsonDocument::fromJson(json.toUtf8()).object());
}

void PageBridge::setKeyset(unsigned int mask) {
    m_host.SetKeyset(mask);
}

void PageBridge::openUrl(const QString& url) {
    m_host.OpenUrl(url);
}

void PageBridge::quit(int status) {
    m_host.Quit(status);
}

QVariantMap PageBridge::pixels(int x, int y, int width, int height) const {
    const MeanColour mean = MeanColourOf(m_host.ComposedPlanes(), QRect(x, y, width, height));
    return {{QStringLiteral("red"), mean.red},
            {QStringLiteral("green"), mean.green},
            {QStringLiteral("blue"), mean.blue},
            {QStringLiteral("pixels"), mean.pixels}};
}

QString PageBridge::remote(const QString& line) {
    return m_host.RemoteLine(line);
}

double PageBridge::sinceStreamEvent() const {
    return television::Television::Instance().SinceStreamEvent();
}

QVariantMap PageBridge::tuneTimes() const {
    const television::TuneTimes times = television::Television::Instance().LastTune();
    return {{QStringLiteral("count"), static_cast<double>(times.count)},
            {QStringLiteral("toFirstPicture"), times.toFirstPicture}};
}

}  // namespace browser
