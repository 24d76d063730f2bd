// The keys by which the page's classes know that an object is made by the plug-in.
#pragma once

#include <map>
#include <mutex>
#include <string>

#include "platform/IJSObjCreation.h"

namespace television {

class ObjectKeys : public IJSObjCreation {
public:
    static ObjectKeys& TheKeys();

    std::string GetKey(const std::string& objectId) override;

    bool IsKey(const std::string& key) const;
    // No key is valid any more: the page that saw them is gone.
    void Clear();

private:
    mutable std::mutex m_mutex;
    std::map<std::string, std::string> m_keys;  // by object id
};

}  // namespace television
