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
    // `broadcast` is by default one without a timetable. `wallClock` is what the tables tell and the timetable goes by, by
    // default the machine's.
    explicit DemonstrationSource(const std::string& path, std::shared_ptr<Broadcast> broadcast = nullptr,
                                 const TableInjector::WallClock& wallClock = {});
    ~DemonstrationSource() override;
    std::optional<std::string> Open() override { return m_file.Open(); }
    Result Read(std::vector<std::uint8_t>& packets) override;
    bool NeedsPacing() const override { return m_file.NeedsPacing(); }
    bool Scramble(bool on) override;

private:
    void Proceed();

    FileSource m_file;
    std::shared_ptr<Broadcast> m_broadcast;
    TableInjector::WallClock m_wallClock;
    std::optional<std::int64_t> m_begun;
    TableInjector m_injector;
    SubtitleInjector m_subtitles;
    Scrambler m_scrambler;
};

}  // namespace television::demonstration
