// A queue of texts, each a version of one section.
#include "television/demonstration/MessageEvents.h"

#include "television/demonstration/DemonstrationServices.h"
#include "television/demonstration/DemonstrationTables.h"

namespace television::demonstration {
namespace {

// So that a packet that is lost is no event that is lost; who listens later hears nothing of it.
constexpr int kRepetitions = 3;
constexpr std::size_t kLongestText = 245;  // what a descriptor has room for

}  // namespace

MessageEvents& MessageEvents::Instance() {
    static auto& events = *new MessageEvents;
    return events;
}

std::optional<std::string> MessageEvents::Send(const std::string& text) {
    std::lock_guard lock(m_mutex);
    if (!m_open) return "Only the demonstration sends stream events on demand: start without --stream.";
    if (text.size() > kLongestText)
        return "A stream event's text may have " + std::to_string(kLongestText) + " bytes: shorten it.";
    m_texts.push_back(text);
    return std::nullopt;
}

std::vector<Section> MessageEvents::Due() {
    std::lock_guard lock(m_mutex);
    if (m_texts.empty()) return {};
    const Section section = StreamEventSection(kMessageId, m_version, m_texts.front());
    if (++m_sent == kRepetitions) {
        m_sent = 0;
        m_texts.pop_front();
        ++m_version;
    }
    return {section};
}

void MessageEvents::Open() {
    std::lock_guard lock(m_mutex);
    m_open = true;
}

void MessageEvents::Close() {
    std::lock_guard lock(m_mutex);
    m_open = false;
    m_texts.clear();
    m_sent = 0;
}

}  // namespace television::demonstration
