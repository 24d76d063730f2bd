// Sends the demonstration multiplex over the network, in time and for ever: send-stream FILE udp://ADDRESS:PORT, or
// send-stream FILE http://ADDRESS:PORT to serve whoever asks; or writes 20 seconds of it: send-stream FILE OTHER-FILE.
// FILE has the demonstration's audio and video.
#include <arpa/inet.h>
#include <gst/gst.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>

#include "television/demonstration/DemonstrationSource.h"
#include "television/stream/Receiver.h"

namespace {

constexpr std::size_t kDatagram = 7 * television::kPacketSize;

struct Target {
    bool udp = false;
    sockaddr_in address{};
};

std::optional<Target> ReadTarget(const std::string& url) {
    Target target;
    target.udp = url.starts_with("udp://");
    const std::string rest = url.substr(std::min(url.size(), target.udp ? sizeof "udp://" - 1 : sizeof "http://" - 1));
    const auto colon = rest.find(':');
    if (colon == rest.npos || (!target.udp && !url.starts_with("http://"))) return std::nullopt;
    target.address.sin_family = AF_INET;
    target.address.sin_port = htons(static_cast<std::uint16_t>(std::atoi(rest.c_str() + colon + 1)));
    const bool isAddress = inet_pton(AF_INET, rest.substr(0, colon).c_str(), &target.address.sin_addr) == 1;
    return isAddress ? std::optional(target) : std::nullopt;
}

// Whatever comes at the stream's pace goes out; what cannot be sent at once is lost.
class Sender : public television::ReceiverClient {
public:
    explicit Sender(int socket) : m_socket(socket) {}
    bool Broken() const { return m_broken; }

private:
    void PacketsReceived(std::span<const std::uint8_t> packets, std::int64_t) override {
        for (; !packets.empty(); packets = packets.subspan(std::min(kDatagram, packets.size())))
            m_broken = send(m_socket, packets.data(), std::min(kDatagram, packets.size()), MSG_NOSIGNAL) < 0 || m_broken;
    }
    void StreamBroke() override {}
    void SignalLost() override {}
    void SignalReturned() override {}

    int m_socket;
    std::atomic<bool> m_broken = false;
};

// As fast as the receiver reads.
class Writer : public television::ReceiverClient {
public:
    explicit Writer(std::FILE* file) : m_file(file) {}
    bool Done() const { return m_written >= kWritten; }

private:
    static constexpr std::size_t kWritten = 16 << 20;  // some 20 seconds

    void PacketsReceived(std::span<const std::uint8_t> packets, std::int64_t) override {
        if (!Done()) m_written += std::fwrite(packets.data(), 1, packets.size(), m_file);
    }
    void StreamBroke() override {}
    void SignalLost() override {}
    void SignalReturned() override {}

    std::FILE* m_file;
    std::atomic<std::size_t> m_written = 0;
};

std::unique_ptr<television::PacketSource> OpenDemonstration(const std::string& file) {
    auto source = std::make_unique<television::demonstration::DemonstrationSource>(file);
    if (const auto fault = source->Open()) {
        std::fprintf(stderr, "send-stream: %s\n", fault->c_str());
        std::exit(1);
    }
    return source;
}

int Write(const std::string& file, const std::string& path) {
    std::FILE* written = std::fopen(path.c_str(), "wb");
    if (!written) {
        std::fprintf(stderr, "send-stream: %s cannot be written: name another file.\n", path.c_str());
        return 1;
    }
    {
        Writer writer(written);
        television::Receiver receiver(OpenDemonstration(file), writer);
        while (!writer.Done()) usleep(10'000);
    }
    return std::fclose(written) == 0 ? 0 : 1;
}

// Until a connection ends, which datagrams have none of.
void Send(const std::string& file, int socket, bool untilBroken) {
    Sender sender(socket);
    television::Receiver receiver(OpenDemonstration(file), sender);
    receiver.KeepTime();
    while (!untilBroken || !sender.Broken()) usleep(10'000);
}

int SendDatagrams(const std::string& file, const Target& target) {
    const int sender = socket(AF_INET, SOCK_DGRAM, 0);
    const unsigned char thisMachineOnly = 0;
    setsockopt(sender, IPPROTO_IP, IP_MULTICAST_TTL, &thisMachineOnly, sizeof thisMachineOnly);
    if (connect(sender, reinterpret_cast<const sockaddr*>(&target.address), sizeof target.address) != 0) return 1;
    Send(file, sender, false);
    return 0;
}

int Serve(const std::string& file, const Target& target) {
    const int server = socket(AF_INET, SOCK_STREAM, 0), yes = 1;
    setsockopt(server, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    if (bind(server, reinterpret_cast<const sockaddr*>(&target.address), sizeof target.address) != 0 ||
        listen(server, 4) != 0)
        return 1;
    for (int client; (client = accept(server, nullptr, nullptr)) >= 0; close(client)) {
        char request[4096];
        if (recv(client, request, sizeof request, 0) <= 0) continue;
        const std::string head = "HTTP/1.1 200 OK\r\nContent-Type: video/mp2t\r\nConnection: close\r\n\r\n";
        send(client, head.data(), head.size(), MSG_NOSIGNAL);
        Send(file, client, true);
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs("send-stream FILE udp://ADDRESS:PORT|http://ADDRESS:PORT|OTHER-FILE\n", stderr);
        return 2;
    }
    gst_init(nullptr, nullptr);
    const auto target = ReadTarget(argv[2]);
    if (!target) return Write(argv[1], argv[2]);
    const int status = target->udp ? SendDatagrams(argv[1], *target) : Serve(argv[1], *target);
    if (status != 0) std::fprintf(stderr, "send-stream: %s cannot be used: choose another address.\n", argv[2]);
    return status;
}
