// Stream events that the demonstration sends when somebody asks for one. All threads.
#pragma once

#include <cstddef>
#include <deque>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "television/demonstration/SectionWriter.h"

namespace television::demonstration {

class MessageEvents {
public:
    // Of the demonstration that plays; there is at most one.
    static MessageEvents& Instance();

    // Sends "message" with this text. Nothing on success, else a sentence.
    std::optional<std::string> Send(const std::string& text);
    // The section that is to be sent now, if any: each event several times, one after the other.
    std::vector<Section> Due();

    // From the demonstration's begin to its end.
    void Open();
    void Close();

private:
    MessageEvents() = default;

    std::mutex m_mutex;
    bool m_open = false;
    std::deque<std::string> m_texts;
    int m_sent = 0;  // times the first one of them was
    unsigned m_version = 0;
};

}  // namespace television::demonstration
