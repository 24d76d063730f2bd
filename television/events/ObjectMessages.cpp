// The objects in a module: BIOP messages, one behind the other.
#include <algorithm>

#include "television/events/CarouselMessages.h"
#include "television/events/CarouselReference.h"

namespace television {
namespace {

constexpr std::uint32_t kMagic = 0x42494f50;  // "BIOP"
constexpr std::uint32_t kBiopProfile = 0x49534f06, kObjectLocation = 0x49534f50, kBinder = 0x49534f40;

// Kinds and names end in a zero byte, which some leave out.
std::string Text(FieldReader::Bytes bytes) { return {bytes.begin(), std::find(bytes.begin(), bytes.end(), 0)}; }

ObjectPlace ReadLocation(FieldReader component) {
    ObjectPlace place;
    place.carousel = component.Take32();
    place.module = component.Take16();
    component.Take16();  // the version of BIOP
    const auto key = component.TakeCounted8();
    place.key.assign(key.begin(), key.end());
    return place;
}

std::optional<ObjectPlace> ReadProfile(FieldReader profile) {
    std::optional<ObjectPlace> place;
    std::optional<std::uint16_t> association;
    profile.Take8();  // byte order
    for (int count = profile.Take8(); count > 0 && profile.IsValid(); --count) {
        const std::uint32_t tag = profile.Take32();
        FieldReader component(profile.TakeCounted8());
        if (tag == kObjectLocation && !place) place = ReadLocation(component);
        if (tag == kBinder && !association) association = ReadTaps(component, {kDeliveryUse});
    }
    if (place) place->association = association;
    return place;
}

// bindings: a name, the kind of binding, a reference and information on the object.
void ReadDirectory(FieldReader body, CarouselObject& object) {
    for (int count = body.Take16(); count > 0 && body.IsValid(); --count) {
        std::string name;
        for (int parts = body.Take8(); parts > 0; --parts) {
            name = Text(body.TakeCounted8());
            body.TakeCounted8();  // its kind
        }
        body.Take8();
        const auto place = ReadReference(body);
        body.TakeCounted16();
        if (place && body.IsValid()) object.entries[name] = *place;
    }
}

// The names of the events, when so many bytes of information on the stream stand before them; nothing when what
// follows is then no list of names.
std::optional<std::vector<std::string>> ReadEventNames(FieldReader info, std::size_t streamInfo) {
    info.TakeCounted8();  // a description
    info.Take(streamInfo);
    std::vector<std::string> names;
    for (int count = info.Take16(); count > 0 && info.IsValid(); --count) names.push_back(Text(info.TakeCounted8()));
    return info.IsValid() && info.Rest().empty() ? std::optional(names) : std::nullopt;
}

// Stream information has 9 bytes in some streams and 11 in others; the right reading consumes the whole.
void ReadStreamEvents(FieldReader info, FieldReader body, CarouselObject& object) {
    auto names = ReadEventNames(info, 9);
    if (!names) names = ReadEventNames(info, 11);
    const auto association = ReadTaps(body, {kStatusAndEventUse, kEventUse});
    if (!names || !association) return;
    const auto tag = static_cast<std::uint8_t>(*association);  // the component tag is the lower byte
    FieldReader ids(body);
    const std::size_t count = ids.Take8();
    for (std::size_t i = 0; i < std::min(count, names->size()); ++i)
        if (const std::uint16_t id = ids.Take16(); ids.IsValid()) object.events.push_back({tag, id, (*names)[i]});
}

CarouselObject ReadObject(const std::string& kind, FieldReader info, FieldReader rest) {
    for (int contexts = rest.Take8(); contexts > 0 && rest.IsValid(); --contexts) {
        rest.Take32();
        rest.TakeCounted16();
    }
    const FieldReader body(rest.TakeCounted32());
    CarouselObject object{kind, {}, {}};
    if (kind == "srg" || kind == "dir") ReadDirectory(body, object);
    if (kind == "ste") ReadStreamEvents(info, body, object);
    return object;
}

}  // namespace

std::optional<ObjectPlace> ReadReference(FieldReader& fields) {
    const std::uint32_t typeLength = fields.Take32();
    fields.Take(typeLength);
    fields.Take((4 - typeLength % 4) % 4);
    std::optional<ObjectPlace> place;
    for (std::uint32_t profiles = fields.Take32(); profiles > 0 && fields.IsValid(); --profiles) {
        const std::uint32_t tag = fields.Take32();
        const auto profile = fields.TakeCounted32();
        if (tag == kBiopProfile) place = ReadProfile(FieldReader(profile));
    }
    return fields.IsValid() ? place : std::nullopt;
}

std::optional<std::uint16_t> ReadTaps(FieldReader& fields, std::initializer_list<TapUse> uses) {
    std::optional<std::uint16_t> found;
    for (int taps = fields.Take8(); taps > 0 && fields.IsValid(); --taps) {
        fields.Take16();
        const std::uint16_t use = fields.Take16(), association = fields.Take16();
        fields.TakeCounted8();
        if (fields.IsValid() && std::find(uses.begin(), uses.end(), use) != uses.end()) found = association;
    }
    return found;
}

std::optional<CarouselObject> FindObject(std::span<const std::uint8_t> module, std::span<const std::uint8_t> key) {
    for (FieldReader objects(module); !objects.Rest().empty();) {
        const bool right = objects.Take32() == kMagic;
        objects.Take(4);  // version, byte order and type
        FieldReader message(objects.TakeCounted32());
        if (!right || !objects.IsValid()) return std::nullopt;
        const auto itsKey = message.TakeCounted8();
        const std::string kind = Text(message.TakeCounted32());
        const FieldReader info(message.TakeCounted16());
        if (message.IsValid() && std::equal(itsKey.begin(), itsKey.end(), key.begin(), key.end()))
            return ReadObject(kind, info, message);
    }
    return std::nullopt;
}

}  // namespace television
