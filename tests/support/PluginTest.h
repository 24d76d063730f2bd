// The fixture of the plug-in's unit tests: a fake browser and the recording platform, new for each test; at its end
// everything must be given back.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/CallList.h"
#include "tests/support/FakeBrowser.h"
#include "tests/support/Log.h"
#include "tests/support/RecordingPlatform.h"

namespace support {

class PluginTest : public ::testing::Test {
protected:
    PluginTest();
    void TearDown() override;

    // The list of calls, all or those that begin with one of the prefixes ("script.", "player.SetChannel").
    static std::vector<std::string> Calls() { return CallList::Instance().All(); }
    static std::vector<std::string> Calls(const std::vector<std::string>& prefixes) {
        return CallList::Instance().Of(prefixes);
    }
    static void ClearCalls() { CallList::Instance().Clear(); }
    // Runs `action` whenever a call that begins with `prefix` is made.
    static void When(const std::string& prefix, std::function<void()> action) {
        CallList::Instance().When(prefix, std::move(action));
    }
    // The texts must stand in the list in this order; others may stand between them.
    static void ExpectInOrder(const std::vector<std::string>& calls);

    // Exactly this line was logged, once or `times`, at this level.
    static void ExpectLogged(unsigned long level, const std::string& text, std::size_t times = 1);
    static void ExpectLogged(const std::string& text, std::size_t times = 1);  // at any level
    static void ExpectNotLogged(const std::string& text);
    static void ClearLog() { Log::Instance().Clear(); }

    RecordingPlatform& platform;
    FakeBrowser browser;
};

}  // namespace support
