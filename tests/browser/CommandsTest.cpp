// The remote's line protocol.
#include "browser/remote/Commands.h"

#include <gtest/gtest.h>

#include "tests/browser/Printing.h"

namespace browser {

namespace {

// Notes what is asked of it; fails with `m_failure` where an operation can.
class RecordingTarget : public RemoteTarget {
public:
    Failure PressKey(const QString& name) override { return Note("key " + name); }
    Failure SelectChannel(const QString& channel) override { return Note("channel " + channel); }
    void OpenUrl(const QString& url) override { Note("open " + url); }
    Failure WriteScreenshot(const QString& file) override { return Note("screenshot " + file); }
    QString EvaluateScript(const QString& script) override {
        Note("evaluate " + script);
        return "42";
    }
    QJsonObject Status() override { return {{"picture", true}}; }
    QJsonArray Services() override { return {QJsonObject{{"name", "Boreal"}}}; }
    std::optional<QJsonArray> Programmes(const QString& service) override {
        return service == "nowhere" ? std::nullopt : std::optional(QJsonArray{"now on " + service, "next"});
    }
    std::vector<television::StimulusUse> Stimuli() override { return {{"aerial", "out|in", "pull or plug it"}}; }
    Failure Stimulate(const QString& line) override { return Note(line); }
    void Quit(int status) override { Note("quit " + QString::number(status)); }

    Failure m_failure;
    QString m_last;

private:
    Failure Note(const QString& what) {
        m_last = what;
        return m_failure;
    }
};

class Commands : public testing::Test {
protected:
    QString Run(const char* line) { return RunCommand(m_target, line); }

    RecordingTarget m_target;
};

TEST_F(Commands, ReachTheirOperationWithTheRestOfTheLine) {
    for (const char* line : {"key RED", "channel 12", "channel next", "open http://a/b c", "screenshot a.png",
                             "aerial out"}) {
        EXPECT_EQ(Run(line), "ok") << line;
        EXPECT_EQ(m_target.m_last, line);
    }
}

TEST_F(Commands, BlanksAroundAreNothing) {
    EXPECT_EQ(Run("  key   RED \r"), "ok");
    EXPECT_EQ(m_target.m_last, "key RED");
}

TEST_F(Commands, AScriptsValueIsTheAnswer) {
    EXPECT_EQ(Run("evaluate 6 * 7"), "ok 42");
    EXPECT_EQ(m_target.m_last, "evaluate 6 * 7");
}

TEST_F(Commands, AFailureIsAnErrorWithItsSentence) {
    m_target.m_failure = "There is no such key.";
    EXPECT_EQ(Run("key RED"), "error There is no such key.");
}

TEST_F(Commands, QueriesAnswerWithJson) {
    EXPECT_EQ(Run("status"), "ok {\"picture\":true}");
    EXPECT_EQ(Run("services"), "ok [{\"name\":\"Boreal\"}]");
    EXPECT_EQ(Run("programmes"), "ok [\"now on \",\"next\"]");
    EXPECT_EQ(Run("programmes Atlas One"), "ok [\"now on Atlas One\",\"next\"]");
    EXPECT_EQ(Run("programmes nowhere"), "error There is no channel \"nowhere\".");
}

TEST_F(Commands, BehindJsonEveryAnswerIsAnObject) {
    EXPECT_EQ(Run("json key RED"), "{\"ok\":true}");
    EXPECT_EQ(Run("json evaluate 6 * 7"), "{\"ok\":true,\"value\":42}");
    EXPECT_EQ(Run("json status"), "{\"ok\":true,\"value\":{\"picture\":true}}");
    EXPECT_TRUE(Run("json help").startsWith("{\"ok\":true,\"value\":\"key KEY; "));
    EXPECT_EQ(Run("json quit now"), "{\"error\":\"Write it as: quit\",\"ok\":false}");
    EXPECT_EQ(Run("json json quit"), "{\"error\":\"One \\\"json\\\" is enough.\",\"ok\":false}");
    EXPECT_EQ(Run("json"), "error Write it as: json LINE");
    EXPECT_EQ(m_target.m_last, "evaluate 6 * 7");
}

TEST_F(Commands, EachHasASentence) {
    for (const CommandText& command : CommandTexts(m_target.Stimuli())) {
        EXPECT_FALSE(command.sentence.isEmpty()) << command.name;
    }
}

TEST_F(Commands, QuitEndsWithStatusNought) {
    EXPECT_EQ(Run("quit"), "ok");
    EXPECT_EQ(m_target.m_last, "quit 0");
}

TEST_F(Commands, WrongLinesAreErrorsAndDoNothing) {
    for (const char* line : {"", "bogus", "key", "quit now", "KEY RED"}) {
        EXPECT_TRUE(Run(line).startsWith("error ")) << line;
    }
    EXPECT_EQ(m_target.m_last, QString());
}

TEST_F(Commands, HelpIsOneLineWithEveryCommand) {
    const QString help = Run("help");
    EXPECT_TRUE(help.startsWith("ok "));
    EXPECT_FALSE(help.contains('\n'));
    for (const char* name : {"key", "channel", "open", "screenshot", "evaluate", "quit", "help", "aerial out|in"}) {
        EXPECT_TRUE(help.contains(name)) << name;
    }
}

}  // namespace

}  // namespace browser
