// A transport stream from the network or a card: UDP and cards as it comes, HTTP as fast as it is read.
#pragma once

#include <atomic>
#include <memory>
#include <string>

#include "television/stream/PacketAligner.h"
#include "television/stream/PacketSource.h"

typedef struct _GstElement GstElement;

namespace television {

class NetworkSource : public PacketSource {
public:
    explicit NetworkSource(std::string url);
    ~NetworkSource() override;
    std::optional<std::string> Open() override;
    Result Read(std::vector<std::uint8_t>& packets) override;
    bool NeedsPacing() const override { return !m_live; }
    void Cancel() override { m_cancelled = true; }

private:
    std::optional<std::string> Build();
    void Close();
    Result Pull(std::vector<std::uint8_t>& packets);
    // What the elements complained of; empty when nothing.
    std::string Complaint();

    std::string m_url;
    bool m_card, m_live;
    std::atomic<bool> m_cancelled = false;
    GstElement* m_pipeline = nullptr;
    GstElement* m_sink = nullptr;
    PacketAligner m_aligner;
    std::vector<std::uint8_t> m_first;  // what Open read already
};

}  // namespace television
