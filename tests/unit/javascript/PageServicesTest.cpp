// What an object asks of the page around it.
#include "tests/unit/javascript/ScriptObject.h"

namespace {

using support::FakeObject;
using support::Value;

class PageServicesTest : public ScriptObjectTest {
protected:
    using Texts = std::vector<std::string>;

    std::string Location(const std::string& url) {
        browser.location = url;
        std::string location = "before";
        EXPECT_TRUE(object->t_GetDocumentLocation(location)) << url;
        return location;
    }
    std::string Absolute(std::string path) {
        EXPECT_TRUE(object->t_MakeAbsolutePath(path)) << path;
        return path;
    }
    std::string OriginOf(const std::string& url) {
        browser.location = url;
        platform.origins.clear();
        EXPECT_TRUE(object->t_IsCurrentPageTrusted()) << url;
        return platform.origins.empty() ? "the platform was not asked" : platform.origins.front();
    }
    // Answers every question for the document's location with a value of another kind, or with a failure.
    void AnswerLocation(std::optional<Value> value) {
        browser.AnswerEvaluate("document.location.href", [value](const std::string&) { return value; });
    }
    NPObject* Create(const std::string& className, const std::string& params, bool withKey) {
        NPObject* created = nullptr;
        if (!object->t_CreateJSObject(className, params, withKey, &created)) {
            EXPECT_EQ(created, nullptr);
        }
        return created;
    }
    void GiveBack(NPObject* created) {
        ASSERT_NE(created, nullptr);
        npn.releaseobject(created);
    }
};

TEST_F(PageServicesTest, TheLocationIsTheDocumentsUrlUpToItsLastSlash) {
    EXPECT_EQ(Location("http://tv.example/app/index.html"), "http://tv.example/app");
    EXPECT_EQ(browser.Evaluated(), Texts{"document.location.href"});
    EXPECT_EQ(Location("http://tv.example/app/"), "http://tv.example/app");
    EXPECT_EQ(Location("http://tv.example"), "http:/");
    EXPECT_EQ(Location("/"), "");
}

TEST_F(PageServicesTest, AUrlWithoutASlashIsItsOwnLocation) {
    EXPECT_EQ(Location("about:blank"), "about:blank");
    EXPECT_EQ(Location(""), "");
}

TEST_F(PageServicesTest, TheLocationKeepsItsBytes) {
    EXPECT_EQ(Location("http://tv.example/caf\xC3\xA9/\xE2\x82\xAC.html"), "http://tv.example/caf\xC3\xA9");
    EXPECT_EQ(Location(std::string("a\0b/c", 5)), std::string("a\0b", 3));
}

TEST_F(PageServicesTest, TheLookUpOfTheLocationIsLogged) {
    ClearLog();
    Location("http://tv.example/index.html");
    EXPECT_EQ(support::Log::Instance().Lines(),
              (std::vector<support::LogLine>{
                  {1, 3, "t_GetDocumentLocation"},
                  {1, 3, "Evaluate succeeded"},
                  {1, 3, "String? YES"},
                  {1, 3, "success to get document url:http://tv.example/index.html (location:http://tv.example)"}}));
}

TEST_F(PageServicesTest, ALocationThatIsNoStringFails) {
    for (const Value& value : {Value(), Value(nullptr), Value(5), Value(true)}) {
        AnswerLocation(value);
        std::string location = "before";
        EXPECT_FALSE(object->t_GetDocumentLocation(location));
        EXPECT_EQ(location, "before");
    }
    ExpectLogged("Evaluate succeeded", 4);
    ExpectLogged("String? NO", 4);
    ExpectLogged(2, "failed to get document location.", 4);
}

TEST_F(PageServicesTest, AnObjectInPlaceOfTheLocationIsGivenBack) {
    browser.AnswerEvaluate("document.location.href",
                           [this](const std::string&) { return Value(browser.MakeResult("location")); });
    std::string location;
    EXPECT_FALSE(object->t_GetDocumentLocation(location));
    EXPECT_FALSE(object->t_IsCurrentPageTrusted());
}

TEST_F(PageServicesTest, AFailedEvaluationIsLoggedAndNotReleased) {
    browser.FailFrom("evaluate");
    const unsigned released = browser.Uses("releasevariantvalue");
    std::string location = "before";
    EXPECT_FALSE(object->t_GetDocumentLocation(location));
    EXPECT_EQ(location, "before");
    ExpectLogged("Evaluate failed");
    ExpectLogged("String? NO");
    ExpectLogged(2, "failed to get document location.");
    EXPECT_EQ(browser.Uses("releasevariantvalue"), released);
}

TEST_F(PageServicesTest, WhatAFailedEvaluationLeavesIsNotLookedAt) {
    npn.evaluate = [](NPP, NPObject*, NPString*, NPVariant* result) {
        *result = OipfJavaScript::StringVariant("http://tv.example/x", 19);
        return false;
    };
    const unsigned released = browser.Uses("releasevariantvalue");
    std::string location = "before";
    EXPECT_FALSE(object->t_GetDocumentLocation(location));
    EXPECT_EQ(location, "before");
    ExpectLogged(3, "String? NO");
    EXPECT_FALSE(object->t_IsCurrentPageTrusted());
    EXPECT_TRUE(platform.origins.empty());
    EXPECT_EQ(Create("Channel", "7", true), nullptr);
    EXPECT_EQ(browser.Uses("releasevariantvalue"), released);
}

TEST_F(PageServicesTest, WithoutAWindowNothingIsEvaluated) {
    std::string location = "before", path = "img/a.png";
    NPObject* created = nullptr;
    const auto tryAll = [&] {
        EXPECT_FALSE(object->t_GetDocumentLocation(location));
        EXPECT_FALSE(object->t_MakeAbsolutePath(path));
        EXPECT_FALSE(object->t_IsCurrentPageTrusted());
        EXPECT_FALSE(object->t_CreateJSObject("Channel", "7", true, &created));
    };
    browser.FailFrom("getvalue");
    tryAll();
    browser.StopFailing("getvalue");
    browser.windowIsNull = true;
    tryAll();
    EXPECT_TRUE(browser.Evaluated().empty());
    EXPECT_EQ(location, "before");
    EXPECT_EQ(path, "img/a.png");
    EXPECT_EQ(created, nullptr);
    EXPECT_TRUE(Calls().empty()) << "neither the key service nor the boundary was asked";
    ExpectLogged(2, "failed to get the window object", 8);
    ExpectLogged(2, "failed to get the document location", 2);
}

TEST_F(PageServicesTest, AnInvalidatedObjectAsksNothing) {
    object->Invalidate();
    ClearLog();
    std::string location = "before";
    NPObject* created = nullptr;
    EXPECT_FALSE(object->t_GetDocumentLocation(location));
    EXPECT_FALSE(object->t_IsCurrentPageTrusted());
    EXPECT_FALSE(object->t_CreateJSObject("Channel", "7", true, &created));
    EXPECT_EQ(
        support::Log::Instance().Lines(),
        (std::vector<support::LogLine>{{1, 2, "t_GetDocumentLocation, Object has been invalidated! (m_npp is NULL)"},
                                       {1, 2, "t_IsCurrentPageTrusted, Object has been invalidated! (m_npp is NULL)"},
                                       {1, 2, "t_CreateJSObject, Object has been invalidated! (m_npp is NULL)"}}));
    EXPECT_TRUE(Calls().empty());
    EXPECT_EQ(location, "before");
}

TEST_F(PageServicesTest, AnAbsolutePathIsLeftAsItIs) {
    for (const char* path : {"dvb://1.2.3.4/file", "http://a.example/x", "https://a.example/x", "dvb:", "http:"}) {
        EXPECT_EQ(Absolute(path), path);
    }
    ExpectLogged(3, "m_MakeAbsolutePath from dvb:");
    ExpectLogged(3, "the path is already absolute path", 5);
    EXPECT_TRUE(browser.Evaluated().empty());
}

TEST_F(PageServicesTest, AnAbsolutePathNeedsNoInstance) {
    object->Invalidate();
    EXPECT_EQ(Absolute("dvb://1.2.3.4/file"), "dvb://1.2.3.4/file");
}

TEST_F(PageServicesTest, ARelativePathIsJoinedToTheDocumentsDirectory) {
    EXPECT_EQ(Absolute("img/a.png"), "http://tv.example/app/img/a.png");
    EXPECT_EQ(Absolute("/a"), "http://tv.example/app/a") << "a leading slash does not mean the host's root";
    EXPECT_EQ(Absolute(""), "http://tv.example/app/");
    EXPECT_EQ(Absolute("../a"), "http://tv.example/app/../a");
    ExpectLogged("m_MakeAbsolutePath from img/a.png");
    ExpectLogged(3, "absolute path: http://tv.example/app/img/a.png");
}

TEST_F(PageServicesTest, SchemesAreComparedExactlyAtTheBeginning) {
    EXPECT_EQ(Absolute("HTTP://a.example/x"), "http://tv.example/app/HTTP://a.example/x");
    EXPECT_EQ(Absolute("Dvb:x"), "http://tv.example/app/Dvb:x");
    EXPECT_EQ(Absolute(" dvb:x"), "http://tv.example/app/ dvb:x");
    EXPECT_EQ(Absolute("httpx"), "http://tv.example/app/httpx");
    EXPECT_EQ(Absolute("ftp://x"), "http://tv.example/app/ftp://x");
}

TEST_F(PageServicesTest, APathWithoutALocationStaysAsItIs) {
    AnswerLocation(std::nullopt);
    std::string path = "img/a.png";
    EXPECT_FALSE(object->t_MakeAbsolutePath(path));
    EXPECT_EQ(path, "img/a.png");
    ExpectLogged(2, "failed to get the document location");
    object->Invalidate();
    EXPECT_FALSE(object->t_MakeAbsolutePath(path));
    EXPECT_EQ(path, "img/a.png");
    ExpectLogged(2, "t_GetDocumentLocation, Object has been invalidated! (m_npp is NULL)");
}

TEST_F(PageServicesTest, TheOriginIsSchemeHostAndPort) {
    EXPECT_EQ(OriginOf("http://tv.example:8080/app/index.html"), "http://tv.example:8080");
    EXPECT_EQ(OriginOf("http://tv.example"), "http://tv.example");
    EXPECT_EQ(OriginOf("http://tv.example/"), "http://tv.example");
    EXPECT_EQ(OriginOf("file:///app/index.html"), "file://");
    EXPECT_EQ(OriginOf("/a/b//host/c"), "/a/b//host");
    EXPECT_EQ(OriginOf("dvb://1.2.3/a//b"), "dvb://1.2.3");
}

TEST_F(PageServicesTest, AUrlWithoutADoubleSlashIsAnOriginAsAWhole) {
    EXPECT_EQ(OriginOf("about:blank"), "about:blank");
    EXPECT_EQ(OriginOf("data:text/html,x"), "data:text/html,x");
}

TEST_F(PageServicesTest, ThePlatformDecidesWhetherThePageIsTrusted) {
    platform.answers.inAppBoundary = false;
    EXPECT_FALSE(object->t_IsCurrentPageTrusted());
    EXPECT_EQ(platform.origins, Texts{"http://tv.example"});
    platform.answers.inAppBoundary = true;
    EXPECT_TRUE(object->t_IsCurrentPageTrusted());
    ExpectLogged(4, "Evaluate succeeded", 2);
    ExpectLogged(4, "String? YES", 2);
}

TEST_F(PageServicesTest, APageWithoutALocationIsNotTrusted) {
    AnswerLocation(Value(5));
    EXPECT_FALSE(object->t_IsCurrentPageTrusted());
    AnswerLocation(std::nullopt);
    EXPECT_FALSE(object->t_IsCurrentPageTrusted());
    ExpectLogged(4, "String? NO", 2);
    ExpectLogged(4, "Evaluate failed");
    ExpectLogged(2, "failed to get document location.", 2);
    EXPECT_TRUE(platform.origins.empty());
}

TEST_F(PageServicesTest, AnObjectIsMadeByAConstructorCallWithTheKeyFirst) {
    NPObject* channel = Create("Channel", "12, 1, 2, 3", true);
    EXPECT_EQ(browser.Evaluated(), Texts{"new Channel(\"key\", 12, 1, 2, 3);"});
    EXPECT_EQ(Calls({"keys."}), Texts{"keys.GetKey(__OIPF_DEFAULT_)"});
    EXPECT_EQ(channel, browser.Created("Channel").at(0)->Pointer());
    EXPECT_EQ(browser.Created("Channel").at(0)->HeldByPlugin(), 1u);
    ExpectLogged(3, "Evaluate script \"new Channel(\"key\", 12, 1, 2, 3);\"");
    ExpectLogged(3, "Evaluate succeeded, Object? YES");
    GiveBack(channel);
}

TEST_F(PageServicesTest, TheKeyIsAskedForTheObjectsId) {
    object->m_defaultPrefix = "__OIPF_VBO_3021456";
    platform.answers.key = "secret";
    GiveBack(Create("ChannelConfig", "", true));
    EXPECT_EQ(Calls({"keys."}), Texts{"keys.GetKey(__OIPF_VBO_3021456)"});
    EXPECT_EQ(browser.Evaluated(), Texts{"new ChannelConfig(\"secret\");"});
}

TEST_F(PageServicesTest, WithoutKeyAndParametersNothingStandsBetweenTheParentheses) {
    GiveBack(Create("Array", "", false));
    EXPECT_EQ(browser.Evaluated(), Texts{"new Array();"});
    EXPECT_TRUE(Calls({"keys."}).empty());
}

TEST_F(PageServicesTest, ParametersWithoutAKeyKeepTheirComma) {
    GiveBack(Create("X", "1", false));
    EXPECT_EQ(browser.Evaluated(), Texts{"new X(, 1);"});
}

TEST_F(PageServicesTest, AMissingKeyServiceGivesAnEmptyKey) {
    platform.answers.hasObjCreation = false;
    GiveBack(Create("Channel", "7", true));
    EXPECT_EQ(browser.Evaluated(), Texts{"new Channel(\"\", 7);"});
}

TEST_F(PageServicesTest, WithoutTheBrowserInterfaceNoPageIsTrusted) {
    object->m_pBrowserAPI = nullptr;
    EXPECT_FALSE(object->t_IsCurrentPageTrusted());
}

TEST_F(PageServicesTest, WhatIsNoObjectIsLoggedAndGivenBack) {
    for (const Value& value : {Value(), Value(nullptr), Value(5), Value("text")}) {
        browser.AnswerEvaluateOf("new Channel", [value](const std::string&) { return value; });
        EXPECT_EQ(Create("Channel", "7", true), nullptr);
    }
    ExpectLogged("Evaluate succeeded, Object? NO", 4);
    ExpectLogged(2, "Failed to get object.", 4);
}

TEST_F(PageServicesTest, AnObjectVariantWithoutAnObjectIsNoObject) {
    browser.AnswerEvaluateOf("new Channel", [](const std::string&) { return Value(static_cast<NPObject*>(nullptr)); });
    EXPECT_EQ(Create("Channel", "7", true), nullptr);
    ExpectLogged(2, "Failed to get object.");
}

TEST_F(PageServicesTest, AFailedConstructionLeavesTheObjectUnchanged) {
    browser.FailNth("evaluate", 1);
    FakeObject& before = browser.MakeObject("before");
    NPObject* created = before.Pointer();
    EXPECT_FALSE(object->t_CreateJSObject("Channel", "7", true, &created));
    EXPECT_EQ(created, before.Pointer());
    ExpectLogged("Evaluate failed, Object? NO");
    ExpectLogged(2, "Failed to get object.");
}

TEST_F(PageServicesTest, AConstructorThatDestroysTheObjectDoesNoHarm) {
    object->t_RegisterMethod("act", OipfJavaScript::make_method(object, &ScriptObject::Act));
    NPObject* created = nullptr;
    object->m_action = [&] { EXPECT_TRUE(object->t_CreateJSObject("Channel", "7", true, &created)); };
    When("evaluate new Channel", [this] {
        static_cast<ScriptObject*>(object)->Invalidate();
        npn.releaseobject(object);
    });
    browser.pageHoldsDuringCalls = false;
    browser.Call(object, "act");
    object = nullptr;
    EXPECT_EQ(ScriptObject::s_living, 0);
    GiveBack(created);
}

}  // namespace
