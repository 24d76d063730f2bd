// The parental lock: programmes rated above an age are shown to who knows the PIN.
#pragma once

#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "television/tables/Tables.h"

namespace television {

// The age that a rating asks for (ETSI EN 300 468, clause 6.2.28); none when it is the broadcaster's own.
std::optional<int> AgeOf(std::uint8_t rating);

// All threads.
class ParentalLock {
public:
    // Without an age nothing is blocked. What was opened is blocked again.
    void Set(std::optional<int> age);
    // Whose ratings count.
    void SetCountry(const std::string& country);
    // Until it is set none opens.
    void SetPin(const std::string& pin);
    bool IsOn() const;
    // Whether the present one of a channel's events must not be shown.
    bool Blocks(unsigned int channelId, const std::vector<Event>& events) const;
    // Opens the channel for as long as this programme lasts. False when the PIN is another.
    bool Open(const std::string& pin, unsigned int channelId, const std::vector<Event>& events);

private:
    struct Opened {
        unsigned int channelId;
        std::uint16_t eventId;
        bool operator==(const Opened&) const = default;
    };

    mutable std::mutex m_mutex;
    std::optional<int> m_age;
    std::string m_country;
    std::optional<std::string> m_pin;
    std::optional<Opened> m_opened;
};

}  // namespace television
