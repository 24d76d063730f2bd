// The subtitles that are chosen, from the stream's data to the screen. On the television's thread.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "television/Screen.h"
#include "television/TaskQueue.h"
#include "television/subtitles/SubtitleDecoder.h"
#include "television/tables/Components.h"

namespace television {

// Those that this television draws.
bool IsDrawn(const Component& subtitle);

class SubtitleTrack {
public:
    SubtitleTrack(Screen& screen, TaskQueue& queue) : m_screen(screen), m_queue(queue) {}

    // None: no subtitles. What is seen of others goes.
    void Choose(std::uint64_t session, const std::optional<Component>& subtitle);
    // The data of a PES packet, at the time when it is to be presented.
    void Take(std::uint64_t session, std::uint16_t pid, const std::vector<std::uint8_t>& data);

private:
    void EndAfter(std::uint64_t session, std::chrono::milliseconds time);

    Screen& m_screen;
    TaskQueue& m_queue;
    std::uint64_t m_session = 0;
    std::optional<Component> m_chosen;
    std::unique_ptr<SubtitleDecoder> m_decoder;
    std::uint64_t m_page = 0;  // counts what was shown, so that only the last one's time can run out
};

}  // namespace television
