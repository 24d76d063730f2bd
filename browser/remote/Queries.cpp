#include "browser/remote/Queries.h"

#include <algorithm>

namespace browser {

using television::Service;
using television::Television;

namespace {

QString Text(const std::string& text) {
    return QString::fromStdString(text);
}

const char* NameOf(television::ServiceType type) {
    switch (type) {
        case television::ServiceType::Television: return "television";
        case television::ServiceType::Radio: return "radio";
        case television::ServiceType::Other: break;
    }
    return "other";
}

QJsonValue CurrentChannel() {
    const auto service = Television::Instance().CurrentService();
    return service ? QJsonValue(ToJson(*service)) : QJsonValue();
}

}  // namespace

QJsonObject ToJson(const Service& service) {
    return {{QStringLiteral("number"), service.number},
            {QStringLiteral("name"), Text(service.name)},
            {QStringLiteral("provider"), Text(service.provider)},
            {QStringLiteral("type"), QLatin1String(NameOf(service.type))},
            {QStringLiteral("onid"), service.onid},
            {QStringLiteral("tsid"), service.tsid},
            {QStringLiteral("sid"), service.sid},
            {QStringLiteral("hd"), service.hd},
            {QStringLiteral("scrambled"), service.scrambled},
            {QStringLiteral("hidden"), service.hidden},
            {QStringLiteral("locked"), service.locked}};
}

QJsonObject ToJson(const television::Programme& programme) {
    QJsonArray ratings;
    for (const auto& rating : programme.ratings) {
        ratings += QJsonObject{{QStringLiteral("country"), Text(rating.country)},
                               {QStringLiteral("rating"), rating.rating}};
    }
    return {{QStringLiteral("id"), programme.eventId},
            {QStringLiteral("name"), Text(programme.name)},
            {QStringLiteral("description"), Text(programme.description)},
            {QStringLiteral("startTime"), double(programme.startTime)},
            {QStringLiteral("duration"), double(programme.duration)},
            {QStringLiteral("ratings"), ratings}};
}

QJsonObject TelevisionStatus() {
    Television& television = Television::Instance();
    const television::Condition condition = television.TheCondition();
    const TPTRect video = television.VideoRectangle();
    return {{QStringLiteral("channel"), CurrentChannel()},
            {QStringLiteral("presented"), condition.presented},
            {QStringLiteral("picture"), television.CurrentPicture() != nullptr},
            {QStringLiteral("video"), QJsonObject{{QStringLiteral("x"), video.x}, {QStringLiteral("y"), video.y},
                                                  {QStringLiteral("width"), video.width},
                                                  {QStringLiteral("height"), video.height}}},
            {QStringLiteral("mediaPlays"), condition.mediaPlays},
            {QStringLiteral("records"), condition.records},
            {QStringLiteral("volume"), condition.volume},
            {QStringLiteral("muted"), condition.muted},
            {QStringLiteral("tunes"), double(television.LastTune().count)},
            {QStringLiteral("lastTune"), television.LastTune().toFirstPicture}};
}

QJsonArray TelevisionServices() {
    QJsonArray services;
    for (const Service& service : Television::Instance().Services()) {
        services += ToJson(service);
    }
    return services;
}

std::optional<Service> FindService(const std::vector<Service>& services, const QString& wanted) {
    bool isNumber = false;
    const int number = wanted.toInt(&isNumber);
    const auto found = std::find_if(services.begin(), services.end(), [&](const Service& service) {
        return isNumber ? service.number == number && !service.hidden
                        : Text(service.name).compare(wanted, Qt::CaseInsensitive) == 0;
    });
    return found == services.end() ? std::nullopt : std::optional(*found);
}

}  // namespace browser
