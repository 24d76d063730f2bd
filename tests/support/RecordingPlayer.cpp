// The broadcast player of the unit tests.
#include "tests/support/RecordingPlayer.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/RecordingPlatform.h"
#include "tests/support/Text.h"

namespace support {
namespace {

RecordingPlatform& Platform() { return RecordingPlatform::Instance(); }

}  // namespace

bool RecordingPlayer::Enter(const std::string& operation, const std::string& arguments) {
    const auto& held = Platform().m_handedOut;
    EXPECT_NE(std::find(held.begin(), held.end(), this), held.end())
        << m_name << "." << operation << " was called although the player is not handed out.";
    return Platform().Enter(m_name + "." + operation, arguments);
}

void RecordingPlayer::SetListener(IBroadcastPlayerListener* listener) {
    Enter("SetListener", listener != nullptr ? "listener" : "null");
    const std::lock_guard lock(Platform().m_listenerMutex);
    m_listener = listener;
}

void RecordingPlayer::BindToCurrentChannel() { Enter("BindToCurrentChannel"); }

void RecordingPlayer::Stop() { Enter("Stop"); }

void RecordingPlayer::StopChannel() { Enter("StopChannel"); }

bool RecordingPlayer::GetChannel(unsigned int& channelId) {
    return !Enter("GetChannel") && Platform().LookUp(Platform().answers.channel, channelId);
}

bool RecordingPlayer::SetChannel(unsigned int channelId, bool fromDSD) {
    return !Enter("SetChannel", Text(channelId, fromDSD)) && Platform().answers.acceptsChannel;
}

bool RecordingPlayer::PrevChannel() { return !Enter("PrevChannel") && Platform().answers.canStep; }

bool RecordingPlayer::NextChannel() { return !Enter("NextChannel") && Platform().answers.canStep; }

bool RecordingPlayer::GetChannelFromTriplet(int idType, int onid, int tsid, int sid, unsigned int& channelId) {
    channelId = 0;
    return !Enter("GetChannelFromTriplet", Text(idType, onid, tsid, sid)) &&
           Platform().LookUp(Platform().answers.tripletChannel, channelId);
}

int RecordingPlayer::GetChannelFromDSD(int idType, const std::string& dsd, int sid, unsigned int& channelId) {
    Platform().dsds.push_back(dsd);
    if (Enter("GetChannelFromDSD", Text(idType, Hex(dsd), sid))) {
        return 1;
    }
    const int result = Platform().answers.dsdResult;
    if (result != 1 && result != 2) {
        Platform().LookUp(Platform().answers.dsdChannel, channelId);
    }
    return result;
}

void RecordingPlayer::SetVideoWindow(TPTRect& window) {
    Platform().windows.push_back(window);
    Enter("SetVideoWindow", Text(window.x, window.y, window.width, window.height));
}

void RecordingPlayer::SetFullScreenVideo() { Enter("SetFullScreenVideo"); }

void RecordingPlayer::GetVolume(int& volume) {
    if (!Enter("GetVolume")) {
        volume = Platform().answers.volume;
    }
}

void RecordingPlayer::SetVolume(int volume) {
    if (!Enter("SetVolume", Text(volume))) {
        Platform().answers.volume = volume;
    }
}

template <class Component>
std::vector<Component> RecordingPlayer::List(const std::string& operation, const std::vector<std::string>& all,
                                             bool activeOnly) {
    std::vector<Component> components;
    if (Enter(operation, Text(activeOnly))) {
        return components;
    }
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (!activeOnly || Platform().answers.activeComponents.contains(i)) {
            components.emplace_back(all[i]);
        }
    }
    return components;
}

std::vector<IVideoComponent> RecordingPlayer::GetVideoComponents(bool activeOnly) {
    return List<IVideoComponent>("GetVideoComponents", Platform().answers.videoComponents, activeOnly);
}

std::vector<IAudioComponent> RecordingPlayer::GetAudioComponents(bool activeOnly) {
    return List<IAudioComponent>("GetAudioComponents", Platform().answers.audioComponents, activeOnly);
}

std::vector<ISbtComponent> RecordingPlayer::GetSubtitleComponents(bool activeOnly) {
    return List<ISbtComponent>("GetSubtitleComponents", Platform().answers.subtitleComponents, activeOnly);
}

void RecordingPlayer::SelectVideoComponent(unsigned short pid) { Enter("SelectVideoComponent", Text(pid)); }

void RecordingPlayer::SelectAudioComponent(unsigned int index) { Enter("SelectAudioComponent", Text(index)); }

void RecordingPlayer::SelectSubtitleComponent(unsigned int index) { Enter("SelectSubtitleComponent", Text(index)); }

void RecordingPlayer::UnselectVideoComponent(unsigned short pid) { Enter("UnselectVideoComponent", Text(pid)); }

void RecordingPlayer::UnselectAudioComponent(unsigned int index) { Enter("UnselectAudioComponent", Text(index)); }

void RecordingPlayer::UnselectSubtitleComponent(unsigned int index) { Enter("UnselectSubtitleComponent", Text(index)); }

}  // namespace support
