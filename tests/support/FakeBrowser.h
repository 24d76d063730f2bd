// A browser for tests of the plug-in: all NPN_ functions over a page of fake script objects, with exact books.
//
// One at a time, on the thread that made it (the main thread); only NPN_PluginThreadAsyncCall may come from others,
// every other call from another thread is a test failure. Functions are named as the members of NPNetscapeFuncs:
// "evaluate", "createobject", "invokeDefault", "memalloc", ...
//
// Into the list of calls (CallList) go: "evaluate TEXT", "exception TEXT", "setvalue VARIABLE, VALUE", "forceredraw",
// "script.NAME(ARGUMENTS)" and "script.NAME.METHOD(ARGUMENTS)".
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "tests/support/AsyncQueue.h"
#include "tests/support/FakeObject.h"
#include "tests/support/FaultPlan.h"
#include "tests/support/Ledger.h"
#include "tests/support/Npapi.h"
#include "tests/support/Value.h"

namespace support {

// What came of a script's use of one of the plug-in's objects.
struct Outcome {
    bool accepted = false;  // what the plug-in's hook returned
    Value value;            // the result; undefined when nothing was written. An object is held by the page.
    std::string exception;  // the first that was raised; empty when none was
};

class FakeBrowser {
public:
    FakeBrowser();
    FakeBrowser(const FakeBrowser&) = delete;
    FakeBrowser& operator=(const FakeBrowser&) = delete;
    ~FakeBrowser();
    static FakeBrowser* Current();

    // The table that objects under test can be given: ends with `convertpoint` to the byte, and stays for the life of
    // the process (the plug-in keeps the pointer in statics). Table makes one for NP_Initialize in a block of exactly
    // `size` bytes; beyond the members that we know it is full of garbage.
    NPNetscapeFuncs* Functions();
    NPNetscapeFuncs* Table(std::size_t size = kThroughConvertPoint, std::uint16_t version = 26);
    static constexpr std::size_t kThroughConvertPoint = offsetof(NPNetscapeFuncs, convertpoint) + sizeof(void*);
    // Makes a member null, in Functions() and in tables made later; the second form: all that hosts leave out.
    template <class Member>
    void LeaveOut(Member NPNetscapeFuncs::*member) {
        m_functions.*member = nullptr;
        WriteFunctions();
    }
    void LeaveOutOptionalFunctions();

    // The page. Objects that it made or was given live until the test ends, unless it forgets them.
    FakeObject& Window() { return *m_window; }
    FakeObject& MakeObject(const std::string& name);
    template <class F>
    FakeObject& MakeFunction(const std::string& name, F function) {
        return MakeObject(name).SetFunction(std::move(function));
    }
    FakeObject& MakeFunction(const std::string& name) {
        return MakeFunction(name, [] {});
    }
    FakeObject& MakeArray(const std::string& name);
    void Forget(const FakeObject& object);  // the page gives up its reference
    // All objects that evaluated `new CLASS(...);` made, in order.
    std::vector<FakeObject*> Created(const std::string& className);
    // The fake behind a pointer, dead ones included; null for an object of the plug-in.
    FakeObject* Fake(NPObject* object);
    static std::string NameOf(NPObject* object);

    // How the page's values arrive: `numbersAreDoubles` as in Qt WebKit; empty strings with a null pointer or not.
    bool numbersAreDoubles = false;
    bool emptyStringsAreNull = true;
    // What NPN_ReleaseVariantValue leaves: the variant as it was, so that releasing it twice is found; or a void one.
    bool releaseMakesVoid = false;
    // A page's wrapper holds the object while script uses it. Without: only the plug-in itself keeps it alive.
    bool pageHoldsDuringCalls = true;
    bool windowIsNull = false;  // NPN_GetValue answers "no error" and no window
    // Calls that are pending when their instance ends are dropped with it.
    bool pendingCallsEndWithInstance = true;

    // Instances as the browser sees them; the plug-in's side of their life is PluginInstance's.
    NPP MakeInstance();
    void EndInstance(NPP instance);
    bool IsInstance(NPP instance) const;  // made here; it may have ended

    // Script uses an object of the plug-in.
    Outcome Get(NPObject* object, const std::string& name);
    Outcome Set(NPObject* object, const std::string& name, const Value& value);
    Outcome Call(NPObject* object, const std::string& name, const Values& arguments = {});
    bool HasProperty(NPObject* object, const std::string& name);
    bool HasMethod(NPObject* object, const std::string& name);
    // The page takes over the reference that the plug-in hands out with `object` (NPP_GetValue, results).
    void TakeOver(const std::string& function, NPObject* object) { m_ledger.TakeOver(function, object); }
    void Hold(const Value& value);
    // The page drops the objects it got as results, as a garbage collector would.
    void CollectGarbage();

