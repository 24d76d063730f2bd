// The broadcast player of the unit tests.
#pragma once

#include <string>
#include <vector>

#include "platform/IBroadcastPlayer.h"

namespace support {

class RecordingPlayer final : public IBroadcastPlayer {
public:
    explicit RecordingPlayer(std::string name) : m_name(std::move(name)) {}

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

    IBroadcastPlayerListener* m_listener = nullptr;  // guarded by the platform's listener mutex

private:
    bool Enter(const std::string& operation, const std::string& arguments = {});
    template <class Component>
    std::vector<Component> List(const std::string& operation, const std::vector<std::string>& all, bool activeOnly);

    const std::string m_name;
};

}  // namespace support
