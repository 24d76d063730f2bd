// The demonstration multiplex: its audio and video from a file, its service information made while it plays.
#pragma once

#include <memory>
#include <string>

#include "television/demonstration/Scrambler.h"
#include "television/demonstration/SubtitleInjector.h"
#include "television/demonstration/TableInjector.h"
#include "television/stream/FileSource.h"

namespace television::demonstration {

class DemonstrationSource : public PacketSource {
public:
    // `wallClock` is what the tables tell; by default the machine's.
    explicit DemonstrationSource(const std::string& path, std::shared_ptr<const Broadcast> broadcast = nullptr,
                                 const TableInjector::WallClock& wallClock = {});
    ~DemonstrationSource() override;
    std::optional<std::string> Open() override { return m_file.Open(); }
    Result Read(std::vector<std::uint8_t>& packets) override;
    bool NeedsPacing() const override { return m_file.NeedsPacing(); }
    bool Scramble(bool on) override;

private:
    FileSource m_file;
    TableInjector m_injector;
    SubtitleInjector m_subtitles;
    Scrambler m_scrambler;
};

}  // namespace television::demonstration
