// Decodes one service to pictures and sound: a GStreamer pipeline that is fed with packets.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "television/Television.h"
#include "television/stream/Renumbering.h"
#include "television/stream/TransportPacket.h"
#include "television/tables/Components.h"

typedef struct _GstElement GstElement;
typedef struct _GstPad GstPad;
typedef struct _GstBin GstBin;

namespace television {

// Where sound goes.
struct SoundOutput {
    std::string element = "fakesink";
    std::string file;  // in place of the element: samples are added to this file as they are heard
};

// What of a multiplex is decoded.
struct DecoderPlan {
    std::uint16_t sid = 0;
    std::optional<Component> video;
    std::vector<Component> sounds;  // all are decoded, one is heard
    std::optional<std::uint16_t> heard;  // its PID; none: silence
    std::set<std::uint16_t> subtitlePids;  // their data is handed out
    SoundOutput output;
    int volume = 100;
};

// Called on threads of the pipeline's own; must not wait for the thread that owns the decoder.
struct DecoderEvents {
    std::function<void(std::shared_ptr<const Picture>)> picture;
    std::function<void()> firstSound;
    // The data of a PES packet of subtitles, when its time has come.
    std::function<void(std::uint16_t pid, std::vector<std::uint8_t>&& data)> subtitle;
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
    // The component that is heard from now on, by its PID; none: silence. Pictures go on undisturbed.
    void Hear(std::optional<std::uint16_t> pid);

private:
    struct Callbacks;

    void BuildInput(std::uint16_t sid);
    void BuildVideo(const Component& video);
    void BuildSound(const DecoderPlan& plan);
    void BuildSubtitles(std::uint16_t pid);
    void BuildSoundBranch(const Component& sound);
    bool BuildSoundOutput(const DecoderPlan& plan);
    std::vector<GstElement*> Chain(const std::vector<std::string>& factories);
    void LinkPad(GstPad* pad);

    DecoderEvents m_events;
    std::uint16_t m_videoPid;
    Renumbering m_videoCount;
    GstElement* m_pipeline = nullptr;
    GstElement* m_source = nullptr;
    GstElement* m_selector = nullptr;  // of sound
    GstElement* m_volume = nullptr;
    // The first elements of the chains and the PIDs that they take.
    struct Branch {
        std::uint16_t pid;
        GstElement* first;
        GstPad* selectable = nullptr;  // the selector's pad, where the chain is one of sound
    };
    std::vector<Branch> m_branches;
    struct SubtitleSink {
        Decoder& decoder;
        std::uint16_t pid;
    };
    std::vector<std::unique_ptr<SubtitleSink>> m_subtitleSinks;
};

// Loads the elements that decoding needs, so that the first channel change need not.
void LoadElements();

// The element that plays sound on this machine; "fakesink" when there is no sound device.
std::string FindAudioSink();

}  // namespace television
