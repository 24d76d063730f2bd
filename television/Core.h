// What the platform interfaces and the Television class share: the set that is switched on, and the page's side of it.
#pragma once

#include <memory>
#include <mutex>

#include "platform/IBroadcastPlayer.h"
#include "television/ListenerGate.h"
#include "television/TelevisionSet.h"
#include "television/interfaces/PageContext.h"

namespace television {

class Core {
public:
    // Never destroyed: platform interfaces are asked until the process ends.
    static Core& Instance();

    // Null while the television is off. Any thread.
    std::shared_ptr<TelevisionSet> Set() const;
    std::optional<std::string> SwitchOn(const Configuration& configuration, const Observer& observer,
                                        const TelevisionSet::Progress& progress);
    void SwitchOff();

    ListenerGate& Gate() { return m_gate; }
    PageContext& Page() { return m_page; }

    // One player, one holder. False when it is held already or the television is off.
    bool TakePlayer();
    // False when it is not held.
    bool GiveBackPlayer();

private:
    Core() = default;

    mutable std::mutex m_mutex;
    std::shared_ptr<TelevisionSet> m_set;
    ListenerGate m_gate;
    PageContext m_page;
    bool m_playerHeld = false;
};

}  // namespace television
