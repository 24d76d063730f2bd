// The operations of compare.html without a browser around them: the object's and the floor's own instructions.
#include <functional>
#include <string>
#include <vector>

#include "benchmarks/library/Notify.h"
#include "benchmarks/native/BareBrowser.h"
#include "benchmarks/native/Benchmarks.h"
#include "benchmarks/native/Count.h"

namespace benchmarks {

namespace {

constexpr int kTimes = 1000;

using Operation = std::function<void()>;

struct Target {
    std::string name;
    const Instance& instance;
    Notify (*notify)(void*, const std::string&);
};

void CountFor(const Target& target, const std::string& name, const Operation& operation) {
    Count(name + ";" + target.name, kTimes, operation);
}

void CompareAccess(const Target& target) {
    const Instance& instance = target.instance;
    const NPVariant null = MakeVariant(NPVariantType_Null);
    const NPVariant no = MakeBool(false);
    const NPVariant width = MakeInt(160);
    const auto read = [&, name = BareBrowser::Name("playState")] { instance.Get(name); };
    const auto write = [&, name = BareBrowser::Name("onFocus")] { instance.Set(name, null); };
    const auto call = [&, name = BareBrowser::Name("toString")] { instance.Call(name, nullptr, 0); };
    const auto callOne = [&, name = BareBrowser::Name("setFullScreen")] { instance.Call(name, &no, 1); };
    const auto layOut = [&, name = BareBrowser::Name("width")] {
        instance.Set(name, width);
        BareBrowser::RunAsyncCalls();
    };
    CountFor(target, "read of a property", read);
    CountFor(target, "write of a property", write);
    CountFor(target, "call without arguments", call);
    CountFor(target, "call with one argument", callOne);
    CountFor(target, "write that lays out", layOut);
}

void Listen(const Target& target, int listeners) {
    const std::string type = "PlayStateChange";
    for (int i = 0; i < listeners; ++i) {
        const NPVariant args[] = {MakeString(type), MakeObject(BareBrowser::NewFunction()), MakeBool(false)};
        target.instance.Call(BareBrowser::Name("addEventListener"), args, 3);
    }
}

void CompareDelivery(const Target& target, const std::string& name, const std::string& kind) {
    const Notify notify = target.notify(target.instance.Data(), kind);
    int i = 0;
    CountFor(target, name, [&] {
        notify(i++);
        BareBrowser::RunAsyncCalls();
    });
}

void CompareDeliveries(const Target& target) {
    const NPVariant handler = MakeObject(BareBrowser::NewFunction());
    for (const char* name : {"onFocus", "onPlayStateChange", "onChannelChangeSucceeded"}) {
        if (target.name == "object" || std::string(name) == "onFocus")
            target.instance.Set(BareBrowser::Name(name), handler);
    }
    CompareDelivery(target, "PlayStateChange to the handler", "playState");
    CompareDelivery(target, "ChannelChangeSucceeded to the handler", "channel");
    if (target.name == "object")
        target.instance.Set(BareBrowser::Name("onPlayStateChange"), MakeVariant(NPVariantType_Null));
    Listen(target, 1);
    CompareDelivery(target, "PlayStateChange to 1 listener", "playState");
    Listen(target, 9);
    CompareDelivery(target, "PlayStateChange to 10 listeners", "playState");
}

void CompareAll(const Target& target, const NPPluginFuncs& plugin, const std::string& type) {
    CompareAccess(target);
    CompareDeliveries(target);
    CountFor(target, "construction and destruction", [&] { Instance(plugin, type); });
}

}  // namespace

void Compare(const NPPluginFuncs& object, const NPPluginFuncs& floor) {
    const std::string type = "video/broadcast";
    const Instance video(object, type);
    const Instance least(floor, type);
    CompareAll({"object", video, NotifyObject}, object, type);
    CompareAll({"floor", least, NotifyFloor}, floor, type);
}

}  // namespace benchmarks
