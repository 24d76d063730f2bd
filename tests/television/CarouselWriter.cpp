// The messages of a carousel, from the objects outwards (ISO/IEC 13818-6; ETSI TS 102 809, annex B).
#include "tests/television/CarouselWriter.h"

#include <zlib.h>

#include <algorithm>

namespace television::test {
namespace {

using demonstration::Bytes;
using demonstration::Section;

constexpr std::uint32_t kCarousel = 7;
constexpr unsigned kDirectories = 1, kObjects = 2;

Bytes Counted8(const Bytes& bytes) { return Bytes().Put8(static_cast<unsigned>(bytes.Size())).Put(bytes); }
Bytes Counted16(const Bytes& bytes) { return Bytes().Put16(static_cast<unsigned>(bytes.Size())).Put(bytes); }
Bytes Counted32(const Bytes& bytes) { return Bytes().Put32(static_cast<std::uint32_t>(bytes.Size())).Put(bytes); }
Bytes Text(const std::string& text) { return Bytes().Put(text).Put8(0); }

Bytes Reference(const std::string& kind, unsigned module, unsigned key, const CarouselShape& shape) {
    Bytes location, binder, profile;
    location.Put32(kCarousel).Put16(module).Put16(0x0100).Put(Counted8(Bytes().Put8(key)));
    binder.Put8(1).Put16(0).Put16(0x0016).Put16(shape.list).Put8(10).Put16(1).Put32(0x80000002).Put32(0xffffffff);
    profile.Put8(0).Put8(2);
    profile.Put32(0x49534f50).Put(Counted8(location)).Put32(0x49534f40).Put(Counted8(binder));
    return Bytes().Put(Counted32(Text(kind))).Put32(1).Put32(0x49534f06).Put(Counted32(profile));
}

Bytes Binding(const std::string& name, const std::string& kind, unsigned module, unsigned key,
              const CarouselShape& shape) {
    Bytes binding;
    binding.Put8(1).Put(Counted8(Text(name))).Put(Counted8(Text(kind))).Put8(kind == "dir" ? 2 : 1);
    return binding.Put(Reference(kind, module, key, shape)).Put16(0);
}

Bytes Object(const std::string& kind, unsigned key, const Bytes& info, const Bytes& body) {
    Bytes message;
    message.Put(Counted8(Bytes().Put8(key))).Put(Counted32(Text(kind))).Put(Counted16(info)).Put8(1);
    message.Put32(0x49534f03).Put16(2).Put16(0).Put(Counted32(body));
    return Bytes().Put("BIOP").Put16(0x0100).Put8(0).Put8(0).Put(Counted32(message));
}

Bytes Directories(const CarouselShape& shape) {
    Bytes root, folder;
    root.Put16(2).Put(Binding("folder", "dir", kDirectories, 2, shape)).Put(Binding("text", "fil", kObjects, 4, shape));
    folder.Put16(1).Put(Binding("scores", "ste", kObjects, 3, shape));
    return Bytes().Put(Object("srg", 1, {}, root)).Put(Object("dir", 2, {}, folder));
}

Bytes Objects(const CarouselShape& shape) {
    Bytes info, taps, ids;
    info.Put(Counted8(Bytes().Put("match"))).Put(std::string(shape.streamInfo, '\0'));
    info.Put16(2).Put(Counted8(Text("goal"))).Put(Counted8(Text("end")));
    taps.Put8(2).Put16(0).Put16(0x000b).Put16(99).Put8(0);
    taps.Put16(0).Put16(shape.eventTap).Put16(shape.componentTag).Put8(0);
    ids.Put8(2).Put16(1).Put16(2);
    return Bytes()
        .Put(Object("fil", 4, Bytes().Put32(0).Put32(4), Counted32(Bytes().Put("text"))))
        .Put(Object("ste", 3, info, Bytes().Put(taps).Put(ids)));
}

Bytes Compressed(const Bytes& bytes) {
    std::vector<std::uint8_t> small(compressBound(bytes.Size()));
    uLongf size = small.size();
    compress(small.data(), &size, bytes.Data().data(), bytes.Size());
    return Bytes().Put(std::string(small.begin(), small.begin() + static_cast<std::ptrdiff_t>(size)));
}

// The header of control and data messages differ in the words for the number only.
Bytes Message(unsigned kind, std::uint32_t id, const Bytes& content) {
    return Bytes().Put8(0x11).Put8(0x03).Put16(kind).Put32(id).Put8(0xff).Put8(0).Put(Counted16(content));
}

Section ServerInitiate(const CarouselShape& shape) {
    Bytes content;
    content.Put(std::string(20, '\xff')).Put16(0);
    content.Put(Counted16(Bytes().Put(Reference("srg", kDirectories, 1, shape)).Put8(0).Put8(0).Put16(0)));
    return MakeSection({.table = 0x3b, .extension = 0}, Message(0x1006, 0x80000000, content));
}

struct Module {
    unsigned id;
    Bytes content;
    std::size_t originalSize;  // 0 when it is not compressed
};

Bytes ModuleEntry(const Module& module, const CarouselShape& shape) {
    Bytes info, descriptors;
    info.Put32(0xffffffff).Put32(0xffffffff).Put32(0).Put8(1).Put16(0).Put16(0x0017).Put16(shape.blocks).Put8(0);
    if (module.originalSize > 0)
        descriptors.PutDescriptor(0x09, Bytes().Put8(8).Put32(static_cast<std::uint32_t>(module.originalSize)));
    info.Put(Counted8(descriptors));
    Bytes entry;
    entry.Put16(module.id).Put32(static_cast<std::uint32_t>(module.content.Size())).Put8(shape.version);
    return entry.Put(Counted8(info));
}

Section InfoIndication(const std::vector<Module>& modules, const CarouselShape& shape) {
    Bytes content;
    content.Put32(kCarousel).Put16(static_cast<unsigned>(shape.blockSize)).Put(std::string(10, '\0')).Put16(0);
    content.Put16(static_cast<unsigned>(modules.size()));
    for (const Module& module : modules) content.Put(ModuleEntry(module, shape));
    content.Put16(0);
    return MakeSection({.table = 0x3b, .extension = 2}, Message(0x1002, 0x80000002, content));
}

void AddBlocks(const Module& module, const CarouselShape& shape, std::vector<Section>& sections) {
    const std::string content(module.content.Data().begin(), module.content.Data().end());
    for (std::size_t at = 0, number = 0; at < content.size(); at += shape.blockSize, ++number) {
        Bytes block;
        block.Put16(module.id).Put8(shape.version).Put8(0xff).Put16(static_cast<unsigned>(number));
        block.Put(content.substr(at, shape.blockSize));
        sections.push_back(MakeSection({.table = 0x3c, .extension = module.id, .version = shape.version},
                                       Message(0x1003, kCarousel, block)));
    }
}

}  // namespace

std::vector<Section> CarouselSections(const CarouselShape& shape) {
    const Bytes objects = Objects(shape);
    const std::vector<Module> modules{
        {kDirectories, Directories(shape), 0},
        {kObjects, shape.compressed ? Compressed(objects) : objects, shape.compressed ? objects.Size() : 0}};
    std::vector<Section> sections{ServerInitiate(shape), InfoIndication(modules, shape)};
    for (const Module& module : modules) AddBlocks(module, shape, sections);
    return sections;
}

}  // namespace television::test
