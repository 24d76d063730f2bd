// The demonstration multiplex: its audio and video from a file, its service information made while it plays.
#pragma once

#include <string>

#include "television/demonstration/TableInjector.h"
#include "television/stream/FileSource.h"

namespace television::demonstration {

class DemonstrationSource : public PacketSource {
public:
    explicit DemonstrationSource(const std::string& path);
    ~DemonstrationSource() override;
    std::optional<std::string> Open() override { return m_file.Open(); }
    Result Read(std::vector<std::uint8_t>& packets) override;
    bool NeedsPacing() const override { return m_file.NeedsPacing(); }

private:
    FileSource m_file;
    TableInjector m_injector;
};

}  // namespace television::demonstration
