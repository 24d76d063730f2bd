// Keys of the keyboard for what happens to the television most often; the rest is for tv-remote.
#pragma once

#include <Qt>
#include <QString>
#include <functional>
#include <optional>
#include <vector>

namespace browser {

struct StimulusKey {
    Qt::Key key;
    const char* keyName;
    const char* help;
    std::vector<const char*> lines;  // each press does the next one
};

const std::vector<StimulusKey>& StimulusKeys();

// Remembers which of a key's lines is next.
class StimulusCycle {
public:
    // A sentence when the line could not be done.
    using Stimulate = std::function<std::optional<QString>(const QString& line)>;

    // What was done, or why nothing was. A line that cannot be done, since the remote did it already, is passed over.
    QString Press(const StimulusKey& key, const Stimulate& stimulate);

private:
    std::vector<std::size_t> m_next = std::vector<std::size_t>(StimulusKeys().size(), 0);
};

}  // namespace browser
