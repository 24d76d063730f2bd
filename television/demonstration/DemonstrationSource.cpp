// The demonstration's file and what is put into it.
#include "television/demonstration/DemonstrationSource.h"

#include <chrono>
#include <utility>

#include "television/demonstration/DemonstrationServices.h"
#include "television/demonstration/MessageEvents.h"

namespace television::demonstration {
namespace {

// The tables that the multiplexer of make-stream writes: PAT, SDT and five PMTs.
const std::set<std::uint16_t> kReplaced{0x00, 0x11, 0x1100, 0x1101, 0x1102, 0x1103, 0x1104};

std::set<std::uint16_t> ScrambledPids() {
    std::set<std::uint16_t> pids;
    for (const ServiceInfo& service : Services())
        for (const Stream& stream : service.streams)
            if (service.scrambled) pids.insert(stream.pid);
    return pids;
}

std::int64_t SecondsSince1970() {
    using namespace std::chrono;
    return duration_cast<seconds>(system_clock::now().time_since_epoch()).count();
}

}  // namespace

DemonstrationSource::DemonstrationSource(const std::string& path, std::shared_ptr<const Broadcast> broadcast,
                                         const TableInjector::WallClock& wallClock)
    : m_file(path),
      m_injector(Tables(std::move(broadcast)), kReplaced, wallClock ? wallClock : SecondsSince1970),
      m_subtitles(MakeSubtitleInjector(wallClock ? wallClock : SecondsSince1970)),
      m_scrambler(ScrambledPids()) {
    MessageEvents::Instance().Open();
}

DemonstrationSource::~DemonstrationSource() { MessageEvents::Instance().Close(); }

PacketSource::Result DemonstrationSource::Read(std::vector<std::uint8_t>& packets) {
    const Result result = m_file.Read(packets);
    m_injector.Process(packets);
    m_subtitles.Process(packets);
    m_scrambler.Process(packets);
    return result;
}

bool DemonstrationSource::Scramble(bool on) {
    m_scrambler.Switch(on);
    return true;
}

}  // namespace television::demonstration
