// The command line.
#include "browser/Options.h"

#include <gtest/gtest.h>

#include "tests/browser/Printing.h"

namespace browser {

namespace {

Options Read(const QStringList& arguments) {
    const auto read = ReadOptions(arguments);
    EXPECT_TRUE(std::holds_alternative<Options>(read)) << arguments.join(' ');
    return std::holds_alternative<Options>(read) ? std::get<Options>(read) : Options{};
}

QString ErrorOf(const QStringList& arguments) {
    const auto read = ReadOptions(arguments);
    const auto* error = std::get_if<UsageError>(&read);
    return error != nullptr ? error->sentence : QString();
}

TEST(Options, NoArgumentsMeanTheDemonstrationWithSoundAndControlOfTheBroadcast) {
    const Options options = Read({});
    EXPECT_EQ(options.url, QString());
    EXPECT_TRUE(options.streams.isEmpty());
    EXPECT_TRUE(options.sound);
    EXPECT_TRUE(options.broadcastRelated);
    EXPECT_FALSE(options.seconds.has_value());
}

TEST(Options, AValueFollowsItsOptionOrAnEqualsSign) {
    EXPECT_EQ(Read({"--stream", "a.ts", "--stream", "b.ts"}).streams, QStringList({"a.ts", "b.ts"}));
    EXPECT_EQ(Read({"--stream=a=b.ts"}).streams, QStringList("a=b.ts"));
}

TEST(Options, SwitchesTakeNoValueAndLeaveTheNextArgumentAlone) {
    const Options options = Read({"--no-sound", "page.html", "--independent"});
    EXPECT_FALSE(options.sound);
    EXPECT_FALSE(options.broadcastRelated);
    EXPECT_EQ(options.url, "page.html");
}

TEST(Options, LogLevelsHaveNamesAndThePluginsNumbers) {
    EXPECT_EQ(Read({"--log", "none"}).logLevel, -1);
    EXPECT_EQ(Read({"--log", "warnings"}).logLevel, 2);
    EXPECT_EQ(Read({"--log", "4"}).logLevel, 4);
    EXPECT_NE(ErrorOf({"--log", "1"}), QString());
    EXPECT_NE(ErrorOf({"--log", "loud"}), QString());
}

TEST(Options, ThePinIsFourDigits) {
    EXPECT_EQ(Read({}).pin, "0000");
    EXPECT_EQ(Read({"--pin", "4711"}).pin, "4711");
}

TEST(Options, TheDemonstrationHasNoTimetableWhereTheSameIsToBeFoundEachTime) {
    EXPECT_TRUE(Read({}).timetable);
    EXPECT_TRUE(Read({"--seconds", "90"}).timetable);
    EXPECT_FALSE(Read({"--no-timetable"}).timetable);
    EXPECT_FALSE(Read({"--test"}).timetable);
    EXPECT_FALSE(Read({"--tour"}).timetable);
}

TEST(Options, TheDemonstrationsTimeIsTheMachinesUnlessOneIsGivenOrTheSameIsToBeFoundEachTime) {
    EXPECT_EQ(Read({}).demonstrationTime, std::nullopt);
    EXPECT_EQ(Read({"--demonstration-time", "2026-02-28T23:59:59Z"}).demonstrationTime, 1'772'323'199);
    EXPECT_EQ(Read({"--test"}).demonstrationTime, 1'893'528'000);
    EXPECT_EQ(Read({"--tour"}).demonstrationTime, 1'893'528'000);
    EXPECT_EQ(Read({"--test", "--demonstration-time", "1970-01-01T00:00:00Z"}).demonstrationTime, 0);
    EXPECT_EQ(Read({"--demonstration-time", "2038-04-21T23:59:59Z"}).demonstrationTime, 2'155'507'199);
    for (const char* time : {"20:00:00", "2030-01-01T20:00:00", "2030-01-01T20:00:00+01", "2030-01-01T24:00:01Z", "2026-02-29T20:00:00Z", "1969-12-31T23:59:59Z",
                             "2038-04-22T00:00:00Z"}) {
        EXPECT_TRUE(ErrorOf({"--demonstration-time", time}).contains("--demonstration-time")) << time;
    }
}

// In this time zone there is no such moment of the clock: the hour is left out.
TEST(Options, TheDemonstrationsTimeIsInUtcWhereverTheMachineIs) {
    const QByteArray zone = qgetenv("TZ");
    qputenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3");
    tzset();
    EXPECT_EQ(Read({"--demonstration-time", "2026-03-29T02:30:00Z"}).demonstrationTime, 1'774'751'400);
    zone.isNull() ? qunsetenv("TZ") : qputenv("TZ", zone);
    tzset();
}

TEST(Options, ScriptsAddUp) {
    EXPECT_EQ(Read({"--evaluate", "1", "--evaluate", "2"}).evaluate, (QStringList{"1", "2"}));
}

TEST(Options, WrongUseIsToldByName) {
    EXPECT_TRUE(ErrorOf({"--bogus"}).contains("--bogus"));
    EXPECT_TRUE(ErrorOf({"--stream"}).contains("--stream"));
    EXPECT_TRUE(ErrorOf({"--seconds", "soon"}).contains("--seconds"));
    EXPECT_TRUE(ErrorOf({"--seconds", "0"}).contains("--seconds"));
    for (const char* pin : {"123", "12345", "12a4"}) {
        EXPECT_TRUE(ErrorOf({"--pin", pin}).contains("--pin")) << pin;
    }
    EXPECT_TRUE(ErrorOf({"one.html", "two.html"}).contains("two.html"));
    EXPECT_NE(ErrorOf({"--tour", "--test"}), QString());
}

TEST(Options, HelpWinsOverWhatFollowsAndNamesEveryOption) {
    EXPECT_TRUE(std::holds_alternative<HelpWanted>(ReadOptions({"--help", "--bogus"})));
    for (const char* name : {"--stream", "--tour", "--test", "--screenshot", "--events", "--remote", "--plugin"}) {
        EXPECT_TRUE(HelpText().contains(name)) << name;
    }
}

}  // namespace

}  // namespace browser
