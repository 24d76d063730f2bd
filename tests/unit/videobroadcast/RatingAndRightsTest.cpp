// Parental ratings, and the rights to scrambled channels.
#include <clocale>
#include <utility>

#include "tests/unit/videobroadcast/ObjectTest.h"

namespace videobroadcast {
namespace {

const char* const kUnchanged = "Rating has not changed (9)";

std::string CollectionOf(int age) {
    const std::string number = std::to_string(age);
    return "ParentalRatingCollection('dvb-si', '" + number + "', " + number + ")";
}

class Ratings : public ObjectTest {
protected:
    void SetUp() override {
        SetHandler("onParentalRatingChange");
        SetHandler("onParentalRatingError");
        Forget();
    }
    Lines Report(int rating) {
        Forget();
        Native().ParentalRatingChanged(static_cast<char>(rating));
        Pump();
        return Told();
    }
    // What is told of a rating; `number` counts the collections of the same text.
    static Lines Change(int age, int number = 1) { return {"script.onParentalRatingChange" + Arguments(age, number)}; }
    static Lines Error(int age, int number = 1) { return {"script.onParentalRatingError" + Arguments(age, number)}; }

private:
    static std::string Arguments(int age, int number) {
        return "(undefined, " + CollectionOf(age) + (number > 1 ? "#" + std::to_string(number) : "") + ", undefined)";
    }
};

const Lines kNothing;

TEST_F(Ratings, EachRatingIsTheAgeLessThreeOrTheBroadcastersOwn) {
    Probed object(browser);
    for (int rating = 0; rating < 256; ++rating) {
        const bool valid = rating >= 1 && rating <= 15;
        int age = -1;
        Forget();
        EXPECT_EQ(object->m_GetMinimumAge(static_cast<char>(rating), age), valid) << rating;
        EXPECT_EQ(age, valid ? rating + 3 : rating) << rating;
        char line[48];
        std::snprintf(line, sizeof line, "m_GetMinimumAge for rating %x", static_cast<unsigned>(rating));
        ExpectLogged(3, line);
        ExpectLogged(3, "m_GetMinimumAge rating is valid", valid ? 1 : 0);
        ExpectLogged(3, "m_GetMinimumAge rating is NOT valid", valid ? 0 : 1);
    }
}

TEST_F(Ratings, AValidRatingIsAChangeWithACollectionOfItsAge) {
    EXPECT_EQ(Report(5), Change(8));
    EXPECT_EQ(Report(9), Change(12));
    EXPECT_EQ(browser.Evaluated().back(), "new ParentalRatingCollection(\"key\", 'dvb-si', '12', 12);");
    EXPECT_EQ(Report(1), Change(4));
    EXPECT_EQ(Report(15), Change(18));
}

TEST_F(Ratings, AnInvalidRatingIsAnErrorWithTheRatingItself) {
    EXPECT_EQ(Report(0), Error(0));
    EXPECT_EQ(browser.Evaluated().back(), "new ParentalRatingCollection(\"key\", 'dvb-si', '0', 0);");
    EXPECT_EQ(Report(16), Error(16));
    EXPECT_EQ(Report(128), Error(128));
    EXPECT_EQ(Report(255), Error(255));
}

TEST_F(Ratings, ListenersGetTheSameThree) {
    Listen("ParentalRatingChange");
    Listen("ParentalRatingError");
    Report(9);
    EXPECT_EQ(Told().back(), "event ParentalRatingChange{contentID: undefined, rating: " + CollectionOf(12) +
                                 ", DRMSystemID: undefined}");
    Report(0);
    EXPECT_EQ(Told().back(), "event ParentalRatingError{contentID: undefined, rating: " + CollectionOf(0) +
                                 ", DRMSystemID: undefined}");
}

TEST_F(Ratings, TheSameValidRatingIsToldOnce) {
    Report(9);
    EXPECT_EQ(Report(9), kNothing);
    ExpectLogged(3, kUnchanged);
    EXPECT_TRUE(Calls().empty());
    EXPECT_EQ(Report(10), Change(13));
    EXPECT_EQ(Report(9), Change(12, 2));
}

TEST_F(Ratings, TheSameInvalidRatingIsToldEachTime) {
    EXPECT_EQ(Report(0), Error(0));
    EXPECT_EQ(Report(0), Error(0, 2));
    EXPECT_EQ(Report(255), Error(255));
    EXPECT_EQ(Report(255), Error(255, 2));
    EXPECT_EQ(LinesWith("Rating has not changed"), 0u);
}

TEST_F(Ratings, AFirstRatingOfZeroIsTold) {
    EXPECT_EQ(Report(0), Error(0));
}

TEST_F(Ratings, LogsWhatChanged) {
    Report(5);
    ExpectLogged(3, "Rating changed from 5 to 0,  m_lastRatingValid == false");
    Report(9);
    ExpectLogged(3, "Rating changed from 9 to 5,  m_lastRatingValid == true");
    Report(200);
    ExpectLogged(3, "Rating changed from 200 to 9,  m_lastRatingValid == true");
    Report(200);
    ExpectLogged(3, "Rating changed from 200 to 200,  m_lastRatingValid == false");
}

TEST_F(Ratings, EachOfTheseForgetsTheRating) {
    Report(9);
    EXPECT_EQ(Report(9), kNothing);
    int number = 1;
    for (const char* method : {"bindToCurrentChannel", "stop", "nextChannel", "prevChannel", "release"}) {
        Page().Call(method);
        EXPECT_EQ(Report(9), Change(12, ++number)) << method;
        EXPECT_EQ(Report(9), kNothing) << method;
    }
}

TEST_F(Ratings, SetChannelDoesNotForgetTheRating) {
    Report(9);
    FakeObject& channel = browser.MakeObject("channel").Set("mid", 5);
    Page().Call("setChannel", {channel});
    EXPECT_EQ(Report(9), kNothing);
}

TEST_F(Ratings, ABlockedChannelsRatingIsTold) {
    Present();
    Native().ParentalRatingBlocked(7, true);
    Pump();
    EXPECT_EQ(Report(9), Change(12));
}

TEST_F(Ratings, WithoutTheCollectionNothingIsToldButTheRatingIsRemembered) {
    browser.FailNth("evaluate", 1);
    EXPECT_EQ(Report(9), kNothing);
    ExpectLogged(2, "Failed to create ParentalRatingCollection object");
    EXPECT_EQ(Report(9), kNothing);
    ExpectLogged(3, kUnchanged);
    browser.FailNth("evaluate", 1);
    EXPECT_EQ(Report(0), kNothing);
    EXPECT_EQ(Report(0), Error(0));  // an invalid one is tried again
}

TEST_F(Ratings, TheRatingIsRememberedBeforeThePageIsAsked) {
    bool nested = false;
    browser.AnswerEvaluateOf("new ParentalRatingCollection", [&](const std::string&) {
        if (!std::exchange(nested, true)) {
            Native().ParentalRatingChanged(9);
            Pump();
        }
        return Value(browser.MakeResult("collection"));
    });
    Report(9);
    EXPECT_EQ(Calls({"evaluate"}).size(), 1u);
    ExpectLogged(3, kUnchanged);
}

TEST_F(Ratings, TheCollectionIsGivenBackAfterTheEvent) {
    Report(9);
    EXPECT_FALSE(browser.Created("ParentalRatingCollection").at(0)->IsAlive());
}

TEST_F(Ratings, NumbersInTheTextDoNotFollowTheProcessesLocale) {
    const std::string before = std::setlocale(LC_ALL, nullptr);
    std::setlocale(LC_ALL, "");
    Report(200);
    EXPECT_EQ(browser.Evaluated().back(), "new ParentalRatingCollection(\"key\", 'dvb-si', '200', 200);");
    std::setlocale(LC_ALL, before.c_str());
}

Lines RightsError(int state, const std::string& caSystemId) {
    return {"script.onDRMRightsError(" + std::to_string(state) + ", undefined, \"urn:dvb:casystemid:" + caSystemId +
            "\", undefined)"};
}

class Rights : public ObjectTest {
protected:
    void SetUp() override {
        SetHandler("onDRMRightsError");
        Forget();
    }
    using Items = std::vector<SASMessageItem>;
    Lines Report(std::uint32_t type, std::uint16_t caSystemId, const Items& items) {
        Forget();
        Native().OnSASMessageReceived(new SASMessage{type, caSystemId, 0x55, items});
        Pump();
        return Told();
    }
};

class RightsErrors : public ObjectTest {
protected:
    void SetUp() override {
        SetHandler(object.Get(), "onDRMRightsError");
        Forget();
    }
    void TearDown() override {
        object.Destroy();
        ObjectTest::TearDown();
    }

