// Writes an object carousel: a root directory and a folder in one module, a stream event object in another.
#pragma once

#include <string>
#include <vector>

#include "television/demonstration/SectionWriter.h"

namespace television::test {

struct CarouselShape {
    std::size_t streamInfo = 9;  // bytes of information on the stream before the names of the events
    bool compressed = false;     // the module with the stream event object
    std::size_t blockSize = 40;
    unsigned version = 0;            // of the modules
    unsigned eventTap = 0x000c;      // what the tap with the events' stream is for
    std::uint8_t componentTag = 10;  // of that stream
    unsigned list = 11, blocks = 11;  // association tags of the streams with the list of modules and with their blocks
};

// All its sections once: "folder/scores" is a stream event object with "goal" (1) and "end" (2), "text" is a file.
std::vector<demonstration::Section> CarouselSections(const CarouselShape& shape = {});

}  // namespace television::test
