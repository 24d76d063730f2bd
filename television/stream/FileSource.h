// A file with a transport stream, played endlessly and without a seam.
#pragma once

#include <cstdio>
#include <memory>
#include <string>

#include "television/stream/PacketAligner.h"
#include "television/stream/PacketSource.h"
#include "television/stream/Restamper.h"

namespace television {

class FileSource : public PacketSource {
public:
    explicit FileSource(std::string path) : m_path(std::move(path)) {}
    std::optional<std::string> Open() override;
    Result Read(std::vector<std::uint8_t>& packets) override;
    bool NeedsPacing() const override { return true; }

private:
    struct Closer {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    std::optional<std::string> Examine();
    void ReadChunk(std::vector<std::uint8_t>& packets);

    std::string m_path;
    std::unique_ptr<std::FILE, Closer> m_file;
    PacketAligner m_aligner;
    Restamper m_restamper;
    bool m_turnHadPackets = false;
};

}  // namespace television
