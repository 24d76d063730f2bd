// What the tests of the video/broadcast object have in common: the object as a page has it, and one whose protected
// members are in reach.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/PluginInstance.h"
#include "tests/support/PluginTest.h"
#include "videobroadcast/COipfVideoBroadcast.h"

namespace videobroadcast {

using support::FakeObject;
using support::Outcome;
using support::PluginInstance;
using support::Undefined;
using support::Value;
using support::Values;
using Object = OipfVideoBroadcast::COipfVideoBroadcast;

// The members that no script reaches directly.
class ProbedObject : public Object {
public:
    using Object::Object;

    using Object::m_GetBroadcastPlayer;
    using Object::m_GetMinimumAge;
    using Object::m_OnEvent;
    using Object::m_ProcessEvent;
    using Object::m_ProcessRightsInfo;
    using Object::m_ReleaseBroadcastPlayer;
    using Object::m_SendChChange;
    using Object::m_SendDrmRightsError;
    using Object::m_SetNullChannel;
    using Object::m_SetPlayState;
    using Object::t_AllowEventListener;
};

// One such object with an instance of its own, over the table that FakeBrowser::Functions gives: tests may replace
// functions of it.
class Probed {
public:
    explicit Probed(support::FakeBrowser& browser);
    Probed(const Probed&) = delete;
    Probed& operator=(const Probed&) = delete;
    ~Probed() { Destroy(); }

    ProbedObject& operator*() const { return *m_object; }
    ProbedObject* operator->() const { return m_object; }
    // Null when the object could not be made, and after its end.
    ProbedObject* Get() const { return m_object; }
    NPP Npp() const { return m_npp; }

    Outcome Read(const std::string& name) { return m_browser.Get(m_object, name); }
    int PlayState() { return Read("playState").value.Int(); }
    // The browser invalidates the object; its instance lives on.
    void Invalidate() { m_object->_class->invalidate(m_object); }
    // The instance gives the object back.
    void Destroy();
    // Both, as browsers do at the end of a page.
    void End();

private:
    support::FakeBrowser& m_browser;
    NPP m_npp;
    ProbedObject* m_object = nullptr;
};

// A page with functions that write what they get into the list of calls. What an object still holds of its handlers and
// listeners at its end is allowed to stay held.
class ObjectTest : public support::PluginTest {
protected:
    void TearDown() override;

    // The page's object, which is there from the first use.
    PluginInstance& Page();
    // The same as the platform sees it.
    Object& Native() { return *static_cast<Object*>(Page().Object()); }
    // The page ends, or removes the element: the browser invalidates the object, then destroys the instance.
    void EndPage();
    // A function named like the property, set as its handler: "script.onBlur()" in the list of calls.
    FakeObject& SetHandler(NPObject* object, const std::string& property, std::function<void()> action = [] {});
    FakeObject& SetHandler(const std::string& property, std::function<void()> action = [] {});
    // A listener that writes the event with its properties: "event PlayStateChange{state: 1, error: undefined}".
    FakeObject& Listen(NPObject* object, const std::string& type, std::function<void()> action = [] {});
    FakeObject& Listen(const std::string& type, std::function<void()> action = [] {});
    // The event with those properties that events of the object have, in a fixed order.
    std::string Describe(NPObject* event);

    // What script was told, in order.
    std::vector<std::string> Told() { return Calls({"script.on", "event "}); }

    int PlayState() { return Page().Get("playState").value.Int(); }
    std::size_t Pump() { return browser.RunAsyncCalls(); }
    // Brings the page's object to a play state through script, the list of calls and the log emptied.
    void Connect();
    void Present();
    void Stop();

    static void Forget();  // the list of calls and the log so far
    // How many lines begin with this text.
    static std::size_t LinesWith(const std::string& beginning);

private:
    std::unique_ptr<PluginInstance> m_page;
};

using Lines = std::vector<std::string>;

}  // namespace videobroadcast
