// Writes the demonstration multiplex as it is received into a file: record_demonstration STREAM OUTPUT SECONDS
// The tables tell a time that goes by the stream's clock, so that each recording is the same.
#include <cstdio>
#include <cstdlib>
#include <fstream>

#include "television/demonstration/DemonstrationSource.h"
#include "television/stream/StreamClock.h"

namespace television {
namespace {

int Record(const char* stream, const char* output, int seconds) {
    constexpr std::int64_t kBeginning = 1'893'528'000;
    demonstration::DemonstrationSource source(
        stream, nullptr, [](std::int64_t streamTime) { return kBeginning + streamTime / kClockRate; });
    if (const auto fault = source.Open()) {
        std::fprintf(stderr, "%s\n", fault->c_str());
        return 1;
    }
    std::ofstream file(output, std::ios::binary);
    StreamClock clock;
    while (clock.Now() < seconds * kClockRate) {
        std::vector<std::uint8_t> packets;
        if (source.Read(packets) == PacketSource::Result::End) break;
        for (std::size_t at = 0; at < packets.size(); at += kPacketSize) clock.Observe(packets.data() + at);
        file.write(reinterpret_cast<const char*>(packets.data()), static_cast<std::streamsize>(packets.size()));
    }
    if (file.flush()) return 0;
    std::fprintf(stderr, "%s cannot be written: name a file that can be.\n", output);
    return 1;
}

}  // namespace
}  // namespace television

int main(int argc, char** argv) {
    if (argc == 4) return television::Record(argv[1], argv[2], std::atoi(argv[3]));
    std::fputs("record_demonstration STREAM OUTPUT SECONDS\n", stderr);
    return 2;
}
