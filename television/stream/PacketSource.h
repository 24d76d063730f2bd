// Where the television's packets come from.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace television {

class PacketSource {
public:
    enum class Result { Packets, Nothing, End };

    virtual ~PacketSource() = default;
    // Opens the source, again after an end too. On failure one sentence that says what is wrong and what to do.
    virtual std::optional<std::string> Open() = 0;
    // Appends whole packets to `packets`. Waits a short time for them; `End` when none will come any more.
    virtual Result Read(std::vector<std::uint8_t>& packets) = 0;
    // True when packets come as fast as they are read, so that the reader must keep the stream's own time.
    virtual bool NeedsPacing() const = 0;
    // Makes an Open or Read that waits on another thread return soon. For good.
    virtual void Cancel() {}
    // Scrambles what this source has to scramble, or clears it, on any thread. False when it only receives.
    virtual bool Scramble(bool) { return false; }
};

// The source for a file name or a URL; the sentence in `error` and null when its scheme is unknown.
std::unique_ptr<PacketSource> MakeSource(const std::string& stream, std::string& error);

}  // namespace television
