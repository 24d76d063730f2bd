// The television with the demonstration, as the TV browser starts it, and the page's side of it.
#include "tests/television/TelevisionTest.h"

#include <array>
#include <cstdlib>

namespace television::test {
namespace {

struct Colour {
    int red = 0, green = 0, blue = 0;
};

Colour MeanColour(const Picture& picture) {
    long red = 0, green = 0, blue = 0;
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x) {
            const auto* pixel = picture.pixels + static_cast<std::ptrdiff_t>(y) * picture.stride + x * 4;
            blue += pixel[0];
            green += pixel[1];
            red += pixel[2];
        }
    const long pixels = static_cast<long>(picture.width) * picture.height;
    return {static_cast<int>(red / pixels), static_cast<int>(green / pixels), static_cast<int>(blue / pixels)};
}

bool Near(const Colour& a, const Colour& b) {
    constexpr int kTolerance = 35;  // letters and the bar are white; matrices of colours differ a little
    return std::abs(a.red - b.red) < kTolerance && std::abs(a.green - b.green) < kTolerance &&
           std::abs(a.blue - b.blue) < kTolerance;
}

}  // namespace

Shown What(const Picture* picture) {
    if (!picture) return Shown::Black;
    const Colour mean = MeanColour(*picture);
    constexpr std::array<std::pair<Colour, Shown>, 4> known{{{{0x1c, 0x3f, 0x95}, Shown::AtlasOne},
                                                             {{0x1b, 0x7a, 0x3d}, Shown::AtlasTwo},
                                                             {{0xa3, 0x26, 0x2a}, Shown::Boreal},
                                                             {{0x7a, 0x2f, 0x86}, Shown::AtlasKey}}};
    for (const auto& [colour, shown] : known)
        if (Near(mean, colour)) return shown;
    return Shown::Unknown;
}

// A test on a slow machine may take more than the first minute. At this time the first of each service's programmes
// begins.
TelevisionTest::TelevisionTest() {
    m_configuration.timetable = false;
    m_configuration.demonstrationTime = 1'700'049'600;
}

void TelevisionTest::SetUp() {
    if (m_startDemonstration) {
        ASSERT_EQ(StartWith(""), std::nullopt);
    }
}

void TelevisionTest::TearDown() { m_television.Stop(); }

std::optional<std::string> TelevisionTest::StartWith(const std::string& stream) {
    m_configuration.streams.clear();
    if (!stream.empty()) m_configuration.streams.push_back(stream);
    return Start();
}

std::optional<std::string> TelevisionTest::Start() {
    m_configuration.demonstration = DEMONSTRATION_STREAM;
    m_configuration.sound = false;
    Observer observer;
    observer.pictureChanged = [this] { m_watch.Notify(); };
    observer.channelChanged = [this] { m_watch.Notify(); };
    observer.servicesChanged = [this] {
        ++m_servicesChanged;
        m_watch.Notify();
    };
    return m_television.Start(m_configuration, observer);
}

bool TelevisionTest::WaitForPicture(Shown shown) {
    return m_watch.WaitFor([&] { return What(m_television.CurrentPicture().get()) == shown; });
}

bool TelevisionTest::WaitForTunes(std::uint64_t count) {
    return m_watch.WaitFor([&] { return m_television.LastTune().count >= count; });
}

unsigned int TelevisionTest::IdOf(const std::string& name) {
    for (const Service& service : m_television.Services())
        if (service.name == name) return service.id;
    ADD_FAILURE() << "no service " << name;
    return 0;
}

void TelevisionTest::OpenPage() {
    m_television.PageOpened(true, {"http://page.example"});
    m_player = m_browser.GetBroadcastPlayer();
    ASSERT_NE(m_player, nullptr);
    m_player->SetListener(&m_listener);
}

}  // namespace television::test
