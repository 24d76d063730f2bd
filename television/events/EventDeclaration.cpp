// The declaration's elements, parsed by expat.
#include "television/events/EventDeclaration.h"

#include <expat.h>

#include <charconv>
#include <memory>
#include <optional>

namespace television {
namespace {

constexpr char kSeparator = '\n';  // stands in no namespace
constexpr const char *kRoot = "dsmcc", *kObject = "dsmcc_object", *kEvent = "stream_event";

std::string_view LocalName(std::string_view name) {
    const auto separator = name.rfind(kSeparator);
    return separator == name.npos ? name : name.substr(separator + 1);
}

std::optional<std::string_view> Find(const char** attributes, std::string_view name) {
    for (; *attributes; attributes += 2)
        if (LocalName(attributes[0]) == name) return attributes[1];
    return std::nullopt;
}

// A decimal number, or a hexadecimal one that begins with 0x.
template <class Number>
std::optional<Number> FindNumber(const char** attributes, std::string_view name) {
    auto text = Find(attributes, name).value_or("");
    const bool hexadecimal = text.starts_with("0x") || text.starts_with("0X");
    if (hexadecimal) text.remove_prefix(2);
    Number number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, hexadecimal ? 16 : 10);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return number;
}

// What is known at an element of the document. expat tells where they begin and end.
struct Document {
    int depth = 0;
    bool isDeclaration = false;
    std::optional<std::uint8_t> componentTag;
    std::vector<DeclaredEvent> events;

    void Begin(std::string_view name, const char** attributes) {
        ++depth;
        if (depth == 1) isDeclaration = name == kRoot;
        if (depth == 2 && name == kObject) componentTag = FindNumber<std::uint8_t>(attributes, "component_tag");
        if (depth == 3 && name == kEvent) Add(attributes);
    }
    void End() {
        if (--depth == 1) componentTag.reset();
    }
    void Add(const char** attributes) {
        const auto id = FindNumber<std::uint16_t>(attributes, "stream_event_id");
        const auto name = Find(attributes, "stream_event_name");
        if (isDeclaration && componentTag && id && name) events.push_back({*componentTag, *id, std::string(*name)});
    }
};

void Begin(void* document, const char* name, const char** attributes) {
    static_cast<Document*>(document)->Begin(LocalName(name), attributes);
}

void End(void* document, const char*) { static_cast<Document*>(document)->End(); }

}  // namespace

EventDeclaration ReadEventDeclaration(std::string_view xml) {
    const std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser(XML_ParserCreateNS(nullptr, kSeparator),
                                                                              XML_ParserFree);
    Document document;
    XML_SetUserData(parser.get(), &document);
    XML_SetElementHandler(parser.get(), Begin, End);
    if (XML_Parse(parser.get(), xml.data(), static_cast<int>(xml.size()), XML_TRUE) != XML_STATUS_OK)
        return {{},
                "it is no XML: " + std::string(XML_ErrorString(XML_GetErrorCode(parser.get()))) + " in line " +
                    std::to_string(XML_GetCurrentLineNumber(parser.get()))};
    if (!document.isDeclaration) return {{}, "its XML is no declaration of stream events, which begins with <dsmcc>"};
    return {std::move(document.events), ""};
}

}  // namespace television
