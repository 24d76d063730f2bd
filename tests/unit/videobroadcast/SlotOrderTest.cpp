// The places of the virtual operations that the platform and the plug-in call each other by.
#include <cstring>
#include <utility>

#include "javascript/Variants.h"
#include "platform/DSMCCProtocol.h"
#include "platform/IBroadcastPlayer.h"
#include "tests/support/BrowserFunctions.h"
#include "tests/support/Slots.h"
#include "tests/unit/videobroadcast/ObjectTest.h"

namespace videobroadcast {
namespace {

using support::SlotOf;

// Numbers count the destructor, which has two places, as slots 0 and 1.
TEST(SlotOrder, OfTheObjectsOwnOperations) {
    EXPECT_EQ(SlotOf(&Object::Invalidate), 2u);
    EXPECT_EQ(SlotOf(&Object::SetProperty), 4u);
    EXPECT_EQ(SlotOf(&Object::SetWindow), 8u);
    EXPECT_EQ(SlotOf(&Object::HandleEvent), 11u);
    EXPECT_EQ(SlotOf(&Object::Write), 15u);
    EXPECT_EQ(SlotOf(&ProbedObject::t_AllowEventListener), 16u);
}

template <class Class>
void ExpectListenerSlotsFrom(std::size_t first) {
    EXPECT_EQ(SlotOf(&Class::Suspend), first);
    EXPECT_EQ(SlotOf(&Class::Resume), first + 1);
    EXPECT_EQ(SlotOf(&Class::ChannelChanged), first + 2);
    EXPECT_EQ(SlotOf(&Class::TuneSuccess), first + 3);
    EXPECT_EQ(SlotOf(&Class::TuneFail), first + 4);
    EXPECT_EQ(SlotOf(&Class::ServiceNotAvailable), first + 5);
    EXPECT_EQ(SlotOf(&Class::ProgrammeChanged), first + 6);
    EXPECT_EQ(SlotOf(&Class::ParentalRatingChanged), first + 7);
    EXPECT_EQ(SlotOf(&Class::ParentalRatingBlocked), first + 8);
    EXPECT_EQ(SlotOf(&Class::ParentalRatingUnblocked), first + 9);
    EXPECT_EQ(SlotOf(&Class::NoSignal), first + 10);
    EXPECT_EQ(SlotOf(&Class::Scrambled), first + 11);
    EXPECT_EQ(SlotOf(&Class::ScrambledTune), first + 12);
    EXPECT_EQ(SlotOf(&Class::Unscrambled), first + 13);
    EXPECT_EQ(SlotOf(&Class::UpdateLayout), first + 14);
}

TEST(SlotOrder, OfTheObjectsListenerOperations) {
    ExpectListenerSlotsFrom<Object>(17);
    EXPECT_EQ(SlotOf(&Object::OnSASMessageReceived), 32u);
}

TEST(SlotOrder, OfThePlayersListener) { ExpectListenerSlotsFrom<IBroadcastPlayerListener>(2); }

TEST(SlotOrder, OfTheSasListener) {
    EXPECT_EQ(SlotOf(&ISASListener::OnSASMessageReceived), 2u);
    EXPECT_EQ(SlotOf(&ISASListener::OnSASSession), 3u);
}

TEST(SlotOrder, OfTheDsmccService) {
    EXPECT_EQ(SlotOf(&IDSMCCProtocol::SubscribeStreamEvent), 0u);
    EXPECT_EQ(SlotOf(&IDSMCCProtocol::UnsubscribeStreamEvent), 1u);
    EXPECT_EQ(SlotOf(&IDSMCCProtocol::RegisterStreamEventCallback), 2u);
    EXPECT_EQ(SlotOf(&IDSMCCProtocol::UnregisterStreamEventCallback), 3u);
}

void ExpectRising(const std::vector<std::size_t>& slots) {
    for (std::size_t i = 1; i < slots.size(); ++i) EXPECT_LT(slots[i - 1], slots[i]) << i;
}

TEST(SlotOrder, OfThePlayer) {
    using Player = IBroadcastPlayer;
    ExpectRising({SlotOf(&Player::BindToCurrentChannel), SlotOf(&Player::Stop), SlotOf(&Player::GetChannel),
                  SlotOf(&Player::SetChannel), SlotOf(&Player::PrevChannel), SlotOf(&Player::NextChannel),
                  SlotOf(&Player::GetChannelFromTriplet), SlotOf(&Player::GetChannelFromDSD)});
    ExpectRising({SlotOf(&Player::GetVideoComponents), SlotOf(&Player::GetAudioComponents),
                  SlotOf(&Player::GetSubtitleComponents), SlotOf(&Player::SelectVideoComponent),
                  SlotOf(&Player::SelectAudioComponent), SlotOf(&Player::SelectSubtitleComponent),
                  SlotOf(&Player::UnselectVideoComponent), SlotOf(&Player::UnselectAudioComponent),
                  SlotOf(&Player::UnselectSubtitleComponent)});
}

// The bases follow each other in this order, each with a table of its own.
TEST(SlotOrder, OfTheBases) {
    const auto at = [](auto* base) { return reinterpret_cast<std::uintptr_t>(base); };
    auto* object = reinterpret_cast<Object*>(0x10000);
    EXPECT_EQ(at(static_cast<OipfJavaScript::JSNPObject*>(object)), 0x10000u);
    EXPECT_EQ(at(static_cast<NPObject*>(object)), 0x10000u + sizeof(void*));
    EXPECT_LT(at(static_cast<NPObject*>(object)), at(static_cast<IBroadcastPlayerListener*>(object)));
    EXPECT_EQ(at(static_cast<ISASListener*>(object)),
              at(static_cast<IBroadcastPlayerListener*>(object)) + sizeof(void*));
}

// What stands in a place of the table is what the place is for.
class CountingObject final : public ProbedObject {
public:
    using ProbedObject::ProbedObject;
    void Suspend() override { called.emplace_back("Suspend"); }
    void Resume() override { called.emplace_back("Resume"); }
    void ChannelChanged() override { called.emplace_back("ChannelChanged"); }
    void ProgrammeChanged() override { called.emplace_back("ProgrammeChanged"); }
    void NoSignal() override { called.emplace_back("NoSignal"); }
    void UpdateLayout() override { called.emplace_back("UpdateLayout"); }
    void Invalidate() override { called.emplace_back("Invalidate"); }
    Lines called;
};

template <class Class>
void CallSlot(Class& object, std::size_t slot) {
    using Operation = void (Class::*)();
    struct {
        std::uintptr_t place;
        std::ptrdiff_t adjustment;
    } const words{1 + slot * sizeof(void*), 0};
    Operation operation = nullptr;
    static_assert(sizeof operation == sizeof words);
    std::memcpy(&operation, &words, sizeof words);
    (object.*operation)();
}

class SlotCalls : public ObjectTest {};

TEST_F(SlotCalls, ByPlaceReachTheOperationThroughTheObjectAndItsListener) {
    CountingObject object(browser.MakeInstance(), browser.Functions());
    for (const std::size_t slot : {2u, 17u, 18u, 19u, 23u, 27u, 31u}) CallSlot<Object>(object, slot);
    EXPECT_EQ(object.called, (Lines{"Invalidate", "Suspend", "Resume", "ChannelChanged", "ProgrammeChanged", "NoSignal",
                                    "UpdateLayout"}));
    object.called.clear();
    for (const std::size_t slot : {2u, 3u, 4u, 8u, 12u, 16u}) CallSlot<IBroadcastPlayerListener>(object, slot);
    EXPECT_EQ(object.called,
              (Lines{"Suspend", "Resume", "ChannelChanged", "ProgrammeChanged", "NoSignal", "UpdateLayout"}));
}

TEST_F(SlotCalls, EveryChangeOfTheWindowAsksForALayoutThroughTheVirtualOperation) {
    CountingObject object(browser.MakeInstance(), browser.Functions());
    const Lines once{"UpdateLayout"};
    NPSetWindowCallbackStruct information{};
    NPWindow window{};
    window.width = 640;
    window.ws_info = &information;
    object.SetWindow(&window);
    EXPECT_EQ(std::exchange(object.called, {}), once);
    const NPVariant size = OipfJavaScript::Int32Variant(320);
    for (const char* side : {"width", "height"}) {
        EXPECT_TRUE(object.SetProperty(support::IdentifierOf(side), &size));
        EXPECT_EQ(std::exchange(object.called, {}), once) << side;
    }
    const NPVariant on = OipfJavaScript::BoolVariant(true);
    NPVariant result{};
    EXPECT_TRUE(object.Invoke(support::IdentifierOf("setFullScreen"), &on, 1, &result));
    EXPECT_EQ(object.called, once);
}

}  // namespace
}  // namespace videobroadcast
