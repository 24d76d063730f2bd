// Random keys, one for each object of the page.
#include "television/interfaces/ObjectKeys.h"

#include <algorithm>
#include <random>

IJSObjCreation* IJSObjCreation::Instance() { return &television::ObjectKeys::TheKeys(); }

namespace television {
namespace {

constexpr std::size_t kKeyLength = 32;

// 128 bits from the system's random source, in hexadecimal.
std::string MakeKey() {
    std::random_device random;
    std::uniform_int_distribution<int> digit(0, 15);
    std::string key;
    while (key.size() < kKeyLength) key.push_back("0123456789abcdef"[digit(random)]);
    return key;
}

}  // namespace

ObjectKeys& ObjectKeys::TheKeys() {
    static auto& keys = *new ObjectKeys;
    return keys;
}

std::string ObjectKeys::GetKey(const std::string& objectId) {
    std::lock_guard lock(m_mutex);
    std::string& key = m_keys[objectId];
    if (key.empty()) key = MakeKey();
    return key;
}

bool ObjectKeys::IsKey(const std::string& key) const {
    std::lock_guard lock(m_mutex);
    return std::any_of(m_keys.begin(), m_keys.end(), [&](const auto& entry) { return entry.second == key; });
}

void ObjectKeys::Clear() {
    std::lock_guard lock(m_mutex);
    m_keys.clear();
}

}  // namespace television
