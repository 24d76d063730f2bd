// The television in software, as the program around it (the TV browser) sees it: start and stop, the picture, the
// services, the viewer's remote control, and what the platform must know about the page.
//
// The plug-in sees none of this: it talks to the interfaces in platform/, which this library implements.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/TPTRect.h"
#include "platform/visibility.h"

namespace television {

struct Configuration {
    // Files or URLs with an MPEG transport stream each, the multiplexes of one network; none: the demonstration's.
    std::vector<std::string> streams;
    std::string demonstration;  // the file with the demonstration's audio and video
    bool timetable = true;      // false: the demonstration's services come, go and become clear by stimuli only
    std::optional<std::int64_t> demonstrationTime;  // its clock at the start, seconds since 1970; none: the machine's
    bool sound = true;          // false: decode sound, play it to nobody
    std::string soundFile;      // in place of a sound device: 16-bit little-endian samples, 48,000 pairs a second
    std::string audioLanguage;  // the viewer's preferred one, three letters; empty: the service's first
    std::string country;        // the viewer's, three letters, of which ratings are told; empty: the first one's
    std::string pin = "0000";   // that opens the parental lock
};

enum class ServiceType { Television = 0, Radio = 1, Other = 2 };

struct Service {
    unsigned int id = 0;  // the channel id of the platform interfaces; stable while the program runs
    int idType = 0;       // OIPF DAE, clause 7.13.11.1
    std::uint16_t onid = 0, nid = 0, tsid = 0, sid = 0;
    int number = 0;  // logical channel number, 0 when the stream gives none
    ServiceType type = ServiceType::Television;
    std::string name;      // UTF-8
    std::string provider;  // UTF-8
    std::string dsd;       // the delivery system descriptor's bytes, tag and length included; empty when unknown
    bool hd = false;
    bool described = false;  // by the SDT; else type, name, provider and hd are what it said last, or made up
    bool scrambled = false;
    bool hidden = false;
    bool locked = false;  // by the parental lock, because of the present programme
};

struct ParentalRating {
    std::string country;  // three letters
    std::uint8_t rating = 0;
};

struct Programme {
    unsigned int channelId = 0;
    std::uint16_t eventId = 0;
    std::string name, description, longDescription;  // UTF-8
    std::int64_t startTime = 0;                      // seconds since 1970, UTC
    std::int64_t duration = 0;                       // seconds
    std::vector<ParentalRating> ratings;
    std::vector<std::string> descriptors;  // raw, tag and length included
};

// A decoded picture: 32 bits a pixel, blue green red and an unused byte in memory.
struct Picture {
    const std::uint8_t* pixels = nullptr;
    int width = 0, height = 0, stride = 0;
    double aspectRatio = 16.0 / 9.0;  // of the displayed picture
    std::shared_ptr<void> owner;      // keeps the pixels
};

// Subtitles that lie over the picture.
struct Subtitles {
    struct Part {
        int x = 0, y = 0, width = 0, height = 0;
        std::vector<std::uint32_t> pixels;  // alpha, red, green, blue from the highest byte on; premultiplied
    };
    int width = 0, height = 0;  // of the display that the parts are placed on; it covers the picture
    std::vector<Part> parts;
};

// Called on threads of the television's; must return at once.
struct Observer {
    std::function<void()> pictureChanged;              // there is a new picture, or none any more; or new subtitles
    std::function<void()> layoutChanged;               // VideoRectangle answers differently
    std::function<void()> channelChanged;              // CurrentService answers differently
    std::function<void()> servicesChanged;             // Services answers differently, or one is locked or not any more
    std::function<void(const std::string& line)> log;  // what the television does, a line each
};

// How long the last channel change took, in milliseconds, for measurements.
struct TuneTimes {
    std::uint64_t count = 0;  // channel changes so far that came to a picture or sound
    double toFirstPicture = 0;
};

// What the television does beside showing a channel.
struct Condition {
    bool presented = false;  // the channel has a picture or sound
    bool mediaPlays = false, records = false;
    int volume = 0;  // 0 to 100
    bool muted = false;
};

// What Television::Stimulate takes: "NAME" or "NAME ARGUMENT".
struct StimulusUse {
    std::string name;
    std::string argument;  // what stands for it, "out|in"; empty: none is given
    std::string meaning;   // a phrase
};

class TVPLATFORM_API Television {
public:
    static Television& Instance();

    // Starts to receive and reads the tables. Returns when the services are known: nothing on success, else one
    // sentence that says what is wrong and what to do. `progress` is told, on the caller's thread, what is being read.
    std::optional<std::string> Start(const Configuration& configuration, const Observer& observer,
                                     const std::function<void(const std::string&)>& progress = {});
    // Stops everything; all threads of the television have ended when it returns.
    void Stop();

    // All threads. In the order of the logical channel numbers, hidden services included.
    std::vector<Service> Services();
    // Also one that is not broadcast any more, as it was.
    std::optional<Service> FindService(unsigned int id);
    // What the television shows or is tuning to.
    std::optional<Service> CurrentService();
    // The present (first) and the following event, as far as the stream tells them.
    std::vector<Programme> Programmes(unsigned int id);

    // The video plane is 1920 by 1080. The rectangle that the picture is scaled to; the rest of the plane is black.
    static constexpr int kPlaneWidth = 1920, kPlaneHeight = 1080;
    TPTRect VideoRectangle();
    // The picture to show now, or null for black.
    std::shared_ptr<const Picture> CurrentPicture();
    // What lies over the picture, in the same rectangle, or null.
    std::shared_ptr<const Subtitles> CurrentSubtitles();
    TuneTimes LastTune();
    // How many milliseconds ago the last stream event came that somebody listens for; for measurements.
    double SinceStreamEvent();
    Condition TheCondition();

    // The viewer changes the channel with the remote control. A sentence that says why not, or nothing when it is done.
    std::optional<std::string> ViewerSelects(unsigned int id);
    std::optional<std::string> ViewerSelectsNext();
    std::optional<std::string> ViewerSelectsPrevious();

    // Whatever else happens to a television on a sofa, as a line: the name of a stimulus and what belongs to it. A
    // sentence that says what is wrong, or nothing when it is done. All threads; what comes of it is told later.
    std::optional<std::string> Stimulate(const std::string& line);
    static std::vector<StimulusUse> Stimuli();

    // The page: whether its application is broadcast related, and the origins inside its boundary.
    void PageOpened(bool broadcastRelated, const std::vector<std::string>& origins);
    // The page is gone: what its objects held (channel holds, keys, stream events) is given back; a player still
    // held too.
    void PageClosed();
    // True for a key that the plug-in was given for an object of the current page.
    bool IsKey(const std::string& key);

    // What the plug-in's log lines are compared with: 0 errors, 2 warnings, 3 traces, 4 details; -1 prints none.
    void SetDebugLevel(int level);

private:
    Television();
    ~Television();
};

}  // namespace television
