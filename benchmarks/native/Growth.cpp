// How what an operation costs grows with the number of things that there are.
#include <functional>
#include <list>
#include <string>
#include <vector>

#include "benchmarks/library/Notify.h"
#include "benchmarks/native/BareBrowser.h"
#include "benchmarks/native/BarePlatform.h"
#include "benchmarks/native/Benchmarks.h"
#include "benchmarks/native/Count.h"

namespace benchmarks {

namespace {

constexpr int kNumbers[] = {1, 10, 100, 1000, 10000};
constexpr int kTimes = 3;
const std::string kType = "video/broadcast";

void CountAt(const std::string& things, int number, const std::string& operation, const std::function<void()>& run) {
    Count(things + ";" + std::to_string(number) + ";" + operation, kTimes, run);
}

void GrowObjects(const NPPluginFuncs& plugin) {
    std::list<Instance> objects;
    for (const int number : kNumbers) {
        while (objects.size() < static_cast<std::size_t>(number)) objects.emplace_back(plugin, kType);
        const Instance& last = objects.back();
        const NPIdentifier name = BareBrowser::Name("playState");
        CountAt("live objects", number, "read of a property", [&] { last.Get(name); });
        CountAt("live objects", number, "construction and destruction", [&] { Instance(plugin, kType); });
        CountAt("live objects", number, "stream event to all", [&] {
            DeliverStreamEvent(0);
            BareBrowser::RunAsyncCalls();
        });
    }
}

// The records are another object's. They come back with each number: what is counted takes some of them away.
void GrowRecords(const NPPluginFuncs& plugin) {
    for (const int number : kNumbers) {
        const Instance other(plugin, kType);
        const Instance object(plugin, kType);
        const Notify fill = NotifyObject(other.Data(), "playState");
        const Notify notify = NotifyObject(object.Data(), "playState");
        const Notify tellProgrammes = NotifyObject(object.Data(), "programmes");
        for (int i = 0; i < number; ++i) fill(i);
        BareBrowser::DropAsyncCalls();
        CountAt("pending records", number, "notification and its delivery", [&] {
            notify(0);
            BareBrowser::RunAsyncCalls();
        });
        CountAt("pending records", number, "ProgrammesChanged and its delivery", [&] {
            tellProgrammes(0);
            BareBrowser::RunAsyncCalls();
        });
        CountAt("pending records", number, "construction and destruction", [&] { Instance(plugin, kType); });
    }
}

void CallWithListener(const Instance& object, const char* method, const std::string& type, NPObject* listener) {
    const NPVariant args[] = {MakeString(type), MakeObject(listener), MakeBool(false)};
    object.Call(BareBrowser::Name(method), args, 3);
}

void GrowListeners(const NPPluginFuncs& plugin) {
    const Instance object(plugin, kType);
    const Notify notify = NotifyObject(object.Data(), "programmes");
    const std::string type = "ProgrammesChanged";
    int listeners = 0;
    for (const int number : kNumbers) {
        for (; listeners < number; ++listeners)
            CallWithListener(object, "addEventListener", type, BareBrowser::NewFunction());
        NPObject* another = BareBrowser::NewFunction();
        const auto addAndRemove = [&](const std::string& typeOfOne) {
            CallWithListener(object, "addEventListener", typeOfOne, another);
            CallWithListener(object, "removeEventListener", typeOfOne, another);
        };
        CountAt("listeners", number, "event to all", [&] {
            notify(0);
            BareBrowser::RunAsyncCalls();
        });
        CountAt("listeners", number, "adding and removing one", [&] { addAndRemove(type); });
        CountAt("listeners", number, "adding and removing one of another type",
                [&] { addAndRemove("FullScreenChange"); });
    }
}

void Subscribe(const Instance& object, const char* method, const std::string& event, NPObject* listener) {
    static const std::string s_url = "dvb://1.2.3/events";
    const NPVariant args[] = {MakeString(s_url), MakeString(event), MakeObject(listener)};
    object.Call(BareBrowser::Name(method), args, 3);
}

void GrowSubscriptions(const NPPluginFuncs& plugin) {
    const Instance object(plugin, kType);
    int subscriptions = 0;
    for (const int number : kNumbers) {
        for (; subscriptions < number; ++subscriptions)
            Subscribe(object, "addStreamEventListener", std::to_string(subscriptions), BareBrowser::NewFunction());
        const unsigned long job = LastJob();
        const auto deliver = [](unsigned long to) {
            DeliverStreamEvent(to);
            BareBrowser::RunAsyncCalls();
        };
        CountAt("subscriptions", number, "stream event to one", [&] { deliver(job); });
        CountAt("subscriptions", number, "subscribing and unsubscribing one", [&] {
            NPObject* another = BareBrowser::NewFunction();
            Subscribe(object, "addStreamEventListener", "another", another);
            Subscribe(object, "removeStreamEventListener", "another", another);
            deliver(LastJob());
        });
    }
}

}  // namespace

void Grow(const NPPluginFuncs& object) {
    GrowObjects(object);
    GrowRecords(object);
    GrowListeners(object);
    GrowSubscriptions(object);
}

}  // namespace benchmarks
