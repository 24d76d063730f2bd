// What else uses the television: a media player on its screen, and its recorder.
#pragma once

#include <atomic>
#include <mutex>

#include "television/ListenerGate.h"
#include "television/Presentation.h"
#include "television/TaskQueue.h"

namespace television {

class Resources {
public:
    Resources(Presentation& presentation, ListenerGate& gate, TaskQueue& queue)
        : m_presentation(presentation), m_gate(gate), m_queue(queue) {}

    // The media player takes the screen and gives it back; the page's listener is told. False when it is so already.
    bool StartMediaPlayer();
    bool StopMediaPlayer();
    bool IsMediaPlaying() const { return m_mediaPlays; }
    // A page has bound its object: if it may not have the screen, it must know.
    void PageBound();

    // A recording, which keeps the receiver. False when it is so already.
    bool SetRecording(bool recording) { return m_records.exchange(recording) != recording; }
    bool IsRecording() const { return m_records; }

private:
    void TellSuspended();
    void TellResumed();

    Presentation& m_presentation;
    ListenerGate& m_gate;
    TaskQueue& m_queue;
    std::mutex m_turn;  // held from a change of m_mediaPlays until the listener is going to hear of it
    std::atomic<bool> m_mediaPlays = false, m_records = false;
};

}  // namespace television
