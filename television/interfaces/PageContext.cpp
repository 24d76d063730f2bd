// The page and the origins of its application.
#include "television/interfaces/PageContext.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <utility>

namespace television {

std::string NormalizedOrigin(const std::string& origin) {
    std::string normalized;
    for (const char c : origin) normalized.push_back(static_cast<char>(std::tolower(static_cast<unsigned char>(c))));
    const auto host = normalized.find("://");
    if (host == normalized.npos) return normalized;
    normalized.resize(std::min(normalized.find('/', host + 3), normalized.size()));
    for (const auto& [scheme, port] : {std::pair{"http://", ":80"}, std::pair{"https://", ":443"}})
        if (normalized.starts_with(scheme) && normalized.ends_with(port)) normalized.resize(normalized.rfind(':'));
    return normalized;
}

void PageContext::Open(bool broadcastRelated, const std::vector<std::string>& origins) {
    std::lock_guard lock(m_mutex);
    m_broadcastRelated = broadcastRelated;
    m_origins.clear();
    for (const std::string& origin : origins) m_origins.push_back(NormalizedOrigin(origin));
}

bool PageContext::IsBroadcastRelated() const {
    std::lock_guard lock(m_mutex);
    return m_broadcastRelated;
}

bool PageContext::Contains(const std::string& origin) const {
    std::lock_guard lock(m_mutex);
    return std::find(m_origins.begin(), m_origins.end(), NormalizedOrigin(origin)) != m_origins.end();
}

}  // namespace television
