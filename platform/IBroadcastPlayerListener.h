// What the platform reports about the broadcast that a page's object controls.
//
// Implemented by the plug-in, called by the platform, on any thread of the platform's own, but never on the browser's
// main thread from inside a call of that object: a notification comes after the call that caused it returned, or from
// another thread. Calls queue a record and return at once; they may come at the same time on several threads.
//
// A listener may also be an ISASListener; reach it with dynamic_cast.
#pragma once

#include "platform/visibility.h"

// A channel id given to TuneSuccess, TuneFail, ServiceNotAvailable, ScrambledTune and ParentalRatingBlocked(id, false)
// carries a hold on it (IJSChannelCache) when it is not 0: the listener, or the page object made from it, gives the
// hold back. 0 means that no channel is named: the play state follows, but no channel is reported to the page.
class TVPLATFORM_API IBroadcastPlayerListener {
public:
    virtual ~IBroadcastPlayerListener();

    // Presentation is suspended (something else uses the decoder or the screen), and resumed.
    virtual void Suspend() = 0;
    virtual void Resume() = 0;
    // The television itself (the viewer, with the remote control) has begun to change the channel.
    virtual void ChannelChanged() = 0;
    // The channel is presented.
    virtual void TuneSuccess(unsigned int channelId) = 0;
    // The channel's transport stream cannot be received.
    virtual void TuneFail(unsigned int channelId) = 0;
    // The transport stream is received, but the service is not in it.
    virtual void ServiceNotAvailable(unsigned int channelId) = 0;
    // The present or following event of the presented service changed.
    virtual void ProgrammeChanged() = 0;
    // The present event's rating: the rating byte of the parental_rating_descriptor (ETSI EN 300 468, clause 6.2.28).
    virtual void ParentalRatingChanged(char rating) = 0;
    // The channel is blocked by the parental lock: while it was presented (`whilePresenting` true), or by a tune that
    // succeeded (false).
    virtual void ParentalRatingBlocked(unsigned int channelId, bool whilePresenting) = 0;
    virtual void ParentalRatingUnblocked(unsigned int channelId) = 0;
    // The signal was lost.
    virtual void NoSignal() = 0;
    // The presented channel became scrambled, by the given CA system (ETSI TS 101 162).
    virtual void Scrambled(unsigned short caSystemId) = 0;
    // A tune succeeded, to a channel that is scrambled.
    virtual void ScrambledTune(unsigned int channelId) = 0;
    // The presented channel became clear.
    virtual void Unscrambled(unsigned short caSystemId) = 0;
    // The place of the video must be worked out anew (the panel or the video's aspect ratio changed).
    virtual void UpdateLayout() = 0;
};
