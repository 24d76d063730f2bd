// Text in service information.
#include "television/tables/DvbText.h"
#include "tests/fuzz/Fuzz.h"

namespace television::fuzz {

void Fuzz(std::span<const std::uint8_t> input) {
    const std::string text = DecodeText(input);
    Demand(IsUtf8(text), "text is UTF-8");
    // A byte becomes three at most, that of the character which stands for what cannot be read.
    Demand(text.size() <= 3 * input.size() + 3, "text does not grow");
}

}  // namespace television::fuzz
