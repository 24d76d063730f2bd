// The fixture of the plug-in's unit tests.
#include "tests/support/PluginTest.h"

#include <algorithm>

namespace support {

PluginTest::PluginTest() : platform(RecordingPlatform::Instance()) {
    platform.Reset();
    CallList::Instance().Reset();
    Log::Instance().Clear();
    Log::Instance().SetLevel(Log::kAll);
}

void PluginTest::TearDown() {
    CallList::Instance().Reset();
    platform.ExpectBalanced();
    browser.ExpectBalanced();
}

void PluginTest::ExpectInOrder(const std::vector<std::string>& calls) {
    const auto all = Calls();
    auto from = all.begin();
    for (const std::string& call : calls) {
        const auto found = std::find(from, all.end(), call);
        if (found == all.end()) {
            ADD_FAILURE() << "\"" << call << "\" is not in the list of calls, or not in its place:\n"
                          << ::testing::PrintToString(all);
            return;
        }
        from = found + 1;
    }
}

namespace {

void ExpectCount(std::size_t count, std::size_t times, const std::string& line) {
    EXPECT_EQ(count, times) << "The line " << line << " was not logged as often. Logged were:\n"
                            << (count == times ? "" : ::testing::PrintToString(Log::Instance().Lines()));
}

}  // namespace

void PluginTest::ExpectLogged(unsigned long level, const std::string& text, std::size_t times) {
    ExpectCount(Log::Instance().Count(level, text), times, "(" + std::to_string(level) + ") \"" + text + "\"");
}

void PluginTest::ExpectLogged(const std::string& text, std::size_t times) {
    ExpectCount(Log::Instance().Count(text), times, "\"" + text + "\"");
}

void PluginTest::ExpectNotLogged(const std::string& text) {
    EXPECT_EQ(Log::Instance().Count(text), 0u) << "\"" << text << "\" was logged.";
}

}  // namespace support
