// The one broadcast player.
#pragma once

#include <memory>

#include "platform/IBroadcastPlayer.h"
#include "television/TelevisionSet.h"

namespace television {

class BroadcastPlayer : public IBroadcastPlayer {
public:
    static BroadcastPlayer& ThePlayer();

    void SetListener(IBroadcastPlayerListener* listener) override;
    void BindToCurrentChannel() override;
    void Stop() override;
    void StopChannel() override;
    bool GetChannel(unsigned int& channelId) override;
    bool SetChannel(unsigned int channelId, bool fromDSD) override;
    bool PrevChannel() override;
    bool NextChannel() override;
    bool GetChannelFromTriplet(int idType, int onid, int tsid, int sid, unsigned int& channelId) override;
    int GetChannelFromDSD(int idType, const std::string& dsd, int sid, unsigned int& channelId) override;
    void SetVideoWindow(TPTRect& window) override;
    void SetFullScreenVideo() override;
    void GetVolume(int& volume) override;
    void SetVolume(int volume) override;
    std::vector<IVideoComponent> GetVideoComponents(bool activeOnly) override;
    std::vector<IAudioComponent> GetAudioComponents(bool activeOnly) override;
    std::vector<ISbtComponent> GetSubtitleComponents(bool activeOnly) override;
    void SelectVideoComponent(unsigned short pid) override;
    void SelectAudioComponent(unsigned int index) override;
    void SelectSubtitleComponent(unsigned int index) override;
    void UnselectVideoComponent(unsigned short pid) override;
    void UnselectAudioComponent(unsigned int index) override;
    void UnselectSubtitleComponent(unsigned int index) override;
};

}  // namespace television
