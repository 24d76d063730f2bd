// Parental ratings and DRM rights.
#include <memory>

#include "debug/Log.h"
#include "javascript/Decimal.h"
#include "javascript/Variants.h"
#include "videobroadcast/CEventArguments.h"
#include "videobroadcast/COipfVideoBroadcast.h"

namespace OipfVideoBroadcast {

using namespace OipfJavaScript;

namespace {

constexpr std::uint32_t kRightsInformation = 4;  // SASMessage::type
constexpr std::int32_t kOipfRightsText = 6;      // SASMessageItem::tag
constexpr std::int32_t kOipfAccessStatus = 7;

}  // namespace

// ETSI EN 300 468, clause 6.2.28: ratings 1 to 15 are the minimum age less 3; the others are the broadcaster's.
bool COipfVideoBroadcast::m_GetMinimumAge(char rating, int& age) {
    const auto byte = static_cast<unsigned char>(rating);
    LOG_TRACE("m_GetMinimumAge for rating %x", byte);
    if (byte >= 1 && byte <= 15) {
        LOG_TRACE("m_GetMinimumAge rating is valid");
        age = byte + 3;
        return true;
    }
    LOG_TRACE("m_GetMinimumAge rating is NOT valid");
    age = byte;
    return false;
}

void COipfVideoBroadcast::t_CheckRating(unsigned char rating) {
    if (rating == m_lastRating && m_lastRatingValid) {
        LOG_TRACE("Rating has not changed (%d)", rating);
        return;
    }
    LOG_TRACE("Rating changed from %d to %d,  m_lastRatingValid == %s", rating, m_lastRating,
              m_lastRatingValid ? "true" : "false");
    int age = 0;
    const bool valid = m_GetMinimumAge(static_cast<char>(rating), age);
    m_lastRating = rating;
    m_lastRatingValid = valid;

    const std::string number = Decimal(age);
    NPObject* collection = nullptr;
    if (!t_CreateJSObject("ParentalRatingCollection", "'dvb-si', '" + number + "', " + number, true, &collection)) {
        LOG_WARNING("Failed to create ParentalRatingCollection object");
        return;
    }
    CEventArguments arguments(m_pNPNFuncs);
    arguments.Add(VoidVariant());
    arguments.Add(ObjectVariant(collection));
    arguments.Add(VoidVariant());
    m_OnEvent(valid ? E_PROP_PARENTAL_RATING_CHANGE : E_PROP_PARENTAL_RATING_ERROR, arguments.List());
}

void COipfVideoBroadcast::m_SendDrmRightsError(int state, unsigned short caSystemId) {
    LOG_TRACE("m_SendDrmRightsError for state = %d, sid = %x", state, caSystemId);
    NPVariant system = VoidVariant();
    t_StringToNPVariant("urn:dvb:casystemid:" + Decimal(caSystemId), system);  // stays Void without memory
    CEventArguments arguments(m_pNPNFuncs);
    arguments.Add(Int32Variant(state));
    arguments.Add(VoidVariant());
    arguments.Add(system);
    arguments.Add(VoidVariant());
    m_OnEvent(E_PROP_DRM_RIGHTS_ERROR, arguments.List());
}

void COipfVideoBroadcast::m_ProcessRightsInfo(SASMessage* message, unsigned short& status, std::string& text) {
    for (const SASMessageItem& item : message->items) {
        if (item.tag == kOipfRightsText) text.append(item.data.begin(), item.data.end());
        if (item.tag != kOipfAccessStatus) continue;
        LOG_TRACE("m_ProcessRightsInfo - E_OIPF_ACCESS_STATUS");
        if (item.data.empty()) continue;
        status = item.data.front();
        LOG_TRACE("E_OIPF_ACCESS_STATUS status = %d", status);
    }
}

void COipfVideoBroadcast::t_OnSasMessage(std::uintptr_t data) {
    const std::unique_ptr<SASMessage> message(reinterpret_cast<SASMessage*>(data));
    if (!message || message->type != kRightsInformation) return;
    unsigned short status = 0;
    std::string text;  // the issuer's URL is not told to the page
    m_ProcessRightsInfo(message.get(), status, text);
    m_SendDrmRightsError(status != 0 ? E_RIGHTS_VALID : E_RIGHTS_NONE, message->caSystemId);
}

}  // namespace OipfVideoBroadcast
