// What a conditional-access module tells the page of the rights to what is presented.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "platform/ISASListener.h"

namespace television {

struct Rights {
    bool valid = false;
    std::optional<std::uint16_t> caSystemId;  // none: that of the selected service
    std::string text;                         // from the module, in bytes; empty: it sends none
};

// The module's message with an access status and, if there is one, the text.
std::unique_ptr<SASMessage> MessageOf(const Rights& rights, std::uint16_t caSystemId);

}  // namespace television
