// Fields of a message in network order. What would lie behind its end reads as zero, and makes the whole invalid.
#pragma once

#include <cstdint>
#include <span>

namespace television {

class FieldReader {
public:
    using Bytes = std::span<const std::uint8_t>;

    explicit FieldReader(Bytes bytes) : m_rest(bytes) {}
    bool IsValid() const { return m_valid; }
    Bytes Rest() const { return m_rest; }

    Bytes Take(std::size_t count) {
        if (count > m_rest.size()) {
            m_valid = false;
            m_rest = {};
            return {};
        }
        const Bytes taken = m_rest.first(count);
        m_rest = m_rest.subspan(count);
        return taken;
    }
    std::uint8_t Take8() { return static_cast<std::uint8_t>(Number(1)); }
    std::uint16_t Take16() { return static_cast<std::uint16_t>(Number(2)); }
    std::uint32_t Take32() { return Number(4); }
    // Bytes with their count in front.
    Bytes TakeCounted8() { return Take(Take8()); }
    Bytes TakeCounted16() { return Take(Take16()); }
    Bytes TakeCounted32() { return Take(Take32()); }

private:
    std::uint32_t Number(std::size_t size) {
        std::uint32_t number = 0;
        for (const std::uint8_t byte : Take(size)) number = number << 8 | byte;
        return number;
    }

    Bytes m_rest;
    bool m_valid = true;
};

}  // namespace television
