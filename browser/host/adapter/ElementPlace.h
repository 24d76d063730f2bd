// Cure: where an object lies on the page.
//
// Qt WebKit tells a windowless plug-in its size but gives 0, 0 as its place. The adapter asks the document instead,
// after each NPP_SetWindow (which does come for moves).
#pragma once

#include <cstdint>
#include <optional>

#include "npapi/npapi.h"

namespace adapter {

struct Place {
    std::int32_t x = 0;
    std::int32_t y = 0;
    bool operator==(const Place&) const = default;
};

// The top left of the content of the instance's element, in pixels of the browser's view; nothing while the element
// has no size (it is hidden or leaving the page) or cannot be asked. Lays the document out.
std::optional<Place> PlaceOnPage(NPP npp);

}  // namespace adapter
