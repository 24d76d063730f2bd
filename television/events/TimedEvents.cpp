// The normal play time by the stream's clock, and who waits for it.
#include "television/events/TimedEvents.h"

#include "television/stream/TransportPacket.h"

namespace television {
namespace {

constexpr std::int64_t kSecond = 90'000;
constexpr std::size_t kMostSections = 64;

std::int64_t NptAt(std::int64_t clock, const NptReference& reference) {
    const std::int64_t since = WrappedDifference(clock, reference.clock, kTimeWrap);
    return reference.npt + since * reference.numerator / reference.denominator;
}

}  // namespace

void TimedEvents::Plan(const Section& section, std::vector<TimedEvent> events) {
    if (m_planned.size() >= kMostSections) m_planned.clear();
    m_planned[section.extension] = std::move(events);
}

std::vector<StreamEvent> TimedEvents::DueBy(std::int64_t clock) {
    const std::int64_t step = m_lastClock ? WrappedDifference(clock, *m_lastClock, kTimeWrap) : 0;
    m_lastClock = clock;
    if (step < 0 || step > kSecond) m_reference.reset();  // which was told by the clock before it jumped
    std::vector<StreamEvent> due;
    if (!m_reference) return due;
    const std::int64_t now = NptAt(clock, *m_reference);
    for (auto& [extension, events] : m_planned)
        std::erase_if(events, [&](TimedEvent& timed) {
            const std::int64_t late = WrappedDifference(now, timed.npt, kTimeWrap);
            if (late >= 0 && late <= kSecond) due.push_back(std::move(timed.event));
            return late >= 0;
        });
    return due;
}

}  // namespace television
