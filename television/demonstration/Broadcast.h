// What the demonstration has on the air now: its services come, go and change when they are told to, and its programmes
// move on. All threads.
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

    Broadcast();

    std::vector<ServiceInfo> Services() const;
    // Of the tables that list the services: another number after each change.
    unsigned Version() const;
    // How many programmes are skipped.
    std::int64_t Skipped() const;

    // Services are called by their channel numbers.
    Failure Appear(int number);
    Failure Disappear(int number);
    Failure Rename(int number, const std::string& name);
    Failure Renumber(int number, int to);
    // The programme that follows takes the place of the present one, on all services.
    void SkipProgramme();

private:
    struct Entry {
        ServiceInfo service;
        bool onAir = true;
    };
    // Under the lock.
    Entry* Find(int number);
    Failure SetOnAir(int number, bool onAir);

    mutable std::mutex m_mutex;
    std::vector<Entry> m_entries;
    unsigned m_version = 0;
    std::int64_t m_skipped = 0;
};

}  // namespace television::demonstration
