// Descriptors: looked up by tag, and written as they stand in the stream.
#include "television/tables/Tables.h"

#include <algorithm>

namespace television {

const Descriptor* Find(const Descriptors& descriptors, std::uint8_t tag) {
    const auto found = std::find_if(descriptors.begin(), descriptors.end(),
                                    [tag](const Descriptor& descriptor) { return descriptor.tag == tag; });
    return found == descriptors.end() ? nullptr : &*found;
}

std::string Raw(const Descriptor& descriptor) {
    std::string raw{static_cast<char>(descriptor.tag), static_cast<char>(descriptor.data.size())};
    raw.append(descriptor.data.begin(), descriptor.data.end());
    return raw;
}

}  // namespace television
