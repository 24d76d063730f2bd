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

std::int64_t MachineTime(std::int64_t) {
    using namespace std::chrono;
    return duration_cast<seconds>(system_clock::now().time_since_epoch()).count();
}

}  // namespace

DemonstrationSource::DemonstrationSource(const std::string& path, std::shared_ptr<Broadcast> broadcast,
                                         WallClock wallClock)
    : m_file(path),
      m_broadcast(broadcast ? std::move(broadcast) : std::make_shared<Broadcast>()),
      m_wallClock(wallClock ? std::move(wallClock) : MachineTime),
      m_injector(Tables(m_broadcast), kReplaced, [this] { return Now(); }),
      m_subtitles(MakeSubtitleInjector([this] { return Now(); })),
      m_scrambler(ScrambledPids()) {
    MessageEvents::Instance().Open();
}

DemonstrationSource::~DemonstrationSource() { MessageEvents::Instance().Close(); }

PacketSource::Result DemonstrationSource::Read(std::vector<std::uint8_t>& packets) {
    const Result result = m_file.Read(packets);
    for (std::size_t at = 0; at < packets.size(); at += kPacketSize) m_streamClock.Observe(packets.data() + at);
    Proceed();
    m_injector.Process(packets);
    m_subtitles.Process(packets);
    m_scrambler.Process(packets);
    return result;
}

// It begins when it is first read.
void DemonstrationSource::Proceed() {
    const std::int64_t now = Now();
    if (!m_begun) m_begun = now;
    m_broadcast->Proceed(now - *m_begun);
    m_scrambler.Switch(m_broadcast->IsScrambled());
}

bool DemonstrationSource::Scramble(bool on) {
    m_broadcast->Scramble(on);
    return true;
}

}  // namespace television::demonstration
