// Character tables and control codes, converted with iconv.
#include "television/tables/DvbText.h"

#include <iconv.h>

#include <array>
#include <utility>
#include <vector>

namespace television {
namespace {

constexpr std::uint8_t kFirstPrintable = 0x20;
constexpr const char* kReplacement = "\xef\xbf\xbd";

// What the first byte selects, with the number of bytes before the text. An empty name: UTF-8, no conversion.
struct CharacterTable {
    std::string charset;
    std::size_t selector = 0;
    bool wide = false;  // two bytes a character: control codes are wide too
};

CharacterTable OfIso8859(int part, std::size_t selector) {
    return {"ISO-8859-" + std::to_string(part), selector, false};
}

CharacterTable SelectTable(std::span<const std::uint8_t> text) {
    if (text.empty() || text[0] >= kFirstPrintable) return {"ISO6937", 0, false};
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
            return OfIso8859(text.size() >= 3 ? text[2] : 1, std::min<std::size_t>(3, text.size()));
        case 0x11:
            return {"UCS-2BE", 1, true};
        case 0x12:
            return {"EUC-KR", 1, false};
        case 0x13:
            return {"GB2312", 1, false};
        case 0x14:
            return {"BIG5", 1, false};
        case 0x15:
            return {"", 1, false};
        case 0x1f:
            return {"ISO6937", std::min<std::size_t>(2, text.size()), false};
        default:
            return {"ISO6937", 1, false};
    }
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
        return result.append(rest.data(), to);
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

// The control codes of one-byte tables: 0x8a breaks the line, the rest of 0x80 to 0x9f shows nothing. Codes below
// 0x20 do not occur.
std::vector<char> WithoutControls(std::span<const std::uint8_t> text) {
    std::vector<char> kept;
    for (const std::uint8_t byte : text) {
        if (byte == 0x8a)
            kept.push_back('\n');
        else if (byte >= kFirstPrintable && (byte < 0x7f || byte > 0x9f))
            kept.push_back(static_cast<char>(byte));
    }
    return kept;
}

std::string Replaced(std::string text, std::string_view what, std::string_view with) {
    for (std::size_t at = text.find(what); at != text.npos; at = text.find(what, at + with.size()))
        text.replace(at, what.size(), with);
    return text;
}

// In tables of more than one byte the control codes stand at U+E080 and up, in UTF-8 converted text also at U+0080.
std::string WithoutWideControls(std::string text) {
    for (const auto& [code, with] : std::array<std::pair<const char*, const char*>, 6>{{{"\xee\x82\x86", ""},
                                                                                        {"\xee\x82\x87", ""},
                                                                                        {"\xee\x82\x8a", "\n"},
                                                                                        {"\xc2\x86", ""},
                                                                                        {"\xc2\x87", ""},
                                                                                        {"\xc2\x8a", "\n"}}})
        text = Replaced(std::move(text), code, with);
    return text;
}

bool IsMultibyte(const std::string& charset) { return charset == "EUC-KR" || charset == "GB2312" || charset == "BIG5"; }

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
    const auto body = text.subspan(table.selector);
    Converter converter(table.charset.empty() ? "UTF-8" : table.charset);
    if (!converter.Works()) return kReplacement;
    if (table.charset == "ISO6937") return ConvertDefault(converter, WithoutControls(body));
    if (table.charset.empty() || table.wide || IsMultibyte(table.charset))
        return WithoutWideControls(converter.Convert({body.begin(), body.end()}));
    return converter.Convert(WithoutControls(body));
}

}  // namespace television
