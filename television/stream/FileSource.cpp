// Opening, examining and rewinding a file.
#include "television/stream/FileSource.h"

#include <cerrno>
#include <cstring>
#include <filesystem>

namespace television {
namespace {

constexpr std::size_t kChunk = 64 * kPacketSize;
constexpr std::size_t kExamined = 16 << 20;

bool HasClock(const std::vector<std::uint8_t>& packets) {
    for (std::size_t at = 0; at < packets.size(); at += kPacketSize)
        if (ClockOf(packets.data() + at)) return true;
    return false;
}

}  // namespace

std::optional<std::string> FileSource::Open() {
    std::error_code error;
    if (std::filesystem::is_directory(m_path, error))
        return "\"" + m_path + "\" is a folder: give a file with an MPEG transport stream.";
    m_file.reset(std::fopen(m_path.c_str(), "rb"));
    if (!m_file)
        return "The file \"" + m_path + "\" cannot be read (" + std::strerror(errno) +
               "): check its name and its rights.";
    return Examine();
}

// The beginning must hold packets, and among them a clock: without one nobody knows how fast the stream runs.
std::optional<std::string> FileSource::Examine() {
    std::vector<std::uint8_t> bytes(kChunk), packets;
    bool clock = false, any = false;
    PacketAligner aligner;
    for (std::size_t read = 0; read < kExamined && !clock; read += kChunk) {
        const std::size_t count = std::fread(bytes.data(), 1, bytes.size(), m_file.get());
        packets.clear();
        aligner.Push({bytes.data(), count}, packets);
        any = any || !packets.empty();
        clock = HasClock(packets);
        if (count < kChunk) break;
    }
    std::rewind(m_file.get());
    if (!any) return "The file \"" + m_path + "\" is not an MPEG transport stream: give one (usually named .ts).";
    if (!clock) return "The transport stream in \"" + m_path + "\" has no clock (PCR): it cannot be played.";
    return std::nullopt;
}

void FileSource::ReadChunk(std::vector<std::uint8_t>& packets) {
    std::uint8_t bytes[kChunk];
    const std::size_t count = std::fread(bytes, 1, sizeof bytes, m_file.get());
    m_aligner.Push({bytes, count}, packets);
}

PacketSource::Result FileSource::Read(std::vector<std::uint8_t>& packets) {
    const std::size_t before = packets.size();
    ReadChunk(packets);
    for (std::size_t at = before; at < packets.size(); at += kPacketSize) m_restamper.Next(packets.data() + at);
    m_turnHadPackets = m_turnHadPackets || packets.size() > before;
    if (!std::feof(m_file.get()) && !std::ferror(m_file.get())) return Result::Packets;
    if (!m_turnHadPackets) return Result::End;
    std::rewind(m_file.get());
    m_aligner.Reset();
    m_restamper.TurnAround();
    m_turnHadPackets = false;
    return Result::Packets;
}

}  // namespace television
