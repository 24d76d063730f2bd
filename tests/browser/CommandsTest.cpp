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
