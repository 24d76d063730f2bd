// The declaration's elements, parsed by expat.
#include "television/events/EventDeclaration.h"

#include <expat.h>

#include <charconv>
#include <memory>
#include <optional>

namespace television {
namespace {

constexpr char kSeparator = '\n';  // stands in no namespace
constexpr std::string_view kNamespace = "urn:dvb:mis:dsmcc:2009";
constexpr std::string_view kRoot = "dsmcc", kObject = "dsmcc_object", kEvent = "stream_event";

// An element's namespace, empty when it is in none, and its name there.
struct ElementName {
    std::string_view space, local;
};

ElementName Split(std::string_view name) {
    const auto separator = name.rfind(kSeparator);
    if (separator == name.npos) return {"", name};
    return {name.substr(0, separator), name.substr(separator + 1)};
}

// The attributes of the declaration are in no namespace.
std::optional<std::string_view> Find(const char** attributes, std::string_view name) {
    for (; *attributes; attributes += 2)
        if (attributes[0] == name) return attributes[1];
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

// Televisions compare the whole name: what is taken here without its namespace would fail on others.
std::string FaultOfRoot(const ElementName& root) {
    if (root.local != kRoot) return "its XML is no declaration of stream events, which begins with <dsmcc>";
    if (root.space == kNamespace) return "";
    const std::string where = root.space.empty() ? "no namespace" : "the namespace \"" + std::string(root.space) + "\"";
    return "its <dsmcc> is in " + where + "; it must begin with <dsmcc xmlns=\"" + std::string(kNamespace) + "\">";
}

// What is known at an element of the document. expat tells where they begin and end.
struct Document {
    int depth = 0;
    std::string fault;
    std::optional<std::uint8_t> componentTag;
    std::vector<DeclaredEvent> events;

    void Begin(const ElementName& name, const char** attributes) {
        ++depth;
        if (depth == 1) fault = FaultOfRoot(name);
        if (name.space != kNamespace) return;
        if (depth == 2 && name.local == kObject) componentTag = FindNumber<std::uint8_t>(attributes, "component_tag");
        if (depth == 3 && name.local == kEvent) Add(attributes);
    }
    void End() {
        if (--depth == 1) componentTag.reset();
    }
    void Add(const char** attributes) {
        const auto id = FindNumber<std::uint16_t>(attributes, "stream_event_id");
        const auto name = Find(attributes, "stream_event_name");
        if (componentTag && id && name) events.push_back({*componentTag, *id, std::string(*name)});
    }
};

void Begin(void* document, const char* name, const char** attributes) {
    static_cast<Document*>(document)->Begin(Split(name), attributes);
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
    if (!document.fault.empty()) return {{}, std::move(document.fault)};
    return {std::move(document.events), ""};
}

}  // namespace television
