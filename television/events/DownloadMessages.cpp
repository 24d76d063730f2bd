// The download's messages: where the root is, what modules there are, and their blocks.
#include "television/events/CarouselMessages.h"
#include "television/events/CarouselReference.h"

namespace television {
namespace {

constexpr std::uint8_t kControlTable = 0x3b, kBlockTable = 0x3c, kProtocol = 0x11, kDownload = 0x03;
constexpr std::uint16_t kServerInitiate = 0x1006, kInfoIndication = 0x1002, kDataBlock = 0x1003;
constexpr std::uint8_t kCompressedModuleTag = 0x09;
constexpr std::size_t kServerId = 20;

struct Message {
    std::uint32_t id = 0;  // of the transaction, or of the download
    FieldReader fields{{}};
};

// A message of this kind, behind its header.
std::optional<Message> ReadMessage(const Section& section, std::uint8_t table, std::uint16_t kind) {
    FieldReader fields(section.body);
    const bool right = fields.Take8() == kProtocol && fields.Take8() == kDownload && fields.Take16() == kind;
    const std::uint32_t id = fields.Take32();
    fields.Take8();  // reserved
    const std::uint8_t adaptation = fields.Take8();
    FieldReader content(fields.TakeCounted16());
    content.Take(adaptation);
    if (section.table != table || !section.current || !right || !fields.IsValid() || !content.IsValid())
        return std::nullopt;
    return Message{id, content};
}

// From the module's descriptors: what size it has uncompressed.
std::uint32_t OriginalSize(FieldReader descriptors) {
    while (!descriptors.Rest().empty()) {
        const std::uint8_t tag = descriptors.Take8();
        FieldReader descriptor(descriptors.TakeCounted8());
        descriptor.Take8();  // the method, which the data itself tells again
        if (tag == kCompressedModuleTag) return descriptor.Take32();
    }
    return 0;
}

void ReadModuleInfo(FieldReader info, ModuleInfo& module) {
    info.Take(12);  // times
    module.association = ReadTaps(info, {kObjectUse});
    module.originalSize = OriginalSize(FieldReader(info.TakeCounted8()));
}

}  // namespace

std::optional<ObjectPlace> ReadGateway(const Section& section) {
    auto message = ReadMessage(section, kControlTable, kServerInitiate);
    if (!message) return std::nullopt;
    message->fields.Take(kServerId);
    message->fields.TakeCounted16();  // compatibility descriptors
    FieldReader gateway(message->fields.TakeCounted16());
    return ReadReference(gateway);
}

std::optional<ModuleList> ReadModuleList(const Section& section) {
    auto message = ReadMessage(section, kControlTable, kInfoIndication);
    if (!message) return std::nullopt;
    FieldReader& fields = message->fields;
    ModuleList list{fields.Take32(), {}};
    const std::uint16_t blockSize = fields.Take16();
    fields.Take(10);         // windows and times
    fields.TakeCounted16();  // compatibility descriptors
    for (int count = fields.Take16(); count > 0 && fields.IsValid(); --count) {
        const std::uint16_t id = fields.Take16();
        ModuleInfo& module = list.modules[id];
        module.size = fields.Take32();
        module.blockSize = blockSize;
        module.version = fields.Take8();
        ReadModuleInfo(FieldReader(fields.TakeCounted8()), module);
    }
    return fields.IsValid() ? std::optional(list) : std::nullopt;
}

std::optional<ModuleBlock> ReadBlock(const Section& section) {
    auto message = ReadMessage(section, kBlockTable, kDataBlock);
    if (!message) return std::nullopt;
    FieldReader& fields = message->fields;
    ModuleBlock block;
    block.carousel = message->id;
    block.module = fields.Take16();
    block.version = fields.Take8();
    fields.Take8();  // reserved
    block.number = fields.Take16();
    block.data = fields.Rest();
    return fields.IsValid() ? std::optional(block) : std::nullopt;
}

}  // namespace television
