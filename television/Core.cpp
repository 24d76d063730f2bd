// Switching the television on and off, and handing its one player out.
#include "television/Core.h"

#include <gst/gst.h>

#include <fstream>
#include <set>
#include <utility>

#include "television/Log.h"
#include "television/demonstration/DemonstrationSource.h"

namespace television {
namespace {

using demonstration::Broadcast;

// By the stream's clock, so that a busy machine leaves no second out; empty for the machine's.
demonstration::DemonstrationSource::WallClock ClockOf(const Configuration& configuration) {
    if (!configuration.demonstrationTime) return {};
    return [beginning = *configuration.demonstrationTime](std::int64_t streamTime) {
        return beginning + streamTime / kClockRate;
    };
}

// `broadcast` is null where the demonstration is not wanted.
std::unique_ptr<PacketSource> SourceOf(const Configuration& configuration, const std::string& stream,
                                       std::shared_ptr<Broadcast> broadcast, std::string& error) {
    if (!broadcast) return MakeSource(stream, error);
    return std::make_unique<demonstration::DemonstrationSource>(configuration.demonstration, std::move(broadcast),
                                                                ClockOf(configuration));
}

// Opens a stream; empty is the demonstration. A sentence when it cannot be opened.
std::optional<std::string> Open(const Configuration& configuration, const std::string& stream,
                                std::shared_ptr<Broadcast> broadcast, const TelevisionSet::Progress& progress,
                                std::vector<Input>& inputs) {
    std::string error;
    auto source = SourceOf(configuration, stream, std::move(broadcast), error);
    if (!source) return error;
    if (progress) progress("Opening " + (stream.empty() ? "the demonstration" : stream));
    if (auto fault = source->Open()) return fault;
    inputs.push_back({configuration.streams.size() > 1 ? stream : "", std::move(source)});
    return std::nullopt;
}

std::optional<std::string> OpenAll(const Configuration& configuration, std::shared_ptr<Broadcast> broadcast,
                                   const TelevisionSet::Progress& progress, std::vector<Input>& inputs) {
    if (broadcast) return Open(configuration, "", std::move(broadcast), progress, inputs);
    std::set<std::string> opened;
    for (const std::string& stream : configuration.streams) {
        if (!opened.insert(stream).second) return "\"" + stream + "\" is given twice: give each multiplex once.";
        if (auto fault = Open(configuration, stream, nullptr, progress, inputs)) return fault;
    }
    return std::nullopt;
}

// A sentence when the file for the sound cannot be written.
std::optional<std::string> ChooseSoundOutput(const Configuration& configuration, SoundOutput& output) {
    if (configuration.soundFile.empty()) {
        if (configuration.sound) output.element = FindAudioSink();
        return std::nullopt;
    }
    if (!std::ofstream(configuration.soundFile, std::ios::binary))
        return "The sound cannot be written to " + configuration.soundFile + ": name a file that can be written.";
    output.file = configuration.soundFile;
    return std::nullopt;
}

}  // namespace

Core& Core::Instance() {
    static auto& core = *new Core;
    return core;
}

std::shared_ptr<TelevisionSet> Core::Set() const {
    std::lock_guard lock(m_mutex);
    return m_set;
}

std::optional<std::string> Core::SwitchOn(const Configuration& configuration, const Observer& observer,
                                          const TelevisionSet::Progress& progress) {
    SwitchOff();
    gst_init(nullptr, nullptr);
    SetLogSink(observer.log);
    const bool demonstrates = configuration.streams.empty();
    const auto broadcast = demonstrates ? std::make_shared<Broadcast>(configuration.timetable) : nullptr;
    std::vector<Input> inputs;
    if (auto fault = OpenAll(configuration, broadcast, progress, inputs)) return fault;
    LoadElements();
    SoundOutput sound;
    if (auto fault = ChooseSoundOutput(configuration, sound)) return fault;
    auto set = std::make_shared<TelevisionSet>(m_gate, observer, sound, configuration.audioLanguage);
    set->SetDemonstration(broadcast);
    set->SetCountry(configuration.country);
    set->SetPin(configuration.pin);
    if (auto fault = set->Start(std::move(inputs), progress)) {
        set->Shutdown();
        return fault;
    }
    std::lock_guard lock(m_mutex);
    m_set = std::move(set);
    return std::nullopt;
}

void Core::SwitchOff() {
    GiveBackPlayer();
    m_gate.Set(nullptr);
    std::unique_lock lock(m_mutex);
    const auto set = std::exchange(m_set, nullptr);
    lock.unlock();
    if (set) set->Shutdown();
    SetLogSink({});
}

bool Core::TakePlayer() {
    std::lock_guard lock(m_mutex);
    return m_set && !std::exchange(m_playerHeld, true);
}

bool Core::GiveBackPlayer() {
    std::unique_lock lock(m_mutex);
    if (!std::exchange(m_playerHeld, false)) return false;
    const auto set = m_set;
    lock.unlock();
    m_gate.Set(nullptr);
    if (set) set->ThePresentation().Unbind();
    return true;
}

}  // namespace television
