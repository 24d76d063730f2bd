#include "browser/keys/StimulusKeys.h"

namespace browser {

const std::vector<StimulusKey>& StimulusKeys() {
    static const std::vector<StimulusKey> s_keys{
        {Qt::Key_F2, "F2", "aerial out, in", {"aerial out", "aerial in"}},
        {Qt::Key_F3, "F3", "media player on the same screen", {"mediaplayer start", "mediaplayer stop"}},
        {Qt::Key_F4, "F4", "recording: the channel cannot be changed", {"recorder start", "recorder stop"}},
        {Qt::Key_F9, "F9", "aspect ratio", {"aspect 4:3", "aspect 16:9", "aspect auto"}},
        {Qt::Key_F10, "F10", "stream event of the demonstration", {"stream-event Hello from the sofa"}},
    };
    return s_keys;
}

QString StimulusCycle::Press(const StimulusKey& key, const Stimulate& stimulate) {
    std::size_t& next = m_next.at(std::size_t(&key - StimulusKeys().data()));
    QString said;
    for (std::size_t tried = 0; tried < key.lines.size(); ++tried) {
        const QString line = QString::fromLatin1(key.lines[next]);
        next = (next + 1) % key.lines.size();
        const auto failure = stimulate(line);
        if (!failure) {
            return line;
        }
        said = *failure;
    }
    return said;
}

}  // namespace browser
