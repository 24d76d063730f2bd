#include "browser/page/ToScript.h"

#include <QString>

namespace browser {

namespace {

// Bytes as scripts have them: one character a byte.
QString ByteString(const std::string& bytes) {
    return QString::fromLatin1(bytes.data(), int(bytes.size()));
}

QString Text(const std::string& utf8) {
    return QString::fromUtf8(utf8.data(), int(utf8.size()));
}

QVariantList Ratings(const std::vector<television::ParentalRating>& ratings) {
    QVariantList list;
    for (const auto& rating : ratings) {
        list.append(QVariantMap{{QStringLiteral("country"), Text(rating.country)},
                                {QStringLiteral("rating"), int(rating.rating)}});
    }
    return list;
}

QVariantList Descriptors(const std::vector<std::string>& descriptors) {
    QVariantList list;
    for (const std::string& descriptor : descriptors) {
        list.append(ByteString(descriptor));
    }
    return list;
}

}  // namespace

QVariantMap ToScript(const television::Service& service) {
    return {{QStringLiteral("id"), service.id},
            {QStringLiteral("idType"), service.idType},
            {QStringLiteral("onid"), int(service.onid)},
            {QStringLiteral("nid"), int(service.nid)},
            {QStringLiteral("tsid"), int(service.tsid)},
            {QStringLiteral("sid"), int(service.sid)},
            {QStringLiteral("number"), service.number},
            {QStringLiteral("type"), int(service.type)},
            {QStringLiteral("name"), Text(service.name)},
            {QStringLiteral("provider"), Text(service.provider)},
            {QStringLiteral("dsd"), ByteString(service.dsd)},
            {QStringLiteral("hd"), service.hd},
            {QStringLiteral("scrambled"), service.scrambled},
            {QStringLiteral("hidden"), service.hidden},
            {QStringLiteral("locked"), service.locked}};
}

QVariantMap ToScript(const television::Programme& programme) {
    return {{QStringLiteral("channelId"), programme.channelId},
            {QStringLiteral("eventId"), int(programme.eventId)},
            {QStringLiteral("name"), Text(programme.name)},
            {QStringLiteral("description"), Text(programme.description)},
            {QStringLiteral("longDescription"), Text(programme.longDescription)},
            {QStringLiteral("startTime"), double(programme.startTime)},
            {QStringLiteral("duration"), double(programme.duration)},
            {QStringLiteral("ratings"), Ratings(programme.ratings)},
            {QStringLiteral("descriptors"), Descriptors(programme.descriptors)}};
}

}  // namespace browser
