// Decodes one service to pictures and sound: a GStreamer pipeline that is fed with packets.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "television/Television.h"
#include "television/tables/Components.h"

typedef struct _GstElement GstElement;
typedef struct _GstPad GstPad;
typedef struct _GstBin GstBin;

namespace television {

// What of a multiplex is decoded.
struct DecoderPlan {
    std::uint16_t sid = 0;
    std::optional<Component> video, audio;
    std::string audioSink = "fakesink";  // the element that plays sound
    int volume = 100;
};

// Called on threads of the pipeline's own; must not wait for the thread that owns the decoder.
struct DecoderEvents {
    std::function<void(std::shared_ptr<const Picture>)> picture;
    std::function<void()> firstSound;
    std::function<void(const std::string& text, bool soundDevice)> fault;
};

class Decoder {
public:
    Decoder(const DecoderPlan& plan, DecoderEvents events);
    // When this returns no event is in progress or will come.
    ~Decoder();
    Decoder(const Decoder&) = delete;
    Decoder& operator=(const Decoder&) = delete;

    void Feed(std::vector<std::uint8_t>&& packets);
    void SetVolume(int volume);

private:
    struct Callbacks;

    void BuildInput(std::uint16_t sid);
    void BuildVideo(const Component& video);
    void BuildAudio(const Component& audio, const DecoderPlan& plan);
    std::vector<GstElement*> Chain(const std::vector<std::string>& factories);
    void LinkPad(GstPad* pad);

    DecoderEvents m_events;
    GstElement* m_pipeline = nullptr;
    GstElement* m_source = nullptr;
    GstElement* m_volume = nullptr;
    // The first elements of the chains and the PIDs that they take.
    struct Branch {
        std::uint16_t pid;
        GstElement* first;
    };
    std::vector<Branch> m_branches;
};

// Loads the elements that decoding needs, so that the first channel change need not.
void LoadElements();

// The element that plays sound on this machine; "fakesink" when there is no sound device.
std::string FindAudioSink();

}  // namespace television
