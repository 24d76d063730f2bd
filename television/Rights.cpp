// Rights as the items of a message.
#include "television/Rights.h"

namespace television {
namespace {

constexpr std::uint32_t kRightsInformation = 4;
constexpr std::int32_t kTextItem = 6, kAccessStatusItem = 7;

}  // namespace

std::unique_ptr<SASMessage> MessageOf(const Rights& rights, std::uint16_t caSystemId) {
    auto message = std::make_unique<SASMessage>();
    message->type = kRightsInformation;
    message->caSystemId = caSystemId;
    if (!rights.text.empty()) message->items.push_back({kTextItem, {rights.text.begin(), rights.text.end()}});
    message->items.push_back({kAccessStatusItem, {static_cast<unsigned char>(rights.valid ? 1 : 0)}});
    return message;
}

}  // namespace television
