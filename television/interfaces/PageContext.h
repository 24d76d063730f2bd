// What the platform knows about the page that is open. All threads.
#pragma once

#include <mutex>
#include <string>
#include <vector>

namespace television {

class PageContext {
public:
    void Open(bool broadcastRelated, const std::vector<std::string>& origins);
    void Close() { Open(false, {}); }

    bool IsBroadcastRelated() const;
    // True when the origin is one of the page's application boundary.
    bool Contains(const std::string& origin) const;

private:
    mutable std::mutex m_mutex;
    bool m_broadcastRelated = false;
    std::vector<std::string> m_origins;
};

// "scheme://host:port" in small letters, without the scheme's own port and without what follows the port.
std::string NormalizedOrigin(const std::string& origin);

}  // namespace television
