// Tells the observer what passes between pages and their objects. Costs a comparison while there is none.
#pragma once

#include "browser/host/adapter/Contract.h"
#include "npapi/npapi.h"

namespace adapter {

void SetObserver(TrafficObserver observer, void* context);

void ReportCall(NPIdentifier method, const NPVariant* arguments, std::uint32_t count);

// A function of the page is called: a listener with the plug-in's event object, or the handler that was set as
// `property` (null: as more than one) with positional arguments. `classOfPageObjects` tells one from the other.
void ReportDelivery(NPIdentifier property, NPClass* classOfPageObjects, const NPVariant* arguments,
                    std::uint32_t count);

}  // namespace adapter
