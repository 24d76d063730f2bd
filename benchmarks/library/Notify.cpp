#include "benchmarks/library/Notify.h"

#include "benchmarks/library/Floor.h"
#include "benchmarks/library/Instances.h"
#include "videobroadcast/COipfVideoBroadcast.h"

namespace benchmarks {

Notify NotifyObject(void* data, const std::string& kind) {
    IBroadcastPlayerListener* listener = static_cast<OipfVideoBroadcast::COipfVideoBroadcast*>(data);
    if (kind == "programmes") return [listener](int) { listener->ProgrammeChanged(); };
    if (kind == "channel") return [listener](int) { listener->TuneSuccess(1); };
    return [listener](int i) { i % 2 == 0 ? listener->ChannelChanged() : listener->ServiceNotAvailable(0); };
}

Notify NotifyFloor(void* data, const std::string& kind) {
    auto* floor = static_cast<Floor*>(data);
    const auto act = kind == "channel"          ? Floor::ReportChannel
                     : floor->listeners.empty() ? Floor::CallHandler
                                                : Floor::CallListeners;
    return [floor, act](int) { Browser().pluginthreadasynccall(floor->npp, act, floor); };
}

}  // namespace benchmarks
