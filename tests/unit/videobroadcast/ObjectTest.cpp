// What the tests of the video/broadcast object have in common.
#include "tests/unit/videobroadcast/ObjectTest.h"

#include <algorithm>

#include "javascript/JSNpapiObject.h"

namespace videobroadcast {

using ProbedClass = OipfJavaScript::JSNpapiObject<ProbedObject>;

Probed::Probed(support::FakeBrowser& browser) : m_browser(browser), m_npp(browser.MakeInstance()) {
    ProbedClass::s_pNPNFuncs = browser.Functions();
    NPObject* made = browser.Functions()->createobject(m_npp, &ProbedClass::s_npclass);
    m_object = made != nullptr ? static_cast<ProbedObject*>(made) : nullptr;
}

void Probed::Destroy() {
    ProbedObject* object = m_object;
    m_object = nullptr;
    if (object != nullptr) {
        m_browser.Functions()->releaseobject(object);
        m_browser.EndInstance(m_npp);
    }
}

void Probed::End() {
    Invalidate();
    Destroy();
}

void ObjectTest::TearDown() {
    support::CallList::Instance().Reset();  // the test's actions refer to what is gone by now
    m_page.reset();
    browser.CollectGarbage();  // what script read may hold an object until here
    PluginTest::TearDown();
}

PluginInstance& ObjectTest::Page() {
    if (!m_page) {
        m_page = std::make_unique<PluginInstance>(browser);
    }
    return *m_page;
}

void ObjectTest::EndPage() {
    Page().Invalidate();
    Page().Destroy();
}

FakeObject& ObjectTest::SetHandler(NPObject* object, const std::string& property, std::function<void()> action) {
    FakeObject& handler = browser.MakeFunction(property, std::move(action));
    EXPECT_TRUE(browser.Set(object, property, handler).accepted);
    browser.MayKeep(handler);
    return handler;
}

FakeObject& ObjectTest::SetHandler(const std::string& property, std::function<void()> action) {
    return SetHandler(Page().Object(), property, std::move(action));
}

FakeObject& ObjectTest::Listen(NPObject* object, const std::string& type, std::function<void()> action) {
    FakeObject& listener = browser.MakeFunction(type + " listener", [this, action](const Values& arguments) {
        support::CallList::Instance().Add("event " + Describe(arguments.at(0).Object()));
        action();
    });
    EXPECT_TRUE(browser.Call(object, "addEventListener", {type, listener, false}).accepted);
    browser.MayKeep(listener);
    return listener;
}

FakeObject& ObjectTest::Listen(const std::string& type, std::function<void()> action) {
    return Listen(Page().Object(), type, std::move(action));
}

std::string ObjectTest::Describe(NPObject* event) {
    static const Lines kNames = {"channel", "errorState", "state",  "error", "contentID", "rating", "DRMSystemID",
                                 "rightsIssuerURL", "name", "data", "text",  "status"};
    std::string properties;
    for (const std::string& name : kNames) {
        if (browser.HasProperty(event, name)) {
            properties += (properties.empty() ? "" : ", ") + name + ": " + browser.Get(event, name).value.Show();
        }
    }
    return browser.Get(event, "type").value.Text() + "{" + properties + "}";
}

void ObjectTest::Connect() {
    Page().Call("nextChannel");
    EXPECT_EQ(PlayState(), Object::E_STATE_CONNECTING);
    Forget();
}

void ObjectTest::Present() {
    Page().Call("bindToCurrentChannel");
    EXPECT_EQ(PlayState(), Object::E_STATE_PRESENTING);
    Forget();
}

void ObjectTest::Stop() {
    Present();
    Page().Call("stop");
    EXPECT_EQ(PlayState(), Object::E_STATE_STOPPED);
    Forget();
}

void ObjectTest::Forget() {
    ClearCalls();
    ClearLog();
}

std::size_t ObjectTest::LinesWith(const std::string& beginning) {
    return static_cast<std::size_t>(std::ranges::count_if(
        support::Log::Instance().Texts(), [&](const std::string& line) { return line.starts_with(beginning); }));
}

}  // namespace videobroadcast
