// Capital letters, digits and a few signs as pixels.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace television::demonstration {

// Pixels as numbers of colours, row by row.
struct Drawing {
    int width = 0, height = 0;
    std::vector<std::uint8_t> colours;
    const std::uint8_t* Row(int y) const { return colours.data() + static_cast<std::ptrdiff_t>(y) * width; }
};

// The text in the middle of a box of this size, each pixel of its letters `scale` pixels wide and high. What is not in
// the font is left blank, what does not fit is cut off.
Drawing DrawText(std::string_view text, int width, int height, int scale, std::uint8_t box, std::uint8_t ink);

}  // namespace television::demonstration
