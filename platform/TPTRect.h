// The platform's rectangle.
#pragma once

#include <cstdint>

// Which coordinates it is in (graphics plane or video plane, both in pixels from the top left) is said by the operation.
struct TPTRect {
    std::int32_t x;
    std::int32_t y;
    std::int32_t width;
    std::int32_t height;
};