    // Evaluation. The last rule that fits answers; an answer of nothing is a failed evaluation. Set already:
    // "document.location.href" gives `location`, "new X(...);" makes an object of class X, "window.X = true;" sets a
    // property of the window. A text that no rule answers fails the test.
    std::string location = "http://tv.example/app/index.html";
    using Answer = std::function<std::optional<Value>(const std::string& script)>;
    void AnswerEvaluate(const std::string& text, Answer answer);
    void AnswerEvaluateOf(const std::string& prefix, Answer answer);
    // A new object for an answer: once it is handed out, its only reference is the plug-in's.
    FakeObject& MakeResult(const std::string& name);

    // What happened.
    const std::vector<std::string>& Evaluated() const { return m_evaluated; }
    const std::vector<std::string>& Exceptions() const { return m_exceptions; }
    std::vector<std::pair<int, std::intptr_t>> SetValues() const { return m_setValues; }
    unsigned Uses(const std::string& function) const { return m_faults.Uses(function); }

    // Faults: see FaultPlan. A function that fails returns its kind of failure and touches nothing.
    FaultPlan& Faults() { return m_faults; }
    void FailNth(const std::string& function, unsigned n) { m_faults.FailNth(function, n); }
    void FailFrom(const std::string& function, unsigned n = 1) { m_faults.FailFrom(function, n); }
    void StopFailing(const std::string& function) { m_faults.StopFailing(function); }

    // Asynchronous calls: nothing runs until it is told to.
    AsyncQueue& Async() { return m_async; }
    std::size_t RunAsyncCalls() { return m_async.RunAll(); }
    void DropAsyncCalls() { m_async.Drop(); }

    // The books.
    Ledger& GetLedger() { return m_ledger; }
    void MayKeep(const FakeObject& object, unsigned references = 1);
    void ExpectBalanced();

private:
    friend class BrowserFunctions;
    friend class PassedValues;

    struct Rule {
        std::string text;
        bool isPrefix;
        Answer answer;
    };

    void WriteFunctions();
    void SetDefaultRules();
    FakeObject& Enter(const std::string& name);
    Value Construct(const std::string& script);
    std::optional<Value> Evaluate(const std::string& script);
    // Hands a value to the plug-in as a result: string and object are the plug-in's then.
    NPVariant HandOut(const Value& value);
    // Takes a result from the plug-in: what it holds is the page's then.
    Value TakeResult(const std::string& function, NPVariant& result);
    // One use of an object: checks it, holds it meanwhile, collects what came of it.
    template <class Hook>
    Outcome Use(const std::string& what, NPObject* object, Hook hook);

    const std::thread::id m_mainThread = std::this_thread::get_id();
    NPNetscapeFuncs m_functions;
    std::vector<void*> m_tables;
    Ledger m_ledger;
    AsyncQueue m_async;
    FaultPlan m_faults;
    std::list<FakeObject> m_fakes;
    FakeObject* m_window = nullptr;
    std::list<Rule> m_rules;
    std::map<NPObject*, FakeObject*> m_fakesByPointer;
    std::set<NPObject*> m_fresh;  // made for an answer, not handed out yet
    std::vector<NPObject*> m_garbage;
    std::vector<NPP> m_instances;
    std::vector<std::string> m_evaluated;
    std::vector<std::string> m_exceptions;
    std::vector<std::pair<int, std::intptr_t>> m_setValues;
};

// An array of variants as a browser passes it: strings without a terminator, every block exactly as large as needed.
// Objects stay the page's.
class PassedValues {
public:
    PassedValues(FakeBrowser& browser, const Values& values);
    PassedValues(const PassedValues&) = delete;
    PassedValues& operator=(const PassedValues&) = delete;
    ~PassedValues();
    const NPVariant* Data() const { return m_variants.get(); }
    std::uint32_t Count() const { return static_cast<std::uint32_t>(m_texts.size()); }

private:
    NPVariant Pass(FakeBrowser& browser, const Value& value, std::size_t position);

    std::unique_ptr<NPVariant[]> m_variants;  // null when there are none
    std::vector<std::unique_ptr<char[]>> m_texts;
    std::vector<NPObject*> m_held;
    FakeBrowser& m_browser;
};

}  // namespace support
