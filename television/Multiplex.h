// One of the transport streams that the television receives, with what it knows and keeps of it. All of them are
// received all the time, so that each keeps its tables and its last seconds: a change to a service of another one is as
// quick as any, and what changes there is noticed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>

#include "television/stream/Receiver.h"
#include "television/stream/ScramblingWatch.h"
#include "television/stream/StreamBuffer.h"
#include "television/tables/TableReader.h"

namespace television {

// Called on a multiplex's receiving thread, with its place among the others.
class MultiplexClient {
public:
    virtual ~MultiplexClient() = default;
    virtual void TablesRead(std::size_t multiplex, const Tables& tables) = 0;
    virtual void PacketsReceived(std::size_t multiplex, std::span<const std::uint8_t> packets) = 0;
    virtual void ScramblingChanged(std::size_t multiplex) = 0;
    // As a receiver tells them.
    virtual void StreamBroke(std::size_t multiplex) = 0;
    virtual void SignalLost(std::size_t multiplex) = 0;
    virtual void SignalReturned(std::size_t multiplex) = 0;
};

class Multiplex : private ReceiverClient {
public:
    Multiplex(std::size_t place, MultiplexClient& client);
    ~Multiplex() override { End(); }

    // From an open source.
    void Begin(std::unique_ptr<PacketSource> source);
    // No call of the client is in progress or will come.
    void End() { m_receiver.reset(); }

    // True when nothing more is to be waited for, before the first channel is tuned to.
    bool IsRead() const;
    bool HasAssociation() const;
    // "PAT, 2 of 4 PMTs, no SDT yet, NIT"; empty when all of it has come.
    std::string ReadingText() const;

    Receiver* TheReceiver() { return m_receiver.get(); }
    StreamBuffer& Buffer() { return m_buffer; }
    const ScramblingWatch& Scrambling() const { return m_scrambling; }

private:
    using SteadyClock = std::chrono::steady_clock;
    // How far the tables have come, as the receiving thread sees it.
    struct Reading {
        bool association = false, maps = false, description = false, network = false, networkNamed = false;
        std::size_t mapsRead = 0, mapsNamed = 0;
        std::int64_t streamTime = 0;
        bool Complete() const { return association && maps && description && network; }
        bool Enough(std::int64_t time) const;
    };

    void PacketsReceived(std::span<const std::uint8_t> packets, std::int64_t now) override;
    bool HasEnough() const override { return IsRead(); }
    void StreamBroke() override;
    void SignalLost() override;
    void SignalReturned() override { m_client.SignalReturned(m_place); }
    void TablesChanged(const Tables& tables);

    std::size_t m_place;
    MultiplexClient& m_client;
    StreamBuffer m_buffer;
    ScramblingWatch m_scrambling;
    TableReader m_tables;  // the receiving thread's
    SteadyClock::time_point m_begun;
    mutable std::mutex m_mutex;
    Reading m_reading;
    std::unique_ptr<Receiver> m_receiver;
};

}  // namespace television
