// The television with the demonstration, as the TV browser starts it, and the page's side of it.
#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <optional>
#include <string>

#include "platform/CDAEBrowserAPI.h"
#include "platform/IBroadcastPlayer.h"
#include "television/Television.h"
#include "tests/television/RecordingListener.h"

namespace television::test {

// The pictures of the demonstration's services, told apart by their colours.
enum class Shown { Black, AtlasOne, AtlasTwo, Boreal, AtlasKey, Unknown };

Shown What(const Picture* picture);

class TelevisionTest : public testing::Test {
protected:
    TelevisionTest();
    void SetUp() override;
    void TearDown() override;

    // Starts with a stream instead of the demonstration. What Start returned.
    std::optional<std::string> StartWith(const std::string& stream);
    // Starts with m_configuration.
    std::optional<std::string> Start();
    bool WaitForPicture(Shown shown);
    bool WaitForTunes(std::uint64_t count);
    unsigned int IdOf(const std::string& name);
    // Takes the player for a page, with the recording listener.
    void OpenPage();

    Television& m_television = Television::Instance();
    CDAEBrowserAPI& m_browser = *CDAEBrowserAPI::Instance();
    Watch m_watch;
    RecordingListener m_listener{m_watch};
    IBroadcastPlayer* m_player = nullptr;
    bool m_startDemonstration = true;
    Configuration m_configuration;
    std::atomic<int> m_servicesChanged = 0;
};

}  // namespace television::test
