// What the demonstration does by itself, where nobody has a remote at hand: Atlas Pop-up is on the air in every second
// minute, and Atlas Key is clear in every third, counted from the beginning.
#pragma once

#include <cstdint>

namespace television::demonstration {

struct Scene {
    bool popUpOnAir = false, keyClear = false;
    bool operator==(const Scene&) const = default;
};

// `seconds` since the demonstration began. In the first minute nothing differs from a demonstration without timetable.
constexpr Scene SceneAt(std::int64_t seconds) {
    const std::int64_t minute = seconds < 0 ? 1 : seconds / 60 + 1;
    return {minute % 2 == 0, minute % 3 == 0};
}

}  // namespace television::demonstration
