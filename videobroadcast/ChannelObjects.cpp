// Script objects that tell about channels and programmes.
#include "debug/Log.h"
#include "javascript/Decimal.h"
#include "javascript/Variants.h"
#include "platform/IBroadcastPlayer.h"
#include "videobroadcast/COipfVideoBroadcast.h"

namespace OipfVideoBroadcast {

using namespace OipfJavaScript;

namespace {

// OIPF DAE, clause 7.13.11.1.
constexpr int kIdAtscT = 30;
constexpr int kIdIptvUri = 41;

// ID_DVB_C (10) to ID_ISDB_T (22), the numbers between that name no type included.
bool IsDvbOrIsdb(int idType) { return static_cast<unsigned int>(idType) - 10U <= 12U; }

// A missing argument is undefined.
NPVariant Argument(const NPVariant* args, std::uint32_t argCount, std::uint32_t index) {
    return index < argCount ? args[index] : VoidVariant();
}

std::string LowercaseHexText(const std::string& bytes) {
    constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    text.reserve(2 * bytes.size());
    for (const char character : bytes) {
        const auto byte = static_cast<unsigned char>(character);
        text.push_back(kDigits[byte >> 4]);
        text.push_back(kDigits[byte & 0x0F]);
    }
    return text;
}

}  // namespace

// False, so that it can end a chain of checks.
bool COipfVideoBroadcast::t_Refuse(const char* logLine, const char* exception) {
    LOG_WARNING("%s", logLine);
    t_SetException(exception);
    return false;
}

bool COipfVideoBroadcast::m_CreateChannelObj(const NPVariant* args, std::uint32_t argCount, NPVariant* result) {
    LOG_TRACE("m_CreateChannelObj()");
    if (argCount > 6) return true;
    std::string params;
    if (!(argCount == 3 ? t_ArgumentsOfDsdChannel(args, params)
                        : t_ArgumentsOfTripletChannel(args, argCount, params)))
        return true;
    NPObject* channel = nullptr;
    if (t_CreateJSObject("Channel", params, true, &channel))
        *result = ObjectVariant(channel);
    else
        t_Refuse("Create Channel object failed", "Channel creation failed.");
    return true;
}

bool COipfVideoBroadcast::t_ArgumentsOfDsdChannel(const NPVariant* args, std::string& params) {
    LOG_DETAIL("Type is %d", static_cast<int>(args[0].type));
    int idType = 0;
    int sid = 0;
    std::string dsd;
    if (!t_NPVariantToInt(args[0], idType))
        return t_Refuse("Create Channel object failed - idType is invalid", "idType is invalid");
    if (!t_NPVariantToString(args[1], dsd, true))
        return t_Refuse("Create Channel object failed - dsd is invalid", "DSD is invalid.");
    if (!t_NPVariantToInt(args[2], sid))
        return t_Refuse("Create Channel object failed - sid is invalid", "sid is invalid");
    LOG_TRACE("Create Channel object using DSD (length %d) - ID %d, sid %d, DSD data:", static_cast<int>(dsd.size()),
              idType, sid);
    params = Decimal(idType) + ", \"" + LowercaseHexText(dsd) + "\", " + Decimal(sid);
    LOG_TRACE("eval %s", params.c_str());
    return true;
}

bool COipfVideoBroadcast::t_ArgumentsOfTripletChannel(const NPVariant* args, std::uint32_t argCount,
                                                      std::string& params) {
    LOG_TRACE("VBO createChannelObject using triplet");
    int idType = 0;
    if (!t_NPVariantToInt(Argument(args, argCount, 0), idType))
        return t_Refuse("Create Channel object failed - idType is invalid", "idType is invalid");
    int numbers[3] = {0, 0, 0};
    if (!t_TripletNumbers(args, argCount, idType, numbers) || !t_CheckSourceId(args, argCount, idType) ||
        !t_CheckIpBroadcastId(args, argCount, idType))
        return false;
    params = Decimal(idType);
    for (const int number : numbers) params += ", " + Decimal(number);
    return true;
}

// Other types than DVB and ISDB need no numbers: what is not one is 0.
bool COipfVideoBroadcast::t_TripletNumbers(const NPVariant* args, std::uint32_t argCount, int idType,
                                           int (&numbers)[3]) {
    static constexpr const char* kRefusals[3][2] = {
        {"CreateChannelObject failed - onid is invalid, type is ID_DVB_* or ID_ISDB_*", "invalid onid argument"},
        {"CreateChannelObject failed - tsid is invalid, type is ID_DVB_* or ID_ISDB_*", "invalid tsid argument"},
        {"CreateChannelObject failed - sid is invalid, type is ID_DVB_* or ID_ISDB_*", "invalid sid argument"},
    };
    for (std::uint32_t i = 0; i < 3; ++i) {
        if (!t_NPVariantToInt(Argument(args, argCount, i + 1), numbers[i]) && IsDvbOrIsdb(idType))
            return t_Refuse(kRefusals[i][0], kRefusals[i][1]);
    }
    return true;
}

// The source id is checked but not handed to the Channel class, and so is the ipBroadcastID.
bool COipfVideoBroadcast::t_CheckSourceId(const NPVariant* args, std::uint32_t argCount, int idType) {
    if (idType != kIdAtscT) return true;
    if (argCount < 5)
        return t_Refuse("Create Channel object failed - ID_ATSC_T type, but no source ID",
                        "invalid arguments (ID_ATSC_T type, but no source ID)");
    int sourceId = -1;
    if (t_NPVariantToInt(args[4], sourceId)) return true;
    return t_Refuse("Create Channel object failed - sourceid is invalid", "invalid arguments (sourceId)");
}

bool COipfVideoBroadcast::t_CheckIpBroadcastId(const NPVariant* args, std::uint32_t argCount, int idType) {
    if (argCount == 6) {
        std::string ipBroadcastId;
        if (t_NPVariantToString(args[5], ipBroadcastId, false)) return true;
        return t_Refuse("Create Channel object failed - invalid ipBroadcastID", "invalid arguments (ipBroadcastID)");
    }
    if (idType != kIdIptvUri) return true;
    return t_Refuse("Create Channel object failed - no ipBroadcastID",
                    "invalid arguments (ID_IPTV_* type, but no ipBroadcastID)");
}

bool COipfVideoBroadcast::m_GetCurrCh(NPVariant* result) {
    LOG_TRACE("COipfVideoBroadcast::m_GetCurrCh()");
    *result = NullVariant();
    if (t_RefuseUnlessBroadcastRelated("m_GetCurrCh - app is not broadcast related")) return true;
    unsigned int id = 0;
    if (!m_bcPlayer) return true;
    if (!m_bcPlayer->GetChannel(id)) {
        LOG_WARNING("IBroadcastPlayer::GetChannel() failed");
        return true;
    }
    NPObject* channel = nullptr;
    if (t_CreateChannel(id, &channel))
        *result = ObjectVariant(channel);
    else
        t_ReleaseChannel(id);
    return true;
}

bool COipfVideoBroadcast::m_GetProgrammes(NPVariant* result) {
    LOG_TRACE("COipfVideoBroadcast::m_GetProgrammes()");
    if (t_RefuseUnlessBroadcastRelated("m_GetProgrammes - app is not broadcast related")) return true;
    unsigned int id = 0;
    if (!m_bcPlayer || !m_bcPlayer->GetChannel(id)) return true;
    NPObject* programmes = nullptr;
    if (t_CreateJSObject("ProgrammeCollection", Decimal(id), true, &programmes))
        *result = ObjectVariant(programmes);
    t_ReleaseChannel(id);
    return true;
}

bool COipfVideoBroadcast::m_GetChannelConfig(const NPVariant*, std::uint32_t, NPVariant* result) {
    LOG_TRACE("m_GetChannelConfig()");
    if (t_RefuseUnlessBroadcastRelated("getChannelConfig() - app is not broadcast-related")) return true;
    NPObject* configuration = nullptr;
    if (!t_CreateJSObject("ChannelConfig", "", true, &configuration)) {
        t_SetException("Unexpected Failure");
        return true;
    }
    LOG_TRACE("getChannelConfig success");
    *result = ObjectVariant(configuration);
    return true;
}

}  // namespace OipfVideoBroadcast
