// Programmes from the descriptors of events (ETSI EN 300 468, clauses 6.2.15, 6.2.28 and 6.2.37).
#include "television/tables/ProgrammeList.h"

#include <strings.h>

#include <algorithm>
#include <map>

#include "television/tables/DescriptorTags.h"
#include "television/tables/DvbText.h"

namespace television {
namespace {

constexpr std::size_t kLanguageSize = 3, kRatingSize = 4;

std::string Letters(const std::vector<std::uint8_t>& data, std::size_t at) {
    if (data.size() < at + kLanguageSize) return "";
    const auto from = data.begin() + static_cast<std::ptrdiff_t>(at);
    return {from, from + kLanguageSize};
}

// The code of a country has three letters, that of a group of countries three digits.
bool IsCountry(const std::string& code) {
    return std::all_of(code.begin(), code.end(), [](char c) {
        return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
    });
}

void ReadRatings(const Descriptor& descriptor, std::vector<ParentalRating>& ratings) {
    for (std::size_t at = 0; at + kRatingSize <= descriptor.data.size(); at += kRatingSize)
        if (const std::string country = Letters(descriptor.data, at); IsCountry(country))
            ratings.push_back({country, descriptor.data[at + kLanguageSize]});
}

std::vector<ParentalRating> RatingsOf(const Descriptors& descriptors) {
    std::vector<ParentalRating> ratings;
    for (const Descriptor& descriptor : descriptors)
        if (descriptor.tag == kParentalRatingTag) ReadRatings(descriptor, ratings);
    return ratings;
}

// Behind the items of an extended event.
std::string ReadExtendedText(const Descriptor& descriptor) {
    constexpr std::size_t kItemsLengthAt = 4;
    if (descriptor.data.size() <= kItemsLengthAt) return "";
    std::size_t at = kItemsLengthAt + 1 + descriptor.data[kItemsLengthAt];
    return ReadCountedText(descriptor.data, at);
}

// The parts of one language, in the order of their numbers: of the given one or, where it has none, of the first.
std::string JoinExtendedTexts(const Descriptors& descriptors, const std::string& language) {
    std::map<std::string, std::map<int, std::string>> parts;
    std::string first;
    for (const Descriptor& descriptor : descriptors) {
        if (descriptor.tag != kExtendedEventTag || descriptor.data.empty()) continue;
        const std::string letters = Letters(descriptor.data, 1);
        if (parts.empty()) first = letters;
        parts[letters].try_emplace(descriptor.data[0] >> 4, ReadExtendedText(descriptor));
    }
    std::string text;
    for (const auto& [number, part] : parts[parts.contains(language) ? language : first]) text += part;
    return text;
}

Programme Describe(const Event& event, unsigned int channelId) {
    Programme programme;
    programme.channelId = channelId;
    programme.eventId = event.id;
    programme.startTime = event.start;
    programme.duration = event.duration;
    programme.ratings = RatingsOf(event.descriptors);
    for (const Descriptor& descriptor : event.descriptors) programme.descriptors.push_back(Raw(descriptor));
    std::string language;
    if (const Descriptor* texts = Find(event.descriptors, kShortEventTag)) {
        language = Letters(texts->data, 0);
        std::size_t at = kLanguageSize;
        programme.name = ReadCountedText(texts->data, at);
        programme.description = ReadCountedText(texts->data, at);
    }
    programme.longDescription = JoinExtendedTexts(event.descriptors, language);
    return programme;
}

}  // namespace

std::vector<Programme> ListProgrammes(const Tables& tables, const Service& service) {
    std::vector<Programme> programmes;
    const auto events = tables.events.find(service.sid);
    if (events == tables.events.end()) return programmes;
    for (const Event& event : events->second) programmes.push_back(Describe(event, service.id));
    return programmes;
}

std::optional<std::uint8_t> RatingFor(const std::vector<ParentalRating>& ratings, const std::string& country) {
    if (ratings.empty()) return std::nullopt;
    const auto own = std::find_if(ratings.begin(), ratings.end(), [&](const ParentalRating& rating) {
        return strcasecmp(rating.country.c_str(), country.c_str()) == 0;
    });
    return own == ratings.end() ? ratings.front().rating : own->rating;
}

std::optional<std::uint8_t> PresentRating(const std::vector<Event>& events, const std::string& country) {
    const auto present = std::find_if(events.begin(), events.end(), [](const Event& event) { return !event.following; });
    return present == events.end() ? std::nullopt : RatingFor(RatingsOf(present->descriptors), country);
}

}  // namespace television
