// Every notification in every play state: where the state goes, and what the page is told.
#include <tuple>

#include "tests/unit/videobroadcast/ObjectTest.h"

namespace videobroadcast {
namespace {

constexpr int kRefused = -1;  // the state stays, and no change of it is told

struct Row {
    const char* name;
    std::function<void(Object&)> notify;
    int to[4];                     // from UNREALIZED, CONNECTING, PRESENTING, STOPPED
    const char* error;             // of the play state's change
    const char* before = nullptr;  // told before the play state's change, whether or not there is one
    const char* after = nullptr;   // and after it
    friend void PrintTo(const Row& row, std::ostream* out) { *out << row.name; }
};

constexpr const char* kSucceeded = "script.onChannelChangeSucceeded(Channel(7))";

const std::vector<Row>& Rows() {
    constexpr int x = kRefused;
    static const std::vector<Row> rows = {
        {"ChannelChanged", [](Object& o) { o.ChannelChanged(); }, {1, 1, 1, 1}, "undefined"},
        {"TuneSuccess", [](Object& o) { o.TuneSuccess(7); }, {x, 2, x, x}, "undefined", nullptr, kSucceeded},
        {"TuneSuccessOfNoChannel", [](Object& o) { o.TuneSuccess(0); }, {x, 2, x, x}, "undefined"},
        {"TuneFail", [](Object& o) { o.TuneFail(7); }, {1, 1, 1, 1}, "1", nullptr,
         "script.onChannelChangeError(Channel(7), 1)"},
        {"NoSignal", [](Object& o) { o.NoSignal(); }, {1, 1, 1, 1}, "1"},
        {"ServiceNotAvailable", [](Object& o) { o.ServiceNotAvailable(7); }, {x, 0, 0, 0}, "undefined", nullptr,
         "script.onChannelChangeError(Channel(7), 12)"},
        {"Blocked", [](Object& o) { o.ParentalRatingBlocked(7, true); }, {1, 1, 1, 1}, "3"},
        {"BlockedByTune", [](Object& o) { o.ParentalRatingBlocked(7, false); }, {1, 1, 1, 1}, "3", nullptr, kSucceeded},
        {"Unblocked", [](Object& o) { o.ParentalRatingUnblocked(7); }, {x, 2, x, x}, "undefined"},
        {"Scrambled", [](Object& o) { o.Scrambled(1); }, {1, 1, 1, 1}, "4",
         "script.onDRMRightsError(0, undefined, \"urn:dvb:casystemid:1\", undefined)"},
        {"ScrambledTune", [](Object& o) { o.ScrambledTune(7); }, {1, 1, 1, 1}, "4", nullptr, kSucceeded},
        {"Unscrambled", [](Object& o) { o.Unscrambled(1); }, {x, 2, x, x}, "undefined",
         "script.onDRMRightsError(2, undefined, \"urn:dvb:casystemid:1\", undefined)"},
        {"Suspend", [](Object& o) { o.Suspend(); }, {x, 1, 1, 1}, "11"},  // UNREALIZED: there is no player
        {"Resume", [](Object& o) { o.Resume(); }, {x, 2, x, x}, "undefined"},
        {"UpdateLayout", [](Object& o) { o.UpdateLayout(); }, {x, x, x, x}, ""},
        {"ProgrammeChanged", [](Object& o) { o.ProgrammeChanged(); }, {x, x, x, x}, "", "script.onProgrammesChanged()"},
        {"ParentalRatingChanged", [](Object& o) { o.ParentalRatingChanged(9); }, {x, x, x, x}, "",
         "script.onParentalRatingChange(undefined, ParentalRatingCollection('dvb-si', '12', 12), undefined)"},
        {"RightsMessage", [](Object& o) { o.OnSASMessageReceived(new SASMessage{4, 1, 0, {{7, {1}}}}); },
         {x, x, x, x}, "", "script.onDRMRightsError(2, undefined, \"urn:dvb:casystemid:1\", undefined)"},
    };
    return rows;
}

class EachNotification : public ObjectTest, public ::testing::WithParamInterface<std::tuple<Row, int>> {
protected:
    using Error = Object::EChannelChangeError;

    void SetUp() override {
        for (const char* handler : {"onPlayStateChange", "onChannelChangeSucceeded", "onChannelChangeError",
                                    "onProgrammesChanged", "onParentalRatingChange", "onDRMRightsError"}) {
            SetHandler(object.Get(), handler);
        }
    }
    void TearDown() override {
        object.Destroy();
        ObjectTest::TearDown();
    }
    // The object holds a player in every state but the first; it connects with an error that no notification has.
    void Bring(int state) {
        if (state != Object::E_STATE_UNREALIZED) {
            object->m_GetBroadcastPlayer();
            object->m_SetPlayState(Object::E_STATE_CONNECTING, Error(100));
        }
        if (state > Object::E_STATE_CONNECTING) object->m_SetPlayState(Object::EPlayState(state), Error(1000));
        ASSERT_EQ(object.PlayState(), state);
        Forget();
    }

    Probed object{browser};
};

std::string NameOf(const ::testing::TestParamInfo<std::tuple<Row, int>>& info) {
    static const char* const kStates[] = {"Unrealized", "Connecting", "Presenting", "Stopped"};
    return std::string(std::get<0>(info.param).name) + "_" + kStates[std::get<1>(info.param)];
}

INSTANTIATE_TEST_SUITE_P(States, EachNotification,
                         ::testing::Combine(::testing::ValuesIn(Rows()), ::testing::Range(0, 4)), NameOf);

TEST_P(EachNotification, MovesTheStateAsItsRowSaysAndTellsThePageInOrder) {
    const auto& [row, state] = GetParam();
    Bring(state);
    row.notify(*object);
    Pump();
    const int to = row.to[state];
    Lines told;
    if (row.before != nullptr) told.emplace_back(row.before);
    if (to != kRefused) told.push_back("script.onPlayStateChange(" + std::to_string(to) + ", " + row.error + ")");
    if (row.after != nullptr) told.emplace_back(row.after);
    EXPECT_EQ(Told(), told);
    EXPECT_EQ(object.PlayState(), to != kRefused ? to : state);
}

}  // namespace
}  // namespace videobroadcast
