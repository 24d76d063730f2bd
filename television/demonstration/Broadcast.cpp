// The standing services, and those that are on the air now and then.
#include "television/demonstration/Broadcast.h"

#include <algorithm>
#include <utility>

#include "television/demonstration/Timetable.h"

namespace television::demonstration {
namespace {

constexpr int kLargestNumber = 999;
constexpr std::size_t kLongestName = 100;

std::string Named(const ServiceInfo& service) { return std::to_string(service.number) + " (" + service.name + ")"; }

}  // namespace

Broadcast::Broadcast(bool hasTimetable) : m_scramblingTimed(hasTimetable) {
    for (const ServiceInfo& service : demonstration::Services()) m_entries.push_back({service, true});
    for (const ServiceInfo& service : OccasionalServices())
        m_entries.push_back({service, false, hasTimetable && service.sid == kPopUpSid});
}

void Broadcast::Proceed(std::int64_t seconds) {
    std::lock_guard lock(m_mutex);
    const Scene scene = SceneAt(seconds);
    for (Entry& entry : m_entries)
        if (entry.timed) Switch(entry, scene.popUpOnAir);
    if (m_scramblingTimed) m_scrambled = !scene.keyClear;
}

unsigned Broadcast::Version() const {
    std::lock_guard lock(m_mutex);
    return m_version;
}

Broadcast::Listing Broadcast::List() const {
    std::lock_guard lock(m_mutex);
    Listing listing{{}, m_version};
    for (const Entry& entry : m_entries)
        if (entry.onAir) listing.services.push_back(entry.service);
    return listing;
}

std::int64_t Broadcast::Skipped() const {
    std::lock_guard lock(m_mutex);
    return m_skipped;
}

bool Broadcast::IsScrambled() const {
    std::lock_guard lock(m_mutex);
    return m_scrambled;
}

Broadcast::Entry* Broadcast::Find(int number) {
    const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                    [number](const Entry& entry) { return entry.service.number == number; });
    return found == m_entries.end() ? nullptr : &*found;
}

void Broadcast::Switch(Entry& entry, bool onAir) {
    if (std::exchange(entry.onAir, onAir) != onAir) ++m_version;
}

Broadcast::Failure Broadcast::SetOnAir(int number, bool onAir) {
    std::lock_guard lock(m_mutex);
    Entry* entry = Find(number);
    if (entry && entry->CanBecome(onAir)) {
        entry->timed = false;
        Switch(*entry, onAir);
        return std::nullopt;
    }
    std::string others;
    for (const Entry& other : m_entries)
        if (other.CanBecome(onAir)) others += (others.empty() ? "" : ", ") + Named(other.service);
    return "No service " + std::to_string(number) + " can " + (onAir ? "appear" : "disappear") + "; " +
           (others.empty() ? "no other can either." : "these can: " + others + ".");
}

Broadcast::Failure Broadcast::Appear(int number) { return SetOnAir(number, true); }
Broadcast::Failure Broadcast::Disappear(int number) { return SetOnAir(number, false); }

Broadcast::Failure Broadcast::Rename(int number, const std::string& name) {
    std::lock_guard lock(m_mutex);
    Entry* entry = Find(number);
    if (!entry) return "The demonstration has no service " + std::to_string(number) + ".";
    if (name.size() > kLongestName) return "The name is too long: give one of at most 100 bytes.";
    entry->service.name = name;
    ++m_version;
    return std::nullopt;
}

Broadcast::Failure Broadcast::Renumber(int number, int to) {
    std::lock_guard lock(m_mutex);
    Entry* entry = Find(number);
    if (!entry) return "The demonstration has no service " + std::to_string(number) + ".";
    if (to < 1 || to > kLargestNumber) return "A service's number is one from 1 to 999.";
    if (const Entry* other = Find(to); other && other != entry)
        return "The number is taken by " + Named(other->service) + ": give another.";
    entry->service.number = to;
    ++m_version;
    return std::nullopt;
}

void Broadcast::SkipProgramme() {
    std::lock_guard lock(m_mutex);
    ++m_skipped;
}

void Broadcast::Scramble(bool on) {
    std::lock_guard lock(m_mutex);
    m_scramblingTimed = false;
    m_scrambled = on;
}

}  // namespace television::demonstration
