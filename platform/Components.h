// The records in which a player lists the components of a service.
#pragma once

#include <string>
#include <utility>

#include "platform/visibility.h"

// A record renders itself as the argument text of the page's AVComponent class (OIPF DAE, clause 7.16.5): what stands
// between the parentheses of its constructor call, behind the key. The text is agreed between the platform and the
// page environment of its browser. The three records are concrete and are listed by value.
class TVPLATFORM_API CComponentRecord {
public:
    explicit CComponentRecord(std::string paramString) : m_paramString(std::move(paramString)) {}
    const std::string& ParamString() const { return m_paramString; }

private:
    std::string m_paramString;
};

class TVPLATFORM_API IVideoComponent : public CComponentRecord {
    using CComponentRecord::CComponentRecord;
};

class TVPLATFORM_API IAudioComponent : public CComponentRecord {
    using CComponentRecord::CComponentRecord;
};

class TVPLATFORM_API ISbtComponent : public CComponentRecord {
    using CComponentRecord::CComponentRecord;
};
