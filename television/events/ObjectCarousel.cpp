// From the root directory along the path, module by module.
#include "television/events/ObjectCarousel.h"

#include <zlib.h>

#include <charconv>

namespace television {
namespace {

constexpr std::uint32_t kLargestModule = 4 << 20;
constexpr std::size_t kMostModules = 4096;

using Bytes = std::vector<std::uint8_t>;

// The whole module, uncompressed; nothing when it is damaged.
std::optional<Bytes> Uncompressed(const ModuleInfo& info, Bytes content) {
    if (info.originalSize == 0) return content;
    Bytes original(info.originalSize);
    uLongf size = original.size();
    if (uncompress(original.data(), &size, content.data(), content.size()) != Z_OK) return std::nullopt;
    original.resize(size);
    return original;
}

std::size_t BlockCount(const ModuleInfo& info) { return (info.size + info.blockSize - 1u) / info.blockSize; }

bool IsReadable(const ModuleInfo& info) {
    return info.blockSize > 0 && info.size > 0 && info.size <= kLargestModule && info.originalSize <= kLargestModule;
}

std::vector<std::string> Split(const std::string& text, char separator) {
    std::vector<std::string> parts{""};
    for (const char c : text)
        if (c == separator)
            parts.emplace_back();
        else
            parts.back().push_back(c);
    return parts;
}

template <class Number>
bool ReadHexadecimal(const std::string& text, Number& number) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, 16);
    return error == std::errc() && end == text.data() + text.size();
}

}  // namespace

std::optional<CarouselTarget> ReadCarouselTarget(const std::string& url) {
    const std::string scheme = "dvb://";
    if (!url.starts_with(scheme)) return std::nullopt;
    auto path = Split(url.substr(scheme.size()), '/');
    const auto numbers = Split(path[0], '.');
    path.erase(path.begin());
    std::erase(path, "");
    CarouselTarget target;
    if (numbers.size() != 4 || path.empty() || !ReadHexadecimal(numbers[2], target.sid) ||
        !ReadHexadecimal(numbers[3], target.componentTag))
        return std::nullopt;
    target.path = std::move(path);
    return target;
}

std::optional<EventDeclaration> ObjectCarousel::Take(const Section& section) {
    if (const auto gateway = ReadGateway(section); gateway && !m_place) Want(*gateway);
    if (const auto modules = ReadModuleList(section)) TakeModules(*modules);
    const auto block = ReadBlock(section);
    return block && TakeBlock(*block) ? Walk() : std::nullopt;
}

std::vector<std::uint16_t> ObjectCarousel::Associations() const {
    std::vector<std::uint16_t> associations;
    if (!m_place) return associations;
    if (m_place->association) associations.push_back(*m_place->association);
    const auto module = m_modules.find({m_place->carousel, m_place->module});
    if (module != m_modules.end() && module->second.association) associations.push_back(*module->second.association);
    return associations;
}

void ObjectCarousel::Want(const ObjectPlace& place) {
    m_place = place;
    m_blocks.clear();
}

// A module that changes is read anew.
void ObjectCarousel::TakeModules(const ModuleList& list) {
    for (const auto& [id, info] : list.modules) {
        if (m_modules.size() >= kMostModules) m_modules.clear();
        const auto [known, isNew] = m_modules.try_emplace({list.carousel, id}, info);
        const bool same = known->second == info;
        known->second = info;
        if (!isNew && !same && m_place && m_place->carousel == list.carousel && m_place->module == id) m_blocks.clear();
    }
}

// True when the module of the object that is wanted is complete by this block.
bool ObjectCarousel::TakeBlock(const ModuleBlock& block) {
    if (!m_place || m_place->carousel != block.carousel || m_place->module != block.module) return false;
    const auto info = m_modules.find({block.carousel, block.module});
    if (info == m_modules.end() || !IsReadable(info->second) || info->second.version != block.version ||
        block.number >= BlockCount(info->second))
        return false;
    const std::size_t begin = std::size_t{block.number} * info->second.blockSize;
    if (block.data.size() != std::min<std::size_t>(info->second.blockSize, info->second.size - begin)) return false;
    m_blocks.try_emplace(block.number, block.data.begin(), block.data.end());
    return m_blocks.size() == BlockCount(info->second);
}

// Reads the object and, where it is a directory, goes on to the next one; those in the same module at once.
std::optional<EventDeclaration> ObjectCarousel::Walk() {
    Bytes content;
    for (const auto& [number, data] : m_blocks) content.insert(content.end(), data.begin(), data.end());
    const ObjectPlace at = *m_place;
    const auto module = Uncompressed(m_modules[{at.carousel, at.module}], std::move(content));
    while (m_place->carousel == at.carousel && m_place->module == at.module) {
        const auto object = module ? FindObject(*module, m_place->key) : std::nullopt;
        if (!object) return EventDeclaration{{}, "the carousel is damaged"};
        if (m_depth == m_path.size())
            return object->kind == "ste" ? EventDeclaration{object->events, ""}
                                         : EventDeclaration{{}, "it is no stream event object"};
        const auto entry = object->entries.find(m_path[m_depth]);
        if (entry == object->entries.end()) return EventDeclaration{{}, "the carousel has no such object"};
        ++m_depth;
        m_place = entry->second;
    }
    m_blocks.clear();
    return std::nullopt;
}

}  // namespace television
