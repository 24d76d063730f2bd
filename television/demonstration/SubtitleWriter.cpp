// Segments, and pixels as runs (ETSI EN 300 743, clause 7.2).
#include "television/demonstration/SubtitleWriter.h"

#include <algorithm>

namespace television::demonstration {
namespace {

constexpr unsigned kPageSegment = 0x10, kRegionSegment = 0x11, kColoursSegment = 0x12, kObjectSegment = 0x13,
                   kDisplaySegment = 0x14, kEndSegment = 0x80;
constexpr unsigned kAcquisitionPoint = 1;
constexpr unsigned kRegion = 0, kColours = 0, kObject = 0;

unsigned Unsigned(int value) { return static_cast<unsigned>(value); }

void PutSegment(Bytes& bytes, unsigned type, unsigned page, const Bytes& body) {
    bytes.Put8(0x0f).Put8(type).Put16(page).Put16(Unsigned(static_cast<int>(body.Size()))).Put(body);
}

// Bits, from the highest of each byte on.
class BitWriter {
public:
    void Put(unsigned value, unsigned count) {
        while (count-- > 0) {
            m_byte = m_byte << 1 | (value >> count & 1);
            if (++m_bits % 8 == 0) m_bytes.Put8(m_byte & 0xff);
        }
    }
    Bytes Aligned() {
        while (m_bits % 8 != 0) Put(0, 1);
        return m_bytes;
    }

private:
    Bytes m_bytes;
    unsigned m_byte = 0, m_bits = 0;
};

// Writes the longest run that there is a code for and returns its length.
int PutRun(BitWriter& bits, unsigned colour, int length) {
    if (length >= 29) {
        length = std::min(length, 284);
        bits.Put(0b000011, 6);
        bits.Put(Unsigned(length - 29), 8);
    } else if (length >= 12) {
        length = std::min(length, 27);
        bits.Put(0b000010, 6);
        bits.Put(Unsigned(length - 12), 4);
    } else if (length >= 3) {
        length = std::min(length, 10);
        bits.Put(0b001, 3);
        bits.Put(Unsigned(length - 3), 3);
    } else if (colour == 0) {
        bits.Put(1, 4);
        return 1;
    } else {
        length = 1;
    }
    bits.Put(colour, 2);
    return length;
}

Bytes RowBytes(const std::uint8_t* row, int width) {
    constexpr unsigned kTwoBitString = 0x10, kEndOfRow = 0xf0;
    BitWriter bits;
    for (int x = 0; x < width;) {
        const auto* end = std::find_if(row + x, row + width, [&](std::uint8_t other) { return other != row[x]; });
        x += PutRun(bits, row[x], static_cast<int>(end - (row + x)));
    }
    bits.Put(0, 6);
    return Bytes().Put8(kTwoBitString).Put(bits.Aligned()).Put8(kEndOfRow);
}

Bytes Field(const Drawing& drawing, int first) {
    Bytes field;
    for (int y = first; y < drawing.height; y += 2) field.Put(RowBytes(drawing.Row(y), drawing.width));
    return field;
}

Bytes Display(const SubtitlePage& page) {
    return Bytes().Put8(0x07).Put16(Unsigned(page.width - 1)).Put16(Unsigned(page.height - 1));
}

Bytes Page(const SubtitlePage& page) {
    Bytes body;
    body.Put8(page.timeOut).Put8((page.version & 15) << 4 | kAcquisitionPoint << 2 | 3);
    if (page.drawing) body.Put8(kRegion).Put8(0xff).Put16(Unsigned(page.x)).Put16(Unsigned(page.y));
    return body;
}

Bytes Region(const SubtitlePage& page) {
    Bytes body;
    body.Put8(kRegion).Put8((page.version & 15) << 4 | 0x0f);
    body.Put16(Unsigned(page.drawing->width)).Put16(Unsigned(page.drawing->height));
    body.Put8(1 << 5 | 1 << 2 | 3).Put8(kColours).Put8(0).Put8(kNoColour << 2 | 3);  // two bits a pixel
    return body.Put16(kObject).Put16(0).Put16(0xf000);
}

// Luminance, two of colour, and transparency.
Bytes Colours(const SubtitlePage& page) {
    constexpr std::uint8_t kTable[4][4] = {{0, 0, 0, 255}, {16, 128, 128, 0}, {210, 146, 16, 0}, {235, 128, 128, 0}};
    Bytes body;
    body.Put8(kColours).Put8((page.version & 15) << 4 | 0x0f);
    for (unsigned entry = 0; entry < 4; ++entry) {
        body.Put8(entry).Put8(0x80 | 0x1f);
        for (const std::uint8_t value : kTable[entry]) body.Put8(value);
    }
    return body;
}

Bytes Object(const SubtitlePage& page) {
    const Bytes top = Field(*page.drawing, 0), bottom = Field(*page.drawing, 1);
    Bytes body;
    body.Put16(kObject).Put8((page.version & 15) << 4 | 1);
    return body.Put16(Unsigned(static_cast<int>(top.Size())))
        .Put16(Unsigned(static_cast<int>(bottom.Size())))
        .Put(top)
        .Put(bottom);
}

}  // namespace

Bytes MakeSubtitles(const SubtitlePage& page) {
    Bytes bytes;
    bytes.Put8(0x20).Put8(0x00);
    PutSegment(bytes, kDisplaySegment, page.page, Display(page));
    PutSegment(bytes, kPageSegment, page.page, Page(page));
    if (page.drawing) {
        PutSegment(bytes, kRegionSegment, page.page, Region(page));
        PutSegment(bytes, kColoursSegment, page.page, Colours(page));
        PutSegment(bytes, kObjectSegment, page.page, Object(page));
    }
    PutSegment(bytes, kEndSegment, page.page, {});
    return bytes.Put8(0xff);
}

Bytes MakePrivatePes(const Bytes& data, std::int64_t presentation) {
    constexpr unsigned kPrivateStream = 0xbd, kBehindLength = 8, kTimeSize = 5;
    const auto bits = [=](int shift, unsigned mask) { return static_cast<unsigned>(presentation >> shift) & mask; };
    Bytes pes;
    pes.Put16(0).Put8(1).Put8(kPrivateStream).Put16(static_cast<unsigned>(kBehindLength + data.Size()));
    pes.Put8(0x84).Put8(0x80).Put8(kTimeSize);
    pes.Put8(0x21 | bits(30, 7) << 1).Put16(bits(15, 0x7fff) << 1 | 1).Put16(bits(0, 0x7fff) << 1 | 1);
    return pes.Put(data);
}

// The last packet is filled up by its adaptation field.
void PacketizePes(const Bytes& pes, std::uint16_t pid, std::uint8_t& continuity, std::vector<std::uint8_t>& packets) {
    constexpr std::size_t kHeader = 4;
    const auto& data = pes.Data();
    for (std::size_t at = 0; at < data.size();) {
        const std::size_t count = std::min(kPacketSize - kHeader, data.size() - at);
        const std::size_t stuffing = kPacketSize - kHeader - count;
        Bytes packet;
        packet.Put8(kSyncByte).Put16((at == 0 ? 0x4000u : 0u) | pid).Put8(stuffing > 0 ? 0x30 : 0x10);
        if (stuffing > 0) packet.Put8(static_cast<unsigned>(stuffing - 1));
        if (stuffing > 1) packet.Put8(0);
        for (std::size_t i = 2; i < stuffing; ++i) packet.Put8(0xff);
        const std::size_t start = packets.size();
        packets.insert(packets.end(), packet.Data().begin(), packet.Data().end());
        packets.insert(packets.end(), data.begin() + static_cast<std::ptrdiff_t>(at),
                       data.begin() + static_cast<std::ptrdiff_t>(at + count));
        SetContinuity(packets.data() + start, continuity++);
        at += count;
    }
}

}  // namespace television::demonstration