    Probed object{browser};
};

constexpr std::int32_t kText = 6;
constexpr std::int32_t kStatus = 7;

TEST_F(Rights, TheErrorCarriesStateAndSystem) {
    Listen("DrmRightsError");
    Forget();
    Native().Scrambled(0x0B00);
    Pump();
    EXPECT_EQ(Told(), (Lines{"script.onDRMRightsError(0, undefined, \"urn:dvb:casystemid:2816\", undefined)",
                             "event DrmRightsError{errorState: 0, contentID: undefined, DRMSystemID: "
                             "\"urn:dvb:casystemid:2816\", rightsIssuerURL: undefined}"}));
}

TEST_F(RightsErrors, SystemsAreWrittenInDecimalUnsignedWithoutZeros) {
    for (const auto& [system, text] : std::vector<std::pair<unsigned short, std::string>>{
             {0, "0"}, {1, "1"}, {0x0B00, "2816"}, {0x8000, "32768"}, {0xFFFF, "65535"}}) {
        Forget();
        object->m_SendDrmRightsError(2, system);
        EXPECT_EQ(Told(), RightsError(2, text));
    }
}

TEST_F(RightsErrors, TheStateIsLoggedAndPassedOnAsItIs) {
    object->m_SendDrmRightsError(-5, 0x0B00);
    EXPECT_EQ(Told(), RightsError(-5, "2816"));
    ExpectLogged(3, "m_SendDrmRightsError for state = -5, sid = b00");
}

TEST_F(Rights, WithoutMemoryTheSystemIsUndefined) {
    browser.FailFrom("memalloc");
    Native().Scrambled(1);
    Pump();
    EXPECT_EQ(Told(), Lines{"script.onDRMRightsError(0, undefined, undefined, undefined)"});
}

TEST_F(Rights, SystemsTravelWhole) {
    Native().Scrambled(0xFFFF);
    Native().Unscrambled(0x8001);
    Native().OnSASMessageReceived(new SASMessage{4, 0xFEDC, 0, {}});
    Pump();
    EXPECT_EQ(Told(), (Lines{RightsError(0, "65535").front(), RightsError(2, "32769").front(),
                             RightsError(0, "65244").front()}));
}

TEST_F(Rights, AnyAccessStatusButZeroIsValid) {
    EXPECT_EQ(Report(4, 0x0B00, {{kStatus, {5}}}), RightsError(2, "2816"));
    ExpectLogged(3, "m_ProcessRightsInfo - E_OIPF_ACCESS_STATUS");
    ExpectLogged(3, "E_OIPF_ACCESS_STATUS status = 5");
    EXPECT_EQ(Report(4, 1, {{kStatus, {255}}}), RightsError(2, "1"));
    ExpectLogged(3, "E_OIPF_ACCESS_STATUS status = 255");
    EXPECT_EQ(Report(4, 1, {{kStatus, {1, 0}}}), RightsError(2, "1"));
    EXPECT_EQ(Report(4, 1, {{kStatus, {0, 1}}}), RightsError(0, "1"));
    ExpectLogged(3, "E_OIPF_ACCESS_STATUS status = 0");
}

TEST_F(Rights, WithoutAnAccessStatusThereAreNone) {
    EXPECT_EQ(Report(4, 1, {}), RightsError(0, "1"));
    EXPECT_EQ(Report(4, 1, {{kText, {'u', 'r', 'l'}}, {8, {1}}, {0, {1}}}), RightsError(0, "1"));
    ExpectNotLogged("m_ProcessRightsInfo - E_OIPF_ACCESS_STATUS");
}

TEST_F(Rights, AnEmptyAccessStatusIsNoneOrTheOneBefore) {
    EXPECT_EQ(Report(4, 1, {{kStatus, {}}}), RightsError(0, "1"));
    ExpectLogged(3, "m_ProcessRightsInfo - E_OIPF_ACCESS_STATUS");
    EXPECT_EQ(LinesWith("E_OIPF_ACCESS_STATUS status"), 0u);
    EXPECT_EQ(Report(4, 1, {{kStatus, {5}}, {kStatus, {}}}), RightsError(2, "1"));
    ExpectLogged(3, "m_ProcessRightsInfo - E_OIPF_ACCESS_STATUS", 2);
}

TEST_F(Rights, ALaterAccessStatusCounts) {
    EXPECT_EQ(Report(4, 1, {{kStatus, {5}}, {kStatus, {0}}}), RightsError(0, "1"));
    EXPECT_EQ(Report(4, 1, {{kStatus, {0}}, {kText, {'x'}}, {kStatus, {3}}}), RightsError(2, "1"));
}

TEST_F(Rights, TheTextsOfAMessageAreCollectedInOrder) {
    Probed object(browser);
    SASMessage message{4, 1, 0, {{kText, {'a', 0}}, {kStatus, {9}}, {kText, {}}, {kText, {'b', 0xFF}}, {5, {'c'}}}};
    unsigned short status = 0;
    std::string text = "before ";
    object->m_ProcessRightsInfo(&message, status, text);
    EXPECT_EQ(text, std::string("before a\0b\xFF", 11));
    EXPECT_EQ(status, 9);
}

TEST_F(Rights, AMessageWithoutStatusLeavesItUntouched) {
    Probed object(browser);
    SASMessage message{4, 1, 0, {{kText, {'a'}}, {kStatus, {}}}};
    unsigned short status = 33;
    std::string text;
    object->m_ProcessRightsInfo(&message, status, text);
    EXPECT_EQ(status, 33);
}

TEST_F(Rights, MessagesOfOtherTypesRaiseNothing) {
    for (const std::uint32_t type : {0u, 3u, 5u, 4u + 0x100u, 0xFFFFFFFFu}) {
        EXPECT_EQ(Report(type, 1, {{kStatus, {5}}}), kNothing) << type;
    }
    EXPECT_EQ(LinesWith("m_ProcessRightsInfo"), 0u);
}

TEST_F(Rights, TheTextOfTheMessageIsNotToldToThePage) {
    EXPECT_EQ(Report(4, 1, {{kText, {'u', 'r', 'l'}}, {kStatus, {1}}}), RightsError(2, "1"));
}

TEST_F(Rights, RightsAreToldWhateverThePlayState) {
    EXPECT_EQ(Report(4, 1, {{kStatus, {1}}}), RightsError(2, "1"));
    Present();
    EXPECT_EQ(Report(4, 1, {{kStatus, {0}}}), RightsError(0, "1"));
    EXPECT_EQ(PlayState(), Object::E_STATE_PRESENTING);
}

}  // namespace
}  // namespace videobroadcast
