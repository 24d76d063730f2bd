// Ages of programmes, compared with the one that was set.
#include "television/ParentalLock.h"

#include "television/tables/ProgrammeList.h"

namespace television {

std::optional<int> AgeOf(std::uint8_t rating) {
    constexpr std::uint8_t kLowest = 0x01, kHighest = 0x0f;
    constexpr int kAgeOfZero = 3;
    return rating >= kLowest && rating <= kHighest ? std::optional(rating + kAgeOfZero) : std::nullopt;
}

void ParentalLock::Set(std::optional<int> age) {
    std::lock_guard lock(m_mutex);
    m_age = age;
    m_opened.reset();
}

void ParentalLock::SetCountry(const std::string& country) {
    std::lock_guard lock(m_mutex);
    m_country = country;
}

void ParentalLock::SetPin(const std::string& pin) {
    std::lock_guard lock(m_mutex);
    m_pin = pin;
}

bool ParentalLock::IsOn() const {
    std::lock_guard lock(m_mutex);
    return m_age.has_value();
}

bool ParentalLock::Blocks(unsigned int channelId, const std::vector<Event>& events) const {
    std::lock_guard lock(m_mutex);
    const auto rating = PresentRating(events, m_country);
    return m_age && rating && AgeOf(*rating) > m_age && m_opened != Opened{channelId, events.front().id};
}

bool ParentalLock::Open(const std::string& pin, unsigned int channelId, const std::vector<Event>& events) {
    std::lock_guard lock(m_mutex);
    if (pin != m_pin) return false;
    if (!events.empty()) m_opened = Opened{channelId, events.front().id};
    return true;
}

}  // namespace television
