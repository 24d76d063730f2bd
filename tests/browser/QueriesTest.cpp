// What the remote tells of services and programmes.
#include "browser/remote/Queries.h"

#include <gtest/gtest.h>

#include <QJsonDocument>

#include "tests/browser/Printing.h"

namespace browser {

namespace {

television::Service Make(unsigned int id, int number, const char* name, bool hidden = false) {
    television::Service service;
    service.id = id;
    service.number = number;
    service.name = name;
    service.hidden = hidden;
    return service;
}

unsigned int Find(const QString& wanted) {
    const auto found = FindService({Make(1, 3, "Three", true), Make(2, 3, "Boreal"), Make(3, 7, "7 News")}, wanted);
    return found ? found->id : 0;
}

TEST(Queries, FindAServiceByItsNumberUnlessItIsHidden) {
    EXPECT_EQ(Find("3"), 2u);
    EXPECT_EQ(Find("7"), 3u);
    EXPECT_EQ(Find("8"), 0u);
}

TEST(Queries, FindAServiceByItsWholeNameInAnyCase) {
    EXPECT_EQ(Find("boreal"), 2u);
    EXPECT_EQ(Find("Three"), 1u) << "also a hidden one";
    EXPECT_EQ(Find("7 news"), 3u);
    EXPECT_EQ(Find("Bor"), 0u);
    EXPECT_EQ(Find(""), 0u);
}

TEST(Queries, TellWhatAServiceIs) {
    television::Service service = Make(9, 71, "Café");
    service.type = television::ServiceType::Radio;
    service.sid = 0x6e04;
    const QJsonObject json = ToJson(service);
    EXPECT_EQ(json["name"].toString(), QString("Café"));
    EXPECT_EQ(json["number"].toInt(), 71);
    EXPECT_EQ(json["type"].toString(), QString("radio"));
    EXPECT_EQ(json["sid"].toInt(), 0x6e04);
    EXPECT_FALSE(json["scrambled"].toBool());
}

TEST(Queries, TellWhatAProgrammeIs) {
    television::Programme programme;
    programme.eventId = 12;
    programme.name = "Nordlicht";
    programme.startTime = 1'795'258'620;
    programme.duration = 60;
    programme.ratings = {{"DEU", 9}};
    EXPECT_EQ(QJsonDocument(ToJson(programme)).toJson(QJsonDocument::Compact),
              QByteArray("{\"description\":\"\",\"duration\":60,\"id\":12,\"name\":\"Nordlicht\","
                         "\"ratings\":[{\"country\":\"DEU\",\"rating\":9}],\"startTime\":1795258620}"));
}

TEST(Queries, TellOfATelevisionThatIsOffThatNothingIsShown) {
    const QJsonObject status = TelevisionStatus();
    EXPECT_TRUE(status["channel"].isNull());
    EXPECT_FALSE(status["presented"].toBool(true));
    EXPECT_TRUE(TelevisionServices().isEmpty());
}

}  // namespace

}  // namespace browser
