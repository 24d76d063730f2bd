// A browser that keeps no history, only exact counts: for tests of a hundred thousand calls and more.
#pragma once

#include <functional>
#include <list>
#include <map>
#include <ostream>
#include <string>
#include <string_view>
#include <thread>

#include "npapi/npfunctions.h"
#include "tests/support/AsyncQueue.h"
#include "tests/support/Value.h"
#include "videobroadcast/COipfVideoBroadcast.h"

namespace endurance {

// What the plug-in and the page hold together. Equal before and after: nothing was lost.
struct Holdings {
    long objects = 0;
    long references = 0;
    long blocks = 0;  // of the browser's memory
    friend bool operator==(const Holdings&, const Holdings&) = default;
    friend void PrintTo(const Holdings& held, std::ostream* out) {
        *out << held.objects << " objects, " << held.references << " references, " << held.blocks << " blocks";
    }
};

// One at a time, on the thread that made it; a call from another thread is a test failure, but for
// NPN_PluginThreadAsyncCall. The functions that the plug-in does not use are null.
class CountingBrowser {
public:
    CountingBrowser();
    ~CountingBrowser();
    CountingBrowser(const CountingBrowser&) = delete;
    CountingBrowser& operator=(const CountingBrowser&) = delete;

    static NPNetscapeFuncs* Functions();
    const Holdings& Held() const { return m_held; }
    support::AsyncQueue& Async() { return m_async; }

    // An object of the page with these properties, and a function of the page. The caller has the one reference. Every
    // call of the function answers with a text.
    using Function = std::function<void(const NPVariant& argument)>;
    NPObject* MakeObject(std::map<std::string, support::Value> properties);
    NPObject* MakeFunction(Function function);
    static void Release(NPObject* object) { Functions()->releaseobject(object); }

    // Told of each evaluated constructor call, which makes an object.
    std::function<void(std::string_view script)> onConstruct;

    // Script uses an object of the plug-in; what it gets is given back. True when the plug-in accepted.
    bool Set(NPObject* object, const std::string& name, NPObject* function);
    bool Get(NPObject* object, const std::string& name);
    bool Call(NPObject* object, const std::string& name, const support::Values& arguments = {});

private:
    friend class Embedded;
    struct PageObject;
    struct Calls;

    Holdings m_held;
    std::list<_NPP> m_instances;
    support::AsyncQueue m_async;
    const std::thread::id m_mainThread = std::this_thread::get_id();
    NPNetscapeFuncs* m_functionsOfEvents;   // as they were before,
    NPNetscapeFuncs* m_functionsOfObjects;  // and these
};

// One video/broadcast object of the page, with an instance of its own.
class Embedded {
public:
    using Object = OipfVideoBroadcast::COipfVideoBroadcast;

    explicit Embedded(CountingBrowser& browser);
    Embedded(const Embedded&) = delete;
    Embedded& operator=(const Embedded&) = delete;
    ~Embedded();  // the instance gives it back

    Object* Get() const { return m_object; }
    Object* operator->() const { return m_object; }
    void Invalidate() { m_object->_class->invalidate(m_object); }

private:
    CountingBrowser& m_browser;
    NPP m_npp;
    Object* m_object;
};

}  // namespace endurance
