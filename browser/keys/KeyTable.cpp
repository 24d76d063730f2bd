#include "browser/keys/KeyTable.h"

#include <algorithm>

namespace browser {

const std::vector<RemoteKey>& RemoteKeys() {
    static const std::vector<RemoteKey> s_keys{
        {"LEFT", 37, kNavigation, {Qt::Key_Left}},
        {"UP", 38, kNavigation, {Qt::Key_Up}},
        {"RIGHT", 39, kNavigation, {Qt::Key_Right}},
        {"DOWN", 40, kNavigation, {Qt::Key_Down}},
        {"ENTER", 13, kNavigation, {Qt::Key_Return, Qt::Key_Enter}},
        {"OK", 13, kNavigation, {Qt::Key_Select}},
        {"BACK", 461, kNavigation, {Qt::Key_Escape, Qt::Key_Backspace, Qt::Key_Back}},
        {"RED", 403, kRed, {Qt::Key_F5, Qt::Key_R}},
        {"GREEN", 404, kGreen, {Qt::Key_F6, Qt::Key_G}},
        {"YELLOW", 405, kYellow, {Qt::Key_F7, Qt::Key_Y}},
        {"BLUE", 406, kBlue, {Qt::Key_F8, Qt::Key_B}},
        {"0", 48, kNumeric, {Qt::Key_0}},
        {"1", 49, kNumeric, {Qt::Key_1}},
        {"2", 50, kNumeric, {Qt::Key_2}},
        {"3", 51, kNumeric, {Qt::Key_3}},
        {"4", 52, kNumeric, {Qt::Key_4}},
        {"5", 53, kNumeric, {Qt::Key_5}},
        {"6", 54, kNumeric, {Qt::Key_6}},
        {"7", 55, kNumeric, {Qt::Key_7}},
        {"8", 56, kNumeric, {Qt::Key_8}},
        {"9", 57, kNumeric, {Qt::Key_9}},
        {"CHANNEL_UP", 427, kOther, {Qt::Key_PageUp, Qt::Key_ChannelUp}},
        {"CHANNEL_DOWN", 428, kOther, {Qt::Key_PageDown, Qt::Key_ChannelDown}},
        {"VOLUME_UP", 447, kOther, {Qt::Key_Plus, Qt::Key_VolumeUp}},
        {"VOLUME_DOWN", 448, kOther, {Qt::Key_Minus, Qt::Key_VolumeDown}},
        {"MUTE", 449, kOther, {Qt::Key_X, Qt::Key_VolumeMute}},
        {"PLAY", 415, kVcr, {Qt::Key_P, Qt::Key_MediaPlay}},
        {"PAUSE", 19, kVcr, {Qt::Key_Space, Qt::Key_Pause, Qt::Key_MediaPause}},
        {"PLAY_PAUSE", 463, kVcr, {Qt::Key_MediaTogglePlayPause}},
        {"STOP", 413, kVcr, {Qt::Key_S, Qt::Key_MediaStop}},
        {"REWIND", 412, kVcr, {Qt::Key_Comma, Qt::Key_AudioRewind}},
        {"FAST_FWD", 417, kVcr, {Qt::Key_Period, Qt::Key_AudioForward}},
        {"TRACK_PREV", 424, kVcr, {Qt::Key_MediaPrevious}},
        {"TRACK_NEXT", 425, kVcr, {Qt::Key_MediaNext}},
        {"RECORD", 416, kVcr, {Qt::Key_MediaRecord}},
        {"INFO", 457, kInfo, {Qt::Key_I, Qt::Key_Info}},
        {"GUIDE", 458, kOther, {Qt::Key_E, Qt::Key_Guide}},
        {"TELETEXT", 459, kOther, {Qt::Key_T}},
        {"SUBTITLE", 460, kOther, {Qt::Key_U, Qt::Key_Subtitle}},
        {"MENU", 462, kOther, {Qt::Key_M, Qt::Key_Menu}},
        {"PAGE_UP", 33, kScroll, {}},
        {"PAGE_DOWN", 34, kScroll, {}},
    };
    return s_keys;
}

const RemoteKey* FindKey(const QString& name) {
    QString wanted = name.trimmed().toUpper();
    wanted = wanted.startsWith(QLatin1String("VK_")) ? wanted.mid(3) : wanted;
    const auto& keys = RemoteKeys();
    const auto found = std::find_if(keys.begin(), keys.end(),
                                    [&](const RemoteKey& key) { return wanted == QLatin1String(key.name); });
    return found == keys.end() ? nullptr : &*found;
}

const RemoteKey* FindKey(Qt::Key keyboard) {
    for (const RemoteKey& key : RemoteKeys()) {
        if (std::find(key.keyboard.begin(), key.keyboard.end(), keyboard) != key.keyboard.end()) {
            return &key;
        }
    }
    return nullptr;
}

int DigitOf(const RemoteKey& key) {
    return key.group == kNumeric ? key.code - '0' : -1;
}

}  // namespace browser
