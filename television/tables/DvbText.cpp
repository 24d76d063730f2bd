// Character tables and control codes, converted with iconv.
#include "television/tables/DvbText.h"

#include <iconv.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>
#include <vector>

namespace television {
namespace {

constexpr std::uint8_t kFirstPrintable = 0x20;
constexpr std::uint8_t kLineBreak = 0x8a, kControlPage = 0xe0;
constexpr const char* kReplacement = "\xef\xbf\xbd";

// Where a table's control codes stand: among single bytes, between pairs of bytes, or as characters of Unicode.
enum class Controls { Single, Paired, Unicode };

// What the first bytes select, with their number. An empty name: a coding that is not public.
struct CharacterTable {
    std::string charset;
    std::size_t selector = 0;
    Controls controls = Controls::Single;
};

CharacterTable OfIso8859(int part, std::size_t selector) { return {"ISO-8859-" + std::to_string(part), selector}; }

// Table A.4: part 12 was never made.
CharacterTable OfIso8859(std::span<const std::uint8_t> text) {
    const bool known = text.size() >= 3 && text[1] == 0 && text[2] >= 1 && text[2] <= 15 && text[2] != 12;
    return OfIso8859(known ? text[2] : 1, std::min<std::size_t>(3, text.size()));
}

// Table A.3. Reserved selectors are passed over.
CharacterTable SelectTable(std::span<const std::uint8_t> text) {
    if (text.empty() || text[0] >= kFirstPrintable) return {"ISO6937", 0};
    switch (text[0]) {
        case 0x01:
        case 0x02:
        case 0x03:
        case 0x04:
        case 0x05:
        case 0x06:
        case 0x07:
        case 0x09:
        case 0x0a:
        case 0x0b:
            return OfIso8859(text[0] + 4, 1);
        case 0x10:
            return OfIso8859(text);
        case 0x11:
        case 0x14:  // Unicode, of which only the characters of Big5 are used
            return {"UTF-16BE", 1, Controls::Unicode};
        case 0x12:
            return {"EUC-KR", 1, Controls::Paired};
        case 0x13:
            return {"GB2312", 1, Controls::Paired};
        case 0x15:
            return {"UTF-8", 1, Controls::Unicode};
        case 0x1f:
            return {"", std::min<std::size_t>(2, text.size())};
        default:
            return {"ISO6937", 1};
    }
}

// The length of the UTF-8 character at the beginning; 0 when none is there (RFC 3629, clause 4).
std::size_t CharacterLength(std::string_view text) {
    const auto byte = [text](std::size_t i) { return i < text.size() ? static_cast<std::uint8_t>(text[i]) : 0; };
    const int first = byte(0), second = byte(1);
    if (first < 0x80) return 1;
    const std::size_t length = first < 0xc2 ? 0 : first < 0xe0 ? 2 : first < 0xf0 ? 3 : first < 0xf5 ? 4 : 0;
    for (std::size_t i = 1; i < length; ++i)
        if ((byte(i) & 0xc0) != 0x80) return 0;
    const bool overlong = (first == 0xe0 && second < 0xa0) || (first == 0xf0 && second < 0x90);
    const bool none = (first == 0xed && second > 0x9f) || (first == 0xf4 && second > 0x8f);
    return overlong || none ? 0 : length;
}

// iconv lets through what is no UTF-8, such as numbers beyond U+10FFFF.
std::string Repaired(const std::string& text) {
    std::string result;
    for (std::string_view rest(text); !rest.empty();) {
        const std::size_t length = CharacterLength(rest);
        result += length > 0 ? rest.substr(0, length) : kReplacement;
        rest.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return result;
}

class Converter {
public:
    explicit Converter(const std::string& charset) : m_handle(iconv_open("UTF-8", charset.c_str())) {}
    ~Converter() {
        if (Works()) iconv_close(m_handle);
    }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;
    bool Works() const { return m_handle != reinterpret_cast<iconv_t>(-1); }

    std::string Convert(std::vector<char> text) {
        std::string result;
        char* from = text.data();
        std::size_t left = text.size();
        while (left > 0) {
            const std::size_t before = left;
            ConvertSome(from, left, result);
            if (left > 0 && left == before) {
                result += kReplacement;
                ++from;
                --left;
            }
        }
        std::array<char, 32> rest;
        char* to = rest.data();
        std::size_t room = rest.size();
        iconv(m_handle, nullptr, nullptr, &to, &room);  // an accent that waited for its letter
        return Repaired(result.append(rest.data(), to));
    }

private:
    void ConvertSome(char*& from, std::size_t& left, std::string& result) {
        std::array<char, 256> piece;
        char* to = piece.data();
        std::size_t room = piece.size();
        iconv(m_handle, &from, &left, &to, &room);
        result.append(piece.data(), to);
    }

    iconv_t m_handle;
};

bool IsControl(std::uint8_t byte) { return byte < kFirstPrintable || (byte >= 0x7f && byte <= 0x9f); }

// Table A.1: 0x8a breaks the line, the rest of 0x80 to 0x9f shows nothing. Codes below 0x20 do not occur.
std::vector<char> WithoutControls(std::span<const std::uint8_t> text) {
    std::vector<char> kept;
    for (const std::uint8_t byte : text) {
        if (byte == kLineBreak)
            kept.push_back('\n');
        else if (!IsControl(byte))
            kept.push_back(static_cast<char>(byte));
    }
    return kept;
}

// Table A.2: where two bytes are a character, a control code is 0xe0 and the code, too; no character begins so.
std::vector<char> WithoutPairedControls(std::span<const std::uint8_t> text) {
    std::vector<char> kept;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const bool pair = at + 1 < text.size() && text[at] >= 0xa0;
        if (pair && text[at] == kControlPage && IsControl(text[at + 1])) ++at;
        if (!pair || IsControl(text[at])) {
            const auto single = WithoutControls(text.subspan(at, 1));
            kept.insert(kept.end(), single.begin(), single.end());
        } else {
            kept.insert(kept.end(), {static_cast<char>(text[at]), static_cast<char>(text[at + 1])});
            ++at;
        }
    }
    return kept;
}

// The length in UTF-8 of a control code of either table at `at`, 0 where there is none; the code itself is its last
// byte: U+0080 to U+009F and U+E080 to U+E09F.
std::size_t ControlAt(const std::string& text, std::size_t at) {
    const auto byte = [&](std::size_t i) { return i < text.size() ? static_cast<std::uint8_t>(text[i]) : 0u; };
    if (byte(at) < kFirstPrintable || byte(at) == 0x7f) return 1;
    if (byte(at) == 0xc2 && IsControl(static_cast<std::uint8_t>(byte(at + 1)))) return 2;
    if (byte(at) == 0xee && byte(at + 1) == 0x82 && IsControl(static_cast<std::uint8_t>(byte(at + 2)))) return 3;
    return 0;
}

std::string WithoutUnicodeControls(const std::string& text) {
    std::string kept;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = ControlAt(text, at);
        if (length == 0)
            kept.push_back(text[at++]);
        else if (static_cast<std::uint8_t>(text[at + length - 1]) == kLineBreak)
            kept.push_back('\n');
        at += length;
    }
    return kept;
}

// The default table is ISO 6937 with the euro sign in the place of the currency sign.
std::string ConvertDefault(Converter& converter, const std::vector<char>& text) {
    std::string result;
    std::vector<char> piece;
    for (const char byte : text) {
        if (byte != '\xa4') {
            piece.push_back(byte);
            continue;
        }
        result += converter.Convert(std::exchange(piece, {})) + "\xe2\x82\xac";
    }
    return result + converter.Convert(std::move(piece));
}

}  // namespace

std::string DecodeText(std::span<const std::uint8_t> text) {
    const CharacterTable table = SelectTable(text);
    if (table.charset.empty()) return "";
    const auto body = text.subspan(table.selector);
    Converter converter(table.charset);
    if (!converter.Works()) return kReplacement;
    if (table.charset == "ISO6937") return ConvertDefault(converter, WithoutControls(body));
    if (table.controls == Controls::Unicode)
        return WithoutUnicodeControls(converter.Convert({body.begin(), body.end()}));
    return converter.Convert(table.controls == Controls::Paired ? WithoutPairedControls(body) : WithoutControls(body));
}

std::string ReadCountedText(std::span<const std::uint8_t> bytes, std::size_t& at) {
    if (at >= bytes.size()) return "";
    const auto text = bytes.subspan(at + 1, std::min<std::size_t>(bytes[at], bytes.size() - at - 1));
    at += 1 + text.size();
    return DecodeText(text);
}

}  // namespace television
