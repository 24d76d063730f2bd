// The broadcast player: one tuner with its decoder, as a page's object controls it.
//
// Implemented by the platform, handed out by CDAEBrowserAPI::GetBroadcastPlayer, called by the plug-in on the browser's
// main thread. Operations start something and return; what comes of it is told to the listener, on another thread
// (IBroadcastPlayerListener). The order of the operations is the order of their virtual slots and must be kept.
// All are required; a platform without a feature refuses as the operation says.
#pragma once

#include <string>
#include <vector>

#include "platform/Components.h"
#include "platform/IBroadcastPlayerListener.h"
#include "platform/TPTRect.h"
#include "platform/visibility.h"

class TVPLATFORM_API IBroadcastPlayer {
public:
    // The one listener of this hand-out of the player. It is not unregistered separately: the end of the hand-out ends
    // it (CDAEBrowserAPI::ReleaseBroadcastPlayer).
    virtual void SetListener(IBroadcastPlayerListener* listener) = 0;

    // Presents whatever channel the television is tuned to. The caller counts it as presented at once: only a failure is
    // reported.
    virtual void BindToCurrentChannel() = 0;
    // Stops presentation; the channel stays selected.
    virtual void Stop() = 0;
    // Ends presentation after a null channel was bound; no channel is selected any more.
    virtual void StopChannel() = 0;

    // True and the id of the channel that is selected, with a hold on it (IJSChannelCache); false, `channelId`
    // unchanged, when there is none.
    virtual bool GetChannel(unsigned int& channelId) = 0;
    // Starts the change to a channel. `fromDSD`: the id came from GetChannelFromDSD. False, with nothing begun, when
    // the channel cannot be selected; true promises one of TuneSuccess, TuneFail, ServiceNotAvailable, NoSignal,
    // ScrambledTune or ParentalRatingBlocked, unless another operation comes first.
    virtual bool SetChannel(unsigned int channelId, bool fromDSD) = 0;
    // Start the change to the channel before or after the selected one in the channel list, which wraps around.
    // False, with nothing begun, when there is no channel to go to; true promises as SetChannel does.
    virtual bool PrevChannel() = 0;
    virtual bool NextChannel() = 0;

    // True and the id, with a hold, of the channel with these numbers (OIPF DAE, clause 7.13.11: idType is the
    // delivery system; ETSI EN 300 468: original network, transport stream and service id). False, `channelId` 0,
    // when no channel has them. A number that the page did not give arrives as 0, a missing idType as -1.
    virtual bool GetChannelFromTriplet(int idType, int onid, int tsid, int sid, unsigned int& channelId) = 0;
    // The channel with service id `sid` on the transport stream that a delivery system descriptor describes. `dsd` is
    // the whole descriptor, tag and length included (ETSI EN 300 468, clause 6.2.13), as bytes, and may contain zeros.
    // Returns 0 and the id, with a hold; 1 when the descriptor cannot be parsed; 2 when its delivery system is not
    // supported; any other value when the descriptor decides nothing (an id that was written is still used).
    virtual int GetChannelFromDSD(int idType, const std::string& dsd, int sid, unsigned int& channelId) = 0;

    // Places and scales the video: a rectangle of the video plane, in pixels.
    virtual void SetVideoWindow(TPTRect& window) = 0;
    // The video fills the screen.
    virtual void SetFullScreenVideo() = 0;
    // The volume, 0 to 100. Any integer may arrive: values outside must be brought inside.
    virtual void GetVolume(int& volume) = 0;
    virtual void SetVolume(int volume) = 0;

    // The components of the presented service, or only those that are presented. The caller owns the list. The records
    // cross libraries with their strings: both sides must use the same C++ library.
    virtual std::vector<IVideoComponent> GetVideoComponents(bool activeOnly) = 0;
    virtual std::vector<IAudioComponent> GetAudioComponents(bool activeOnly) = 0;
    virtual std::vector<ISbtComponent> GetSubtitleComponents(bool activeOnly) = 0;
    // Video is chosen by its pid, the others by their index in the list of all. An unknown one changes nothing.
    virtual void SelectVideoComponent(unsigned short pid) = 0;
    virtual void SelectAudioComponent(unsigned int index) = 0;
    virtual void SelectSubtitleComponent(unsigned int index) = 0;
    virtual void UnselectVideoComponent(unsigned short pid) = 0;
    virtual void UnselectAudioComponent(unsigned int index) = 0;
    virtual void UnselectSubtitleComponent(unsigned int index) = 0;

protected:
    virtual ~IBroadcastPlayer();
};
