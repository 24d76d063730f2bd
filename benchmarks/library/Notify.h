// Notifications as a platform's threads send them, and their like for the floor.
#pragma once

#include <functional>
#include <string>

namespace benchmarks {

// Called with 0, 1, 2, ... on any thread: each call queues one notification, which raises one script event.
using Notify = std::function<void(int)>;

// `data` is the instance's NPP::pdata. "playState" goes to and fro between unrealized and connecting, "programmes"
// tells of new programmes, "channel" of a successful change to channel 1.
Notify NotifyObject(void* data, const std::string& kind);
// Of the floor's handler or, when it has any, of its listeners.
Notify NotifyFloor(void* data, const std::string& kind);

}  // namespace benchmarks
