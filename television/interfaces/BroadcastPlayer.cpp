// The player's operations: each goes to the set that is switched on, and does nothing when there is none.
#include "television/interfaces/BroadcastPlayer.h"

#include "television/Core.h"
#include "television/Log.h"
#include "television/interfaces/ChannelCache.h"
#include "television/tables/DeliverySystem.h"

namespace television {
namespace {

// What GetChannelFromDSD answers.
enum DsdResult : int { kFound = 0, kMalformed = 1, kUnsupported = 2, kUndecided = 3 };

bool IsDvb(int idType) { return idType == -1 || (idType >= kFirstDvbIdType && idType <= kLastDvbIdType); }

template <class Record>
std::vector<Record> List(ComponentType type, bool activeOnly) {
    std::vector<Record> records;
    const auto set = Core::Instance().Set();
    if (!set) return records;
    for (const Component& component : set->Directory().RouteTo(set->ThePresentation().Selected()).components) {
        const bool active = set->ThePresentation().Presents(component);
        if (component.type != type || (activeOnly && !active)) continue;
        const auto aspect = type == ComponentType::Video && active ? set->TheScreen().AspectRatio() : std::nullopt;
        records.emplace_back(ArgumentText(component, aspect, active));
    }
    return records;
}

using Choose = bool (Presentation::*)(ComponentType, unsigned int);

void ChooseByIndex(Choose choose, ComponentType type, unsigned int index) {
    const auto set = Core::Instance().Set();
    if (set && !(set->ThePresentation().*choose)(type, index))
        Log("The choice of component " + std::to_string(index) + " changed nothing: there is none, or it was so.");
}

void ChooseByPid(Choose choose, ComponentType type, unsigned short pid) {
    const auto set = Core::Instance().Set();
    if (!set) return;
    for (const Component& component : set->Directory().RouteTo(set->ThePresentation().Selected()).components)
        if (component.type == type && component.pid == pid) return ChooseByIndex(choose, type, component.index);
    Log("The choice of PID " + std::to_string(pid) + " changed nothing: the service has no such video.");
}

// Only what is drawn can be chosen.
void ChooseSubtitle(Choose choose, unsigned int index) {
    const auto set = Core::Instance().Set();
    if (!set) return;
    for (const Component& component : set->Directory().RouteTo(set->ThePresentation().Selected()).components)
        if (component.type == ComponentType::Subtitle && component.index == index && !IsDrawn(component))
            return Log("The choice of subtitles changed nothing: this television draws no teletext.");
    ChooseByIndex(choose, ComponentType::Subtitle, index);
}

}  // namespace

BroadcastPlayer& BroadcastPlayer::ThePlayer() {
    static auto& player = *new BroadcastPlayer;
    return player;
}

void BroadcastPlayer::SetListener(IBroadcastPlayerListener* listener) { Core::Instance().Gate().Set(listener); }

void BroadcastPlayer::BindToCurrentChannel() {
    const auto set = Core::Instance().Set();
    if (!set) return;
    set->ThePresentation().Bind();
    set->TheResources().PageBound();
}

void BroadcastPlayer::Stop() {
    if (const auto set = Core::Instance().Set()) set->ThePresentation().Stop();
}

void BroadcastPlayer::StopChannel() {
    if (const auto set = Core::Instance().Set()) set->ThePresentation().StopChannel();
}

bool BroadcastPlayer::GetChannel(unsigned int& channelId) {
    const auto set = Core::Instance().Set();
    const unsigned int id = set ? set->ThePresentation().Selected() : 0;
    if (id == 0) return false;
    channelId = ChannelCache::TheCache().Hold(id);
    return true;
}

bool BroadcastPlayer::SetChannel(unsigned int channelId, bool) {
    const auto set = Core::Instance().Set();
    return set && set->ThePresentation().SelectByPage(channelId);
}

bool BroadcastPlayer::PrevChannel() {
    const auto set = Core::Instance().Set();
    return set && set->ThePresentation().StepByPage(-1);
}

bool BroadcastPlayer::NextChannel() {
    const auto set = Core::Instance().Set();
    return set && set->ThePresentation().StepByPage(1);
}

bool BroadcastPlayer::GetChannelFromTriplet(int idType, int onid, int tsid, int sid, unsigned int& channelId) {
    channelId = 0;
    const auto set = Core::Instance().Set();
    const auto service = set && IsDvb(idType) ? set->Directory().FindTriplet(onid, tsid, sid) : std::nullopt;
    if (!service) return false;
    channelId = ChannelCache::TheCache().Hold(service->id);
    return true;
}

int BroadcastPlayer::GetChannelFromDSD(int idType, const std::string& dsd, int sid, unsigned int& channelId) {
    DeliverySystem wanted;
    const DsdFault fault = ParseDeliverySystem(dsd, wanted);
    if (fault == DsdFault::Malformed) return kMalformed;
    const auto set = Core::Instance().Set();
    if (fault == DsdFault::Unsupported || !IsDvb(idType) || !set) return kUnsupported;
    std::optional<Service> service;
    const Delivery delivery = set->Directory().FindDelivered(wanted, sid, service);
    if (delivery != Delivery::Found) return delivery == Delivery::OtherKind ? kUnsupported : kUndecided;
    channelId = ChannelCache::TheCache().Hold(service->id);
    return kFound;
}

void BroadcastPlayer::SetVideoWindow(TPTRect& window) {
    if (const auto set = Core::Instance().Set()) set->TheScreen().SetWindow(window);
}

void BroadcastPlayer::SetFullScreenVideo() {
    if (const auto set = Core::Instance().Set()) set->TheScreen().SetFullScreen();
}

void BroadcastPlayer::GetVolume(int& volume) {
    if (const auto set = Core::Instance().Set()) volume = set->ThePresentation().Volume();
}

void BroadcastPlayer::SetVolume(int volume) {
    if (const auto set = Core::Instance().Set()) set->ThePresentation().SetVolume(volume);
}

std::vector<IVideoComponent> BroadcastPlayer::GetVideoComponents(bool activeOnly) {
    return List<IVideoComponent>(ComponentType::Video, activeOnly);
}

std::vector<IAudioComponent> BroadcastPlayer::GetAudioComponents(bool activeOnly) {
    return List<IAudioComponent>(ComponentType::Audio, activeOnly);
}

std::vector<ISbtComponent> BroadcastPlayer::GetSubtitleComponents(bool activeOnly) {
    return List<ISbtComponent>(ComponentType::Subtitle, activeOnly);
}

void BroadcastPlayer::SelectVideoComponent(unsigned short pid) {
    ChooseByPid(&Presentation::SelectComponent, ComponentType::Video, pid);
}

void BroadcastPlayer::SelectAudioComponent(unsigned int index) {
    ChooseByIndex(&Presentation::SelectComponent, ComponentType::Audio, index);
}

void BroadcastPlayer::SelectSubtitleComponent(unsigned int index) {
    ChooseSubtitle(&Presentation::SelectComponent, index);
}

void BroadcastPlayer::UnselectVideoComponent(unsigned short pid) {
    ChooseByPid(&Presentation::UnselectComponent, ComponentType::Video, pid);
}

void BroadcastPlayer::UnselectAudioComponent(unsigned int index) {
    ChooseByIndex(&Presentation::UnselectComponent, ComponentType::Audio, index);
}

void BroadcastPlayer::UnselectSubtitleComponent(unsigned int index) {
    ChooseSubtitle(&Presentation::UnselectComponent, index);
}

}  // namespace television
