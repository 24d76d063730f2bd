// The association_tag and deferred_association_tags descriptors.
#include "television/tables/Associations.h"

#include "television/events/FieldReader.h"
#include "television/tables/Components.h"
#include "television/tables/DescriptorTags.h"

namespace television {
namespace {

using Associations = std::map<std::uint16_t, std::uint16_t>;

void AddOwn(const MapTable& map, Associations& associations) {
    for (const ElementaryStream& stream : map.streams)
        for (const Descriptor& descriptor : stream.descriptors) {
            FieldReader fields(descriptor.data);
            const std::uint16_t association = fields.Take16();
            if (descriptor.tag == kAssociationTag && fields.IsValid())
                associations.try_emplace(association, stream.pid);
        }
}

// The stream that is called so: by its association tag, else by its component tag, which is the lower byte.
std::optional<std::uint16_t> FindStream(const MapTable& map, std::uint16_t association) {
    Associations own;
    AddOwn(map, own);
    if (const auto found = own.find(association); found != own.end()) return found->second;
    for (const ElementaryStream& stream : map.streams)
        if (ComponentTag(stream) == (association & 0xff)) return stream.pid;
    return std::nullopt;
}

void AddDeferred(const Tables& tables, const Descriptors& descriptors, Associations& associations) {
    for (const Descriptor& descriptor : descriptors) {
        if (descriptor.tag != kDeferredAssociationsTag) continue;
        FieldReader fields(descriptor.data);
        FieldReader tags(fields.TakeCounted8());
        const std::uint16_t tsid = fields.Take16(), sid = fields.Take16();
        const auto map = tables.maps.find(sid);
        if (!fields.IsValid() || map == tables.maps.end() || !tables.association || tables.association->tsid != tsid)
            continue;
        while (tags.Rest().size() >= 2) {
            const std::uint16_t tag = tags.Take16();
            if (const auto pid = FindStream(map->second, tag)) associations.try_emplace(tag, *pid);
        }
    }
}

}  // namespace

std::map<std::uint16_t, std::uint16_t> ListAssociations(const Tables& tables, std::uint16_t sid) {
    Associations associations;
    const auto map = tables.maps.find(sid);
    if (map == tables.maps.end()) return associations;
    AddOwn(map->second, associations);
    AddDeferred(tables, map->second.descriptors, associations);
    for (const ElementaryStream& stream : map->second.streams) AddDeferred(tables, stream.descriptors, associations);
    return associations;
}

}  // namespace television
