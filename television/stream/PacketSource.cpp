// Which source belongs to which address.
#include "television/stream/PacketSource.h"

#include "television/stream/FileSource.h"
#include "television/stream/NetworkSource.h"

namespace television {

std::unique_ptr<PacketSource> MakeSource(const std::string& stream, std::string& error) {
    const auto colon = stream.find("://");
    const std::string scheme = colon == std::string::npos ? "" : stream.substr(0, colon);
    if (scheme.empty()) return std::make_unique<FileSource>(stream);
    if (scheme == "file") return std::make_unique<FileSource>(stream.substr(colon + 3));
    for (const char* received : {"udp", "http", "https", "dvb"})
        if (scheme == received) return std::make_unique<NetworkSource>(stream);
    error = "\"" + scheme + "://\" cannot be received: give a file or a udp://, http://, https:// or dvb:// address.";
    return nullptr;
}

}  // namespace television
