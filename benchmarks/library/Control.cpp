#include "benchmarks/library/Control.h"

#include <time.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <map>
#include <semaphore>
#include <string>
#include <thread>

#include "benchmarks/library/Instances.h"
#include "benchmarks/library/Notify.h"

namespace benchmarks {

NPP Control::s_object = nullptr;
NPP Control::s_floor = nullptr;

namespace {

using Clock = std::chrono::steady_clock;
using Microseconds = std::chrono::duration<double, std::micro>;

double ThreadCpu() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e6 + static_cast<double>(time.tv_nsec) / 1e3;
}

std::string Text(const NPVariant& variant) {
    const NPString& text = variant.value.stringValue;
    return variant.type == NPVariantType_String ? std::string(text.UTF8Characters, text.UTF8Length) : std::string();
}

Notify NotifyTarget(const NPVariant* args) {
    return Text(args[0]) == "floor" ? NotifyFloor(Control::s_floor->pdata, Text(args[1]))
                                    : NotifyObject(Control::s_object->pdata, Text(args[1]));
}

int Number(const NPVariant& variant) {
    return variant.type == NPVariantType_Double ? static_cast<int>(variant.value.doubleValue) : variant.value.intValue;
}

void SetNumber(NPVariant* result, double number) {
    result->type = NPVariantType_Double;
    result->value.doubleValue = number;
}

}  // namespace

// One notification is under way at a time.
struct Control::Exchange {
    Exchange(Notify notifyTarget, int notifications) : notify(std::move(notifyTarget)), count(notifications) {
        thread = std::thread([this] { Run(); });
    }
    ~Exchange() { thread.join(); }

    void Run() {
        for (int i = 0; i < count; ++i) {
            begun = Clock::now();
            notify(i);
            arrived.acquire();
        }
    }
    int Arrived() {
        times.push_back(Microseconds(Clock::now() - begun).count());
        const int remaining = count - static_cast<int>(times.size());
        arrived.release();
        return remaining;
    }
    double Median() {
        const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
        std::nth_element(times.begin(), middle, times.end());
        return *middle;
    }

    const Notify notify;
    const int count;
    Clock::time_point begun;
    std::binary_semaphore arrived{0};
    std::vector<double> times;
    std::thread thread;
};

Control::Control() : NPObject{} {}
Control::~Control() = default;

namespace {

Control& ControlOf(NPObject* object) { return *static_cast<Control*>(object); }

using Property = double (*)(Control&);
using Method = double (*)(Control&, const NPVariant* args);

template <class Member>
using Members = std::map<NPIdentifier, Member>;

const Members<Property>& Properties() {
    static const Members<Property> s_properties{
        {Browser().getstringidentifier("cpu"), [](Control&) { return ThreadCpu(); }},
        {Browser().getstringidentifier("postingCpu"), [](Control& control) { return control.postingCpu; }},
        {Browser().getstringidentifier("latency"), [](Control& control) { return control.exchange->Median(); }},
    };
    return s_properties;
}

double Post(Control& control, const NPVariant* args) {
    const Notify notify = NotifyTarget(args);
    const int count = Number(args[2]);
    std::thread([&] {
        const double begun = ThreadCpu();
        for (int i = 0; i < count; ++i) notify(i);
        control.postingCpu = ThreadCpu() - begun;
    }).join();
    return count;
}

double BeginExchange(Control& control, const NPVariant* args) {
    control.exchange.reset();  // the last one's thread has ended
    control.exchange = std::make_unique<Control::Exchange>(NotifyTarget(args), Number(args[2]));
    return 0;
}

const Members<Method>& Methods() {
    static const Members<Method> s_methods{
        {Browser().getstringidentifier("post"), Post},
        {Browser().getstringidentifier("exchange"), BeginExchange},
        {Browser().getstringidentifier("arrived"),
         [](Control& control, const NPVariant*) -> double { return control.exchange->Arrived(); }},
    };
    return s_methods;
}

bool Invoke(NPObject* object, NPIdentifier name, const NPVariant* args, std::uint32_t, NPVariant* result) {
    const auto method = Methods().find(name);
    if (method == Methods().end()) return false;
    SetNumber(result, method->second(ControlOf(object), args));
    return true;
}

bool GetProperty(NPObject* object, NPIdentifier name, NPVariant* result) {
    const auto property = Properties().find(name);
    if (property == Properties().end()) return false;
    SetNumber(result, property->second(ControlOf(object)));
    return true;
}

}  // namespace

NPClass Control::s_class{NP_CLASS_STRUCT_VERSION_CTOR,
                         [](NPP, NPClass*) -> NPObject* { return new Control; },
                         [](NPObject* object) { delete &ControlOf(object); },
                         nullptr,
                         [](NPObject*, NPIdentifier name) { return Methods().contains(name); },
                         Invoke,
                         nullptr,
                         [](NPObject*, NPIdentifier name) { return Properties().contains(name); },
                         GetProperty,
                         [](NPObject*, NPIdentifier, const NPVariant*) { return false; },
                         nullptr,
                         nullptr,
                         nullptr};

}  // namespace benchmarks
