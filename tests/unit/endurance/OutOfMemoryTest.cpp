// A plug-in without memory: no exception reaches the platform or the browser, and nothing is lost twice.
#include <array>
#include <new>

#include "tests/unit/endurance/Allocations.h"
#include "tests/unit/videobroadcast/ObjectTest.h"

namespace endurance {
using namespace videobroadcast;

namespace {

std::array<void*, 16> s_asked;
std::size_t s_askedCount = 0;

// Only errors are logged (lines that are not wanted need no memory), and the browser needs no memory either.
class OutOfMemory : public ObjectTest {
protected:
    OutOfMemory() {
        support::Log::Instance().SetLevel(0);
        s_askedCount = 0;
        browser.Functions()->pluginthreadasynccall = [](NPP, void (*)(void*), void* data) {
            s_asked.at(s_askedCount++) = data;
        };
    }
    static void RunAsked() {
        for (std::size_t i = 0; i < s_askedCount; ++i) Object::s_HandleAsyncCall(s_asked[i]);
        s_askedCount = 0;
    }
};

TEST_F(OutOfMemory, ANotificationIsDroppedAndItsPayloadFreed) {
    Probed object(browser);
    unsigned n = 0;
    for (bool failed = true; failed;) {
        auto* message = new SASMessage{4, 1, 0, {{7, {1}}}};
        const AllocationFault fault(++n);
        object->OnSASMessageReceived(message);
        failed = fault.Happened();
        EXPECT_EQ(s_askedCount, failed ? 0u : 1u) << n;
    }
    ASSERT_GT(n, 1u);
    ExpectLogged(0, "Out of memory!", n - 1);
    RunAsked();
}

TEST_F(OutOfMemory, AStreamEventReachesAsManyObjectsAsThereIsMemoryFor) {
    Probed first(browser);
    Probed second(browser);
    FakeObject& ofFirst = SetHandler(first.Get(), "onStreamEvent");
    FakeObject& ofSecond = SetHandler(second.Get(), "onStreamEvent");
    unsigned n = 0;
    for (bool failed = true; failed; RunAsked()) {
        auto* event = new CDSMCCStreamEventData{
            CDSMCCStreamEventData::E_STATUS_TRIGGER, 1, "a name that needs memory of its own", {1, 2}, 1, 0};
        const AllocationFault fault(++n);
        Object::DsmEventCallback(event);
        failed = fault.Happened();
    }
    ExpectLogged(0, "Out of memory!", n - 1);
    EXPECT_EQ(ofSecond.Calls().size(), 1u);
    // Half of the failures came after the first had its copy.
    EXPECT_GT(ofFirst.Calls().size(), 2u);
    EXPECT_LT(ofFirst.Calls().size(), n);
}

TEST_F(OutOfMemory, InsideTheHandlingOfARecordIsLoggedAndTheRecordIsGone) {
    Probed object(browser);
    const auto create = browser.Functions()->createobject;
    browser.Functions()->createobject = [](NPP, NPClass*) -> NPObject* { throw std::bad_alloc(); };
    object->ProgrammeChanged();
    object->OnEvent(
        {Object::E_ON_STREAM_EVENT, reinterpret_cast<std::uintptr_t>(new CDSMCCStreamEventData{
                                        CDSMCCStreamEventData::E_STATUS_TRIGGER, 1, "name", {1, 2}, 1, 0})});
    FakeObject& handler = SetHandler(object.Get(), "onStreamEvent");
    RunAsked();
    browser.Functions()->createobject = create;
    ExpectLogged(0, "Out of memory!", 2);
    browser.GetLedger().MayKeepBlocks(4);  // the strings of the event that could not be made
    browser.MayKeep(handler, 2);
}

}  // namespace
}  // namespace endurance
