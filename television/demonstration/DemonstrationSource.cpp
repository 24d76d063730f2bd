// The demonstration's file and what is put into it.
#include "television/demonstration/DemonstrationSource.h"

#include <chrono>

#include "television/demonstration/MessageEvents.h"

namespace television::demonstration {
namespace {

// The tables that the multiplexer of make-stream writes: PAT, SDT and four PMTs.
const std::set<std::uint16_t> kReplaced{0x00, 0x11, 0x1100, 0x1101, 0x1102, 0x1103};

std::int64_t SecondsSince1970() {
    using namespace std::chrono;
    return duration_cast<seconds>(system_clock::now().time_since_epoch()).count();
}

}  // namespace

DemonstrationSource::DemonstrationSource(const std::string& path)
    : m_file(path), m_injector(Tables(), kReplaced, SecondsSince1970) {
    MessageEvents::Instance().Open();
}

DemonstrationSource::~DemonstrationSource() { MessageEvents::Instance().Close(); }

PacketSource::Result DemonstrationSource::Read(std::vector<std::uint8_t>& packets) {
    const Result result = m_file.Read(packets);
    m_injector.Process(packets);
    return result;
}

}  // namespace television::demonstration
