// The demonstration multiplex: its audio and video from a file, its service information made while it plays.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "television/demonstration/Scrambler.h"
#include "television/demonstration/SubtitleInjector.h"
#include "television/demonstration/TableInjector.h"
#include "television/stream/FileSource.h"
#include "television/stream/StreamClock.h"

namespace television::demonstration {

class DemonstrationSource : public PacketSource {
public:
    // Seconds since 1970, at a time of the stream in 27 MHz since its beginning.
    using WallClock = std::function<std::int64_t(std::int64_t streamTime)>;

    // `broadcast` is by default one without a timetable. `wallClock` is what the tables tell and the timetable goes by, by
    // default the machine's.
    explicit DemonstrationSource(const std::string& path, std::shared_ptr<Broadcast> broadcast = nullptr,
                                 WallClock wallClock = {});
    ~DemonstrationSource() override;
    std::optional<std::string> Open() override { return m_file.Open(); }
    Result Read(std::vector<std::uint8_t>& packets) override;
    bool NeedsPacing() const override { return m_file.NeedsPacing(); }
    bool Scramble(bool on) override;

private:
    std::int64_t Now() const { return m_wallClock(m_streamClock.Now()); }
    void Proceed();

    FileSource m_file;
    std::shared_ptr<Broadcast> m_broadcast;
    WallClock m_wallClock;
    StreamClock m_streamClock;
    std::optional<std::int64_t> m_begun;
    TableInjector m_injector;
    SubtitleInjector m_subtitles;
    Scrambler m_scrambler;
};

}  // namespace television::demonstration
