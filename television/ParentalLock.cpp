// Ages of programmes, compared with the one that was set.
#include "television/ParentalLock.h"

#include <algorithm>

#include "television/tables/DescriptorTags.h"

namespace television {
namespace {

// The rest is undefined or has a meaning of the broadcaster's own.
bool IsAge(std::uint8_t rating) { return rating >= 0x01 && rating <= 0x0f; }

constexpr int kAgeOfZero = 3;

}  // namespace

std::optional<int> AgeOf(const Event& event) {
    std::optional<int> age;
    if (event.following) return age;
    const Descriptor* descriptor = Find(event.descriptors, kParentalRatingTag);
    for (std::size_t at = 3; descriptor && at < descriptor->data.size(); at += 4)
        if (const std::uint8_t rating = descriptor->data[at]; IsAge(rating))
            age = std::max(age.value_or(0), rating + kAgeOfZero);
    return age;
}

void ParentalLock::Set(std::optional<int> age) {
    std::lock_guard lock(m_mutex);
    m_age = age;
    m_opened.reset();
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
    if (events.empty()) return false;
    const auto age = AgeOf(events.front());
    std::lock_guard lock(m_mutex);
    return m_age && age > m_age && m_opened != Opened{channelId, events.front().id};
}

bool ParentalLock::Open(const std::string& pin, unsigned int channelId, const std::vector<Event>& events) {
    std::lock_guard lock(m_mutex);
    if (pin != m_pin) return false;
    if (!events.empty()) m_opened = Opened{channelId, events.front().id};
    return true;
}

}  // namespace television
