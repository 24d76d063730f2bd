// Scripts of lines for the remote.
#include "browser/remote/Script.h"

#include <gtest/gtest.h>

#include "tests/browser/Printing.h"

namespace browser {

namespace {

using Steps = std::vector<ScriptStep>;

std::optional<QString> Check(const QString& line) {
    return line.startsWith("bogus") ? std::optional<QString>("There is no command \"bogus\".") : std::nullopt;
}

Steps Read(const QString& text) {
    const auto read = ReadScript(text, Check);
    const auto* fault = std::get_if<ScriptFault>(&read);
    EXPECT_EQ(fault, nullptr) << (fault ? fault->sentence.toStdString() : "");
    return fault ? Steps() : std::get<Steps>(read);
}

ScriptFault FaultOf(const QString& text) {
    const auto read = ReadScript(text, Check);
    const auto* fault = std::get_if<ScriptFault>(&read);
    EXPECT_NE(fault, nullptr) << text.toStdString();
    return fault ? *fault : ScriptFault();
}

TEST(Script, HasALineForEachTime) {
    EXPECT_EQ(Read("0 channel next\n1.25 aerial out\n"), (Steps{{1, 0, "channel next"}, {2, 1250, "aerial out"}}));
}

TEST(Script, CountsATimeAfterAPlusFromTheLineAbove) {
    EXPECT_EQ(Read("+1 a\n+0.5 b\n7 c\n+0 d"), (Steps{{1, 1000, "a"}, {2, 1500, "b"}, {3, 7000, "c"}, {4, 7000, "d"}}));
}

TEST(Script, PassesOverCommentsAndEmptyLines) {
    EXPECT_EQ(Read("# 1 nothing\n\n   # nor here\n\t\n 2\t key red # green \r\n"), (Steps{{5, 2000, "key red # green"}}));
}

TEST(Script, KeepsTheBlanksInsideALine) {
    EXPECT_EQ(Read("1 evaluate \"a  b\""), (Steps{{1, 1000, "evaluate \"a  b\""}}));
}

TEST(Script, NamesTheLineOfItsFirstFault) {
    EXPECT_EQ(FaultOf("1 a\n2 bogus now\n3 bogus"), (ScriptFault{2, "There is no command \"bogus\"."}));
    for (const char* time : {"soon", "-1", "1e3", "1,5", "+", "++1", "1.2.3", "99999999"}) {
        const ScriptFault fault = FaultOf(QString("# times\n%1 a").arg(time));
        EXPECT_EQ(fault.number, 2);
        EXPECT_TRUE(fault.sentence.contains(QString("\"%1\" is no time").arg(time))) << fault.sentence.toStdString();
    }
    EXPECT_TRUE(FaultOf("2 a\n1 b").sentence.contains("before that of the line above"));
    EXPECT_TRUE(FaultOf("2 a\n3  ").sentence.contains("nothing to do at 3"));
}

TEST(Script, WithoutALineIsAtFault) {
    EXPECT_EQ(FaultOf("# nothing\n").number, 1);
    EXPECT_EQ(FaultOf("").number, 1);
}

}  // namespace

}  // namespace browser
