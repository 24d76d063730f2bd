// What script sees on the object.
#include "tests/support/BrowserFunctions.h"
#include "tests/unit/videobroadcast/ObjectTest.h"

namespace videobroadcast {
namespace {

class Surface : public ObjectTest {
protected:
    void ListenerMethodIsRefused(const std::string& method, const FakeObject& listener) {
        const Outcome outcome = Page().Call(method, {"Focus", listener, false});
        EXPECT_TRUE(outcome.accepted);
        EXPECT_EQ(outcome.exception, "SecurityError");
    }
};

const Lines kProperties = {
    "width", "height", "fullscreen", "onChannelChangeError", "onChannelChangeSucceeded", "onPlayStateChange",
    "onFullScreenChange", "onFocus", "onBlur", "onProgrammesChanged", "onParentalRatingChange",
    "onParentalRatingError", "onDRMRightsError", "onStreamEvent", "playState", "programmes", "currentChannel"};

const Lines kMethods = {
    "getChannelConfig", "bindToCurrentChannel", "createChannelObject", "setChannel", "prevChannel", "nextChannel",
    "setFullScreen", "setVolume", "getVolume", "release", "stop", "getComponents", "getCurrentActiveComponents",
    "selectComponent", "unselectComponent", "addStreamEventListener", "removeStreamEventListener"};

const Lines kConstants = {"COMPONENT_TYPE_VIDEO", "COMPONENT_TYPE_AUDIO", "COMPONENT_TYPE_SUBTITLE"};

Lines* s_names = nullptr;

NPIdentifier EnterName(const NPUTF8* name) {
    s_names->push_back(name);
    return support::IdentifierOf(name);
}

TEST_F(Surface, HasSeventeenPropertiesThatAreNoMethods) {
    for (const std::string& name : kProperties) {
        EXPECT_TRUE(browser.HasProperty(Page().Object(), name)) << name;
        EXPECT_FALSE(browser.HasMethod(Page().Object(), name)) << name;
    }
}

TEST_F(Surface, HasSeventeenMethodsAndThoseOfEveryObjectThatAreNoProperties) {
    Lines methods = kMethods;
    methods.insert(methods.end(), {"addEventListener", "removeEventListener", "toString"});
    for (const std::string& name : methods) {
        EXPECT_TRUE(browser.HasMethod(Page().Object(), name)) << name;
        EXPECT_FALSE(browser.HasProperty(Page().Object(), name)) << name;
    }
}

TEST_F(Surface, HasTheThreeComponentTypesAsConstants) {
    for (int i = 0; i < 3; ++i) {
        const std::string& name = kConstants[static_cast<std::size_t>(i)];
        EXPECT_TRUE(browser.HasProperty(Page().Object(), name)) << name;
        EXPECT_EQ(Page().Get(name).value, Value(i)) << name;
        EXPECT_FALSE(Page().Set(name, 7).accepted) << name;
        EXPECT_EQ(Page().Get(name).value, Value(i)) << name;
    }
}

TEST_F(Surface, EveryNameIsRegisteredOnceAndInOrder) {
    Lines names;
    s_names = &names;
    browser.Functions()->getstringidentifier = EnterName;
    const Probed object(browser);

    Lines expected = {"addEventListener", "removeEventListener", "toString"};
    for (const Lines& part : {kProperties, kMethods, kConstants}) {
        expected.insert(expected.end(), part.begin(), part.end());
    }
    EXPECT_EQ(names, expected);
}

TEST_F(Surface, PropertiesThatTheTelevisionDecidesAreReadOnly) {
    for (const char* name : {"fullscreen", "playState", "programmes", "currentChannel"}) {
        const Outcome outcome = Page().Set(name, 1);
        EXPECT_FALSE(outcome.accepted) << name;
        EXPECT_EQ(outcome.exception, "") << name;
    }
}

TEST_F(Surface, ANewObjectIsUnrealizedWithoutSizeAndHoldsNoPlayer) {
    EXPECT_EQ(Page().Get("width").value, Value(0));
    EXPECT_EQ(Page().Get("height").value, Value(0));
    EXPECT_EQ(Page().Get("fullscreen").value, Value(false));
    EXPECT_EQ(Page().Get("playState").value, Value(0));
    EXPECT_EQ(platform.Uses("browser.GetBroadcastPlayer"), 0u);
}

TEST_F(Surface, ToStringNamesTheClass) {
    EXPECT_EQ(Page().Call("toString").value, Value("[OIPF video/broadcast]"));
}

TEST_F(Surface, TheDescriptionIsTheMimeDescription) {
    EXPECT_STREQ(Object::PluginDescription(), "video/broadcast::OIPF Video Broadcast Plugin");
}

TEST_F(Surface, WithoutIdentifiersNothingIsRegistered) {
    browser.FailFrom("getstringidentifier");
    Probed object(browser);
    browser.StopFailing("getstringidentifier");
    for (const Lines& part : {kProperties, kMethods, kConstants}) {
        for (const std::string& name : part) {
            EXPECT_FALSE(browser.HasProperty(object.Get(), name)) << name;
            EXPECT_FALSE(browser.HasMethod(object.Get(), name)) << name;
        }
    }
}

TEST_F(Surface, ABroadcastRelatedPageMayListen) {
    FakeObject& listener = browser.MakeFunction("listener");
    const Outcome added = Page().Call("addEventListener", {"Focus", listener, false});
    EXPECT_TRUE(added.accepted);
    EXPECT_EQ(added.exception, "");
    EXPECT_EQ(listener.HeldByPlugin(), 1u);
    EXPECT_TRUE(Page().Call("removeEventListener", {"Focus", listener, false}).accepted);
    EXPECT_EQ(listener.HeldByPlugin(), 0u);
    ExpectNotLogged("t_AllowEventListener() - app is not broadcast related");
}

TEST_F(Surface, APageThatIsNotBroadcastRelatedMayNotListen) {
    platform.answers.broadcastRelated = false;
    FakeObject& listener = browser.MakeFunction("listener");
    ListenerMethodIsRefused("addEventListener", listener);
    EXPECT_EQ(listener.HeldByPlugin(), 0u);
    ExpectLogged(2, "t_AllowEventListener() - app is not broadcast related");
}

NPObject* s_raisedOn = nullptr;

TEST_F(Surface, ExceptionsAreRaisedOnTheObject) {
    Probed object(browser);
    browser.Functions()->setexception = [](NPObject* raisedOn, const NPUTF8*) { s_raisedOn = raisedOn; };
    s_raisedOn = nullptr;
    EXPECT_TRUE(browser.Set(object.Get(), "onBlur", 1).accepted);
    EXPECT_EQ(s_raisedOn, static_cast<NPObject*>(object.Get()));
    s_raisedOn = nullptr;
    platform.answers.broadcastRelated = false;
    EXPECT_FALSE(object->t_AllowEventListener());
    EXPECT_EQ(s_raisedOn, static_cast<NPObject*>(object.Get()));
}

TEST_F(Surface, APageThatIsNotBroadcastRelatedAnyMoreKeepsItsListeners) {
    FakeObject& listener = browser.MakeFunction("listener");
    Page().Call("addEventListener", {"Focus", listener, false});
    platform.answers.broadcastRelated = false;
    ListenerMethodIsRefused("removeEventListener", listener);
    EXPECT_EQ(listener.HeldByPlugin(), 1u);
    platform.answers.broadcastRelated = true;
    EXPECT_TRUE(Page().Call("removeEventListener", {"Focus", listener, false}).accepted);
}

TEST_F(Surface, TheRefusalNeedsNoInstance) {
    const Probed object(browser);
    platform.answers.broadcastRelated = false;
    EXPECT_FALSE(object->t_AllowEventListener());
    platform.answers.broadcastRelated = true;
    EXPECT_TRUE(object->t_AllowEventListener());
    EXPECT_EQ(browser.Exceptions(), Lines{"SecurityError"});
}

}  // namespace
}  // namespace videobroadcast
