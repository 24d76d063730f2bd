// The streams that carousels name by association tags.
#include "television/tables/Associations.h"

#include "television/ServiceDirectory.h"
#include "television/tables/DescriptorTags.h"

namespace television::test {
namespace {

using Found = std::map<std::uint16_t, std::uint16_t>;

constexpr std::uint16_t kTsid = 5, kOwn = 1, kOther = 2;

Descriptor Tagged(std::uint8_t tag) { return {kStreamIdentifierTag, {tag}}; }
Descriptor Associated(std::uint8_t high, std::uint8_t low) { return {kAssociationTag, {high, low, 0, 0, 0}}; }
Descriptor Deferred(std::uint8_t tsid, std::uint8_t sid) {
    return {kDeferredAssociationsTag, {4, 0x10, 0x01, 0x20, 0x07, 0, tsid, 0, sid}};
}

Tables With(const Descriptors& ofOwnService) {
    Tables tables;
    tables.association = AssociationTable{kTsid, {}, {}};
    tables.maps[kOwn] = {0, ofOwnService, {{0x0b, 0x101, {Tagged(1), Associated(0x12, 0x34)}}, {0x0b, 0x102, {}}}};
    tables.maps[kOther] = {0, {}, {{0x0b, 0x201, {Associated(0x10, 0x01)}}, {0x0b, 0x202, {Tagged(7)}}}};
    return tables;
}

TEST(Associations, AreThoseThatTheServiceGivesItsStreams) {
    EXPECT_EQ(ListAssociations(With({}), kOwn), (Found{{0x1234, 0x101}}));
    EXPECT_EQ(ListAssociations(With({}), 9), Found{});
}

TEST(Associations, MayBeThoseOfAnotherServiceOfTheMultiplex) {
    EXPECT_EQ(ListAssociations(With({Deferred(kTsid, kOther)}), kOwn),
              (Found{{0x1234, 0x101}, {0x1001, 0x201}, {0x2007, 0x202}}));
    EXPECT_EQ(ListAssociations(With({Deferred(kTsid + 1, kOther)}), kOwn), (Found{{0x1234, 0x101}}));
    EXPECT_EQ(ListAssociations(With({Deferred(kTsid, 9)}), kOwn), (Found{{0x1234, 0x101}}));
}

TEST(Associations, AreNotReadFromDescriptorsThatAreCut) {
    const std::vector<std::vector<std::uint8_t>> cut{{}, {9}, {1, 0x10}, {2, 0x10, 1, 0}, {2, 0x10, 1, 0, 5, 0}};
    for (const auto& data : cut)
        EXPECT_EQ(ListAssociations(With({{kDeferredAssociationsTag, data}}), kOwn), (Found{{0x1234, 0x101}}));
    Tables tables = With({});
    tables.maps[kOwn].streams[1].descriptors = {{kAssociationTag, {9}}};
    EXPECT_EQ(ListAssociations(tables, kOwn), (Found{{0x1234, 0x101}}));
}

TEST(Associations, WithoutADescriptorAreComponentTagsBelowAnyUpperByte) {
    Route route;
    route.taggedPids = {{7, 0x107}, {8, 0x108}};
    route.associatedPids = {{0x0108, 0x200}};
    EXPECT_EQ(route.AssociatedPid(7), 0x107);
    EXPECT_EQ(route.AssociatedPid(0xff07), 0x107);
    EXPECT_EQ(route.AssociatedPid(0x0108), 0x200);
    EXPECT_EQ(route.AssociatedPid(0x0208), 0x108);
    EXPECT_EQ(route.AssociatedPid(9), std::nullopt);
}

}  // namespace
}  // namespace television::test
