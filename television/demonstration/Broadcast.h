// What the demonstration has on the air now: its services come, go and change when they are told to, or by its
// timetable; its programmes move on. What somebody has set by hand is the timetable's no more. All threads.
#pragma once

#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "television/demonstration/DemonstrationServices.h"

namespace television::demonstration {

class Broadcast {
public:
    using Failure = std::optional<std::string>;  // one sentence

    explicit Broadcast(bool hasTimetable = false);

    // So many seconds after the beginning: what the timetable has for this time comes true.
    void Proceed(std::int64_t seconds);

    struct Listing {
        std::vector<ServiceInfo> services;  // that are on the air
        unsigned version = 0;               // another after each change
    };
    Listing List() const;
    unsigned Version() const;  // of the listing
    // How many programmes are skipped.
    std::int64_t Skipped() const;
    // Of the service that can be: Atlas Key.
    bool IsScrambled() const;

    // Services are called by their channel numbers.
    Failure Appear(int number);
    Failure Disappear(int number);
    Failure Rename(int number, const std::string& name);
    Failure Renumber(int number, int to);
    // The programme that follows takes the place of the present one, on all services.
    void SkipProgramme();
    void Scramble(bool on);

private:
    struct Entry {
        ServiceInfo service;
        bool onAir = true;
        bool timed = false;  // the timetable decides whether it is on the air

        bool CanBecome(bool wanted) const { return timed || onAir != wanted; }
    };
    // Under the lock.
    Entry* Find(int number);
    void Switch(Entry& entry, bool onAir);
    Failure SetOnAir(int number, bool onAir);

    mutable std::mutex m_mutex;
    std::vector<Entry> m_entries;
    unsigned m_version = 0;
    std::int64_t m_skipped = 0;
    bool m_scrambled = true, m_scramblingTimed = false;
};

}  // namespace television::demonstration
