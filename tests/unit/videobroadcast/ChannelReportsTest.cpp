// The reports of channel changes: ChannelChangeSucceeded and ChannelChangeError.
#include "tests/unit/videobroadcast/ObjectTest.h"

#include "javascript/Variants.h"

namespace videobroadcast {
namespace {

using Error = Object::EChannelChangeError;

class ChannelReports : public ObjectTest {
protected:
    ChannelReports() {
        for (const char* type : {"ChannelChangeSucceeded", "ChannelChangeError"}) {
            SetHandler(object.Get(), std::string("on") + type);
            Listen(object.Get(), type);
        }
        Forget();
    }
    void TearDown() override {
        object.Destroy();
        ObjectTest::TearDown();
    }

    Probed object{browser};
};

constexpr Error kErrors[] = {
    Object::E_ERR_CHANNEL_NOT_SUPPORTED, Object::E_ERR_CANNOT_TUNE,      Object::E_ERR_PARENTAL_LOCK,
    Object::E_ERR_ENCRYPTED,             Object::E_ERR_RECORDING_IN_PROGRESS, Object::E_ERR_NO_CHANNEL_LIST,
    Object::E_ERR_INSUFFICIENT_RESOURCES, Object::E_ERR_CHANNEL_NOT_FOUND, Object::E_ERR_UNIDENTIFIED};

TEST_F(ChannelReports, TheErrorsHaveTheNumbersOfTheEvent) {
    const int expected[] = {0, 1, 3, 4, 7, 10, 11, 12, 100};
    EXPECT_TRUE(std::equal(std::begin(kErrors), std::end(kErrors), std::begin(expected), std::end(expected)));
    EXPECT_EQ(Object::E_ERR_NONE, 1000);
}

TEST_F(ChannelReports, ErrorThousandIsASuccessWithTheChannelAlone) {
    object->m_SendChChange(OipfJavaScript::NullVariant(), Error(1000));
    EXPECT_EQ(Told(), (Lines{"script.onChannelChangeSucceeded(null)", "event ChannelChangeSucceeded{channel: null}"}));
}

TEST_F(ChannelReports, EveryOtherErrorIsAFailureWithTheChannelAndTheError) {
    for (const Error error : kErrors) {
        Forget();
        object->m_SendChChange(OipfJavaScript::NullVariant(), error);
        const std::string number = std::to_string(error);
        EXPECT_EQ(Told(), (Lines{"script.onChannelChangeError(null, " + number + ")",
                                 "event ChannelChangeError{channel: null, errorState: " + number + "}"}));
    }
}

TEST_F(ChannelReports, TheChannelObjectIsHeldForTheReportOnly) {
    FakeObject& channel = browser.MakeObject("channel");
    NPVariant variant = OipfJavaScript::ObjectVariant(channel.Pointer());
    When("script.onChannelChangeSucceeded", [&] { EXPECT_GE(channel.HeldByPlugin(), 1u); });
    object->m_SendChChange(variant, Error(1000));
    EXPECT_EQ(Told(), (Lines{"script.onChannelChangeSucceeded(channel)",
                             "event ChannelChangeSucceeded{channel: channel}"}));
    EXPECT_EQ(channel.HeldByPlugin(), 0u);
}

TEST_F(ChannelReports, AVoidChannelIsUndefinedToScript) {
    object->m_SendChChange(OipfJavaScript::VoidVariant(), Error(11));
    EXPECT_EQ(Told(), (Lines{"script.onChannelChangeError(undefined, 11)",
                             "event ChannelChangeError{channel: undefined, errorState: 11}"}));
}

TEST_F(ChannelReports, AnObjectVariantWithoutAnObjectIsNotHandedOn) {
    object->m_SendChChange(OipfJavaScript::ObjectVariant(nullptr), Error(1000));
    EXPECT_EQ(Told(), (Lines{"script.onChannelChangeSucceeded(undefined)",
                             "event ChannelChangeSucceeded{channel: undefined}"}));
}

TEST_F(ChannelReports, ByIdTheChannelIsMadeByThePage) {
    object->m_SendChChange(7u, Error(1000));
    EXPECT_EQ(browser.Evaluated().back(), "new Channel(\"key\", 7);");
    EXPECT_EQ(Calls({"evaluate", "script.on", "event ", "cache."}),
              (Lines{"evaluate new Channel(\"key\", 7);", "script.onChannelChangeSucceeded(Channel(7))",
                     "event ChannelChangeSucceeded{channel: Channel(7)}"}));
}

TEST_F(ChannelReports, ByIdTheCreationReferenceIsGivenBack) {
    object->m_SendChChange(7u, Error(12));
    ASSERT_EQ(browser.Created("Channel").size(), 1u);
    browser.CollectGarbage();
    EXPECT_FALSE(browser.Created("Channel")[0]->IsAlive());
}

TEST_F(ChannelReports, ByIdTheCreationReferenceOutlivesTheReport) {
    std::vector<unsigned> held;
    const auto note = [&] { held.push_back(browser.Created("Channel").at(0)->HeldByPlugin()); };
    When("script.onChannelChangeSucceeded", note);
    When("event ChannelChangeSucceeded", note);
    object->m_SendChChange(7u, Error(1000));
    // The creation's, the argument's and the handler's copy, which stays until the delivery is over.
    EXPECT_EQ(held, (std::vector<unsigned>{3, 3}));
}

TEST_F(ChannelReports, IdsAreWrittenUnsigned) {
    object->m_SendChChange(4294967295u, Error(1000));
    EXPECT_EQ(browser.Evaluated().back(), "new Channel(\"key\", 4294967295);");
}

TEST_F(ChannelReports, IdZeroIsAChannelLikeAnyOtherHere) {
    object->m_SendChChange(0u, Error(1000));
    EXPECT_EQ(browser.Evaluated().back(), "new Channel(\"key\", 0);");
}

TEST_F(ChannelReports, AChannelThatCannotBeMadeGivesItsHoldBackAndIsReportedAsUndefined) {
    platform.TakeHold(7);
    browser.FailNth("evaluate", 1);
    object->m_SendChChange(7u, Error(1));
    ExpectLogged(2, "Failed to create Channel object");
    EXPECT_EQ(platform.Holds(7), 0);
    EXPECT_EQ(Calls({"evaluate", "script.on", "event ", "cache."}),
              (Lines{"evaluate new Channel(\"key\", 7);", "cache.ReleaseChannel(7)",
                     "script.onChannelChangeError(undefined, 1)",
                     "event ChannelChangeError{channel: undefined, errorState: 1}"}));
}

TEST_F(ChannelReports, AConstructorThatGivesNoObjectCountsAsAFailure) {
    browser.AnswerEvaluateOf("new Channel", [](const std::string&) { return Value("no object"); });
    object->m_SendChChange(7u, Error(1000));
    EXPECT_EQ(Calls({"script.on", "cache."}),
              (Lines{"cache.ReleaseChannel(7)", "script.onChannelChangeSucceeded(undefined)"}));
}

TEST_F(ChannelReports, WithoutTheWindowTheHoldIsGivenBackToo) {
    browser.FailNth("getvalue", 1);
    object->m_SendChChange(7u, Error(1000));
    EXPECT_EQ(Calls({"script.on", "cache."}),
              (Lines{"cache.ReleaseChannel(7)", "script.onChannelChangeSucceeded(undefined)"}));
}

TEST_F(ChannelReports, AfterInvalidationTheHoldIsGivenBackAndNothingIsTold) {
    object.Invalidate();
    Forget();
    object->m_SendChChange(7u, Error(1000));
    EXPECT_EQ(Calls(), Lines{"cache.ReleaseChannel(7)"});
    ExpectLogged(2, "m_OnEvent m_npp is NULL!");
}

}  // namespace
}  // namespace videobroadcast
