// Browsers and platforms that fail: each use of each of their functions in a full tour of the object, one after the
// other. What script, player and log were told in the struck step is what such a failure leads to, nothing crashes on
// the way to the end, and everything is given back.
#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <set>

#include "tests/unit/endurance/FaultTable.h"
#include "tests/unit/endurance/Tour.h"

namespace endurance {
namespace {

// What the object uses of the browser and of the platform and can fail.
const std::vector<std::string> kFallible = {"createobject",
                                            "evaluate",
                                            "forceredraw",
                                            "getproperty",
                                            "getstringidentifier",
                                            "getvalue",
                                            "invoke",
                                            "invokeDefault",
                                            "memalloc",
                                            "pluginthreadasynccall",
                                            "setexception",
                                            "setvalue",
                                            "browser.ConvertGraphicsToVideo",
                                            "browser.CurrentChannel",
                                            "browser.DisableMediaPlaybackMode",
                                            "browser.GetBroadcastPlayer",
                                            "browser.GetPanelResolution",
                                            "browser.IsBroadcastRelated",
                                            "browser.IsMediaPlaybackMode",
                                            "dsmcc.SubscribeStreamEvent",
                                            "dsmcc.UnsubscribeStreamEvent",
                                            "keys.GetKey",
                                            "player.GetAudioComponents",
                                            "player.GetChannel",
                                            "player.GetChannelFromDSD",
                                            "player.GetChannelFromTriplet",
                                            "player.GetSubtitleComponents",
                                            "player.GetVideoComponents",
                                            "player.GetVolume",
                                            "player.NextChannel",
                                            "player.PrevChannel",
                                            "player.SetChannel",
                                            "player.SetVolume",
                                            "pvr.IsPvrOperating",
                                            "tasks.GetWrapperInstance",
                                            "tasks.GetWrapperManager"};

// What it uses and has no failure to answer with: counting it is all that can be done.
const std::vector<std::string> kInfallible = {"releaseobject",
                                              "releasevariantvalue",
                                              "retainobject",
                                              "browser.CorrectVideoAspectRatio",
                                              "browser.EnableMediaPlaybackMode",
                                              "browser.ReleaseBroadcastPlayer",
                                              "browser.SetChannel",
                                              "cache.ReleaseChannel",
                                              "dsmcc.RegisterStreamEventCallback",
                                              "dsmcc.UnregisterStreamEventCallback",
                                              "player.BindToCurrentChannel",
                                              "player.SelectAudioComponent",
                                              "player.SelectSubtitleComponent",
                                              "player.SelectVideoComponent",
                                              "player.SetFullScreenVideo",
                                              "player.SetListener",
                                              "player.SetVideoWindow",
                                              "player.Stop",
                                              "player.StopChannel",
                                              "player.UnselectAudioComponent",
                                              "player.UnselectSubtitleComponent",
                                              "player.UnselectVideoComponent",
                                              "screen.SetDynamicContrast",
                                              "tasks.GetActiveApplication"};

// What it does not use, and why.
const std::vector<std::pair<std::string, std::string>> kUnused = {
    {"memfree", "strings go to the browser, which frees them"},
    {"getstringidentifiers", "names are asked for one at a time"},
    {"getintidentifier", "no member is a number"},
    {"identifierisstring", "identifiers are only compared"},
    {"utf8fromidentifier", "identifiers are only compared"},
    {"intfromidentifier", "identifiers are only compared"},
    {"setproperty", "page objects are read and called, never written"},
    {"removeproperty", "page objects are read and called, never written"},
    {"hasproperty", "a property that is not there reads as undefined"},
    {"hasmethod", "a call says whether there was a method"},
    {"enumerate", "page objects are not looked through"},
    {"browser.IsURLInAppBoundary", "the framework's question whether a page is trusted; no member asks it"}};

// The uses of a function are shared out among so many tests.
struct Share {
    std::string function;
    unsigned part;
    unsigned parts;
};

std::vector<Share> Shares() {
    std::vector<Share> shares;
    for (const std::string& function : kFallible) {
        const unsigned parts = function == "getstringidentifier" ? 8 : 1;
        for (unsigned part = 1; part <= parts; ++part) shares.push_back({function, part, parts});
    }
    return shares;
}

std::string NameOf(const ::testing::TestParamInfo<Share>& info) {
    std::string name = info.param.function;
    std::ranges::replace(name, '.', '_');
    return info.param.parts == 1 ? name : name + "_" + std::to_string(info.param.part);
}

void PrintTo(const Share& share, std::ostream* out) { *out << share.function << " " << share.part; }

class Faults : public ::testing::TestWithParam<Share> {
protected:
    // The steps of a tour without a fault, and how often it used the function. There is one browser at a time.
    static std::pair<std::vector<Step>, unsigned> SoundTour(const std::string& function) {
        const Tour tour;
        return {tour.Steps(), tour.Uses(function)};
    }
};

INSTANTIATE_TEST_SUITE_P(Of, Faults, ::testing::ValuesIn(Shares()), NameOf);

TEST_P(Faults, LeadToWhatIsSpecifiedAndLoseNothing) {
    const auto& [function, part, parts] = GetParam();
    const auto [steps, uses] = SoundTour(function);
    ASSERT_GE(uses, parts);
    RecordProperty("faults", static_cast<int>((uses - part) / parts + 1));
    for (unsigned use = part; use <= uses; use += parts) {
        SCOPED_TRACE("use " + std::to_string(use) + " of " + function + " fails");
        const Tour tour({function, use});
        ASSERT_LT(tour.Struck(), steps.size());
        const Step& step = tour.Steps()[tour.Struck()];
        EXPECT_EQ(WrongIn({function, tour.UseInStep()}, steps[tour.Struck()], step), "")
            << "in the step \"" << step.name << "\", use " << tour.UseInStep();
    }
}

TEST(FaultsOfTheTour, AreThoseOfEveryFunctionAndOperation) {
    const Tour tour;
    std::set<std::string> known(kFallible.begin(), kFallible.end());
    known.insert(kInfallible.begin(), kInfallible.end());
    for (const std::string& function : known) EXPECT_GT(tour.Uses(function), 0u) << function;
    for (const auto& [function, why] : kUnused) EXPECT_EQ(tour.Uses(function), 0u) << function << ": " << why;
    for (const std::string& operation : tour.Operations()) EXPECT_TRUE(known.contains(operation)) << operation;
}

// What hosts and televisions may leave out altogether. The tour ends with all books balanced.
TEST(ToursWithout, TheStreamEventService) {
    const Tour tour({}, [](auto&, auto& answers) { answers.hasDsmcc = false; });
    EXPECT_EQ(tour.Uses("dsmcc.RegisterStreamEventCallback"), 0u);
}

TEST(ToursWithout, TheScreenServiceAndTheRecorder) {
    const Tour tour({}, [](auto&, auto& answers) { answers.hasAppScreen = answers.hasTaskManager = false; });
    EXPECT_EQ(tour.Uses("screen.SetDynamicContrast") + tour.Uses("pvr.IsPvrOperating"), 0u);
}

TEST(ToursWithout, OptionalFunctionsOfTheBrowser) {
    const Tour tour({}, [](auto& browser, auto&) { browser.LeaveOutOptionalFunctions(); });
    EXPECT_EQ(tour.Uses("forceredraw"), 0u);
}

TEST(ToursWithout, AWindow) {
    const Tour tour({}, [](auto& browser, auto&) { browser.windowIsNull = true; });
    EXPECT_EQ(tour.Uses("evaluate"), 0u);
}

TEST(ToursWithout, ThePermissionToUseTheBroadcast) {
    const Tour tour({}, [](auto&, auto& answers) { answers.broadcastRelated = false; });
    EXPECT_EQ(tour.Uses("player.BindToCurrentChannel") + tour.Uses("player.NextChannel"), 0u);
}

}  // namespace
}  // namespace endurance
