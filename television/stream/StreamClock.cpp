// Steps from one clock reference to the next.
#include "television/stream/StreamClock.h"

namespace television {
namespace {

// References come at least each 100 ms. A step beyond a second is a jump.
constexpr std::int64_t kLargestStep = kClockRate;
// When another programme's references came this often without one of ours, ours has ended.
constexpr unsigned kPatience = 200;

}  // namespace

bool StreamClock::Observe(const std::uint8_t* packet) {
    const auto clock = ClockOf(packet);
    if (!clock) return false;
    if (m_pid == kNullPid || ++m_othersSince > kPatience) {
        m_pid = PidOf(packet);
        m_last.reset();
    }
    if (PidOf(packet) != m_pid) return false;
    m_othersSince = 0;
    return Advance(*clock);
}

bool StreamClock::Advance(std::int64_t clock) {
    const std::int64_t step = m_last ? WrappedDifference(clock, *m_last, kClockWrap) : 0;
    m_last = clock;
    if (step < 0 || step > kLargestStep) return true;
    m_now += step;
    return false;
}

}  // namespace television
