// The keys for what happens to the television.
#include "browser/keys/StimulusKeys.h"

#include <gtest/gtest.h>

#include "browser/keys/HelpText.h"
#include "browser/keys/KeyTable.h"
#include "browser/remote/Commands.h"
#include "tests/browser/Printing.h"

namespace browser {

namespace {

QStringList PressTwice(StimulusCycle& cycle, const StimulusKey& key, const QString& refused) {
    QStringList done;
    for (int i = 0; i < 2; ++i) {
        cycle.Press(key, [&](const QString& line) {
            const bool refuse = line == refused;
            done += (refuse ? "not " : "") + line;
            return refuse ? std::optional<QString>("It is so already.") : std::nullopt;
        });
    }
    return done;
}

TEST(StimulusKeys, TakeTurns) {
    StimulusCycle cycle;
    EXPECT_EQ(PressTwice(cycle, StimulusKeys()[0], ""), (QStringList{"aerial out", "aerial in"}));
    EXPECT_EQ(PressTwice(cycle, StimulusKeys()[3], ""), (QStringList{"aspect 4:3", "aspect 16:9"}));
    EXPECT_EQ(PressTwice(cycle, StimulusKeys()[3], ""), (QStringList{"aspect auto", "aspect 4:3"}));
}

TEST(StimulusKeys, PassOverWhatTheRemoteDidAlready) {
    StimulusCycle cycle;
    EXPECT_EQ(PressTwice(cycle, StimulusKeys()[1], "mediaplayer start"),
              (QStringList{"not mediaplayer start", "mediaplayer stop", "not mediaplayer start", "mediaplayer stop"}));
}

TEST(StimulusKeys, TellWhyNothingCouldBeDone) {
    StimulusCycle cycle;
    EXPECT_EQ(cycle.Press(StimulusKeys()[0], [](const QString&) { return QString("The television is off."); }),
              "The television is off.");
}

TEST(StimulusKeys, AreListedAndSendLinesThatTheTelevisionKnows) {
    const auto commands = CommandTexts(television::Television::Stimuli());
    for (const StimulusKey& key : StimulusKeys()) {
        EXPECT_TRUE(KeyboardHelp().contains(QString(key.keyName) + '\t' + key.help)) << key.keyName;
        EXPECT_EQ(FindKey(key.key), nullptr) << key.keyName << " is a key of the remote control";
        for (const char* line : key.lines) {
            EXPECT_EQ(FaultOf(line, commands), std::nullopt) << line;
        }
    }
}

}  // namespace

}  // namespace browser
