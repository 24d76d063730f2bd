// The rules by which a component is found when the page has chosen none.
#include "television/ComponentChoice.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <string_view>
#include <utility>

namespace television {
namespace {

// The languages that ISO 639-2 gives two codes: bibliographic, terminology.
constexpr std::array<std::pair<std::string_view, std::string_view>, 20> kTwoCodes{{
    {"alb", "sqi"}, {"arm", "hye"}, {"baq", "eus"}, {"bur", "mya"}, {"chi", "zho"}, {"cze", "ces"}, {"dut", "nld"},
    {"fre", "fra"}, {"geo", "kat"}, {"ger", "deu"}, {"gre", "ell"}, {"ice", "isl"}, {"mac", "mkd"}, {"mao", "mri"},
    {"may", "msa"}, {"per", "fas"}, {"rum", "ron"}, {"slo", "slk"}, {"tib", "bod"}, {"wel", "cym"},
}};

std::string TerminologyCode(std::string code) {
    for (char& letter : code) letter = static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
    const auto found = std::find_if(kTwoCodes.begin(), kTwoCodes.end(), [&](auto& codes) { return codes.first == code; });
    return found == kTwoCodes.end() ? code : std::string(found->second);
}

const Component* Find(const std::vector<Component>& components, ComponentType type, unsigned int index) {
    for (const Component& component : components)
        if (component.type == type && component.index == index) return &component;
    return nullptr;
}

}  // namespace

bool IsSameLanguage(const std::string& one, const std::string& other) {
    return TerminologyCode(one) == TerminologyCode(other);
}

bool ComponentChoice::Select(const std::vector<Component>& components, ComponentType type, unsigned int index) {
    if (!Find(components, type, index)) return false;
    Of(type) = {true, index};
    return true;
}

bool ComponentChoice::Unselect(const std::vector<Component>& components, ComponentType type, unsigned int index) {
    const auto presented = Presented(components, type);
    if (!presented || presented->index != index) return false;
    Of(type).wanted = false;
    return true;
}

std::optional<Component> ComponentChoice::Presented(const std::vector<Component>& components,
                                                    ComponentType type) const {
    if (!Of(type).wanted.value_or(type != ComponentType::Subtitle)) return std::nullopt;
    const auto index = Of(type).index;
    const Component* chosen = index ? Find(components, type, *index) : nullptr;
    if (!chosen) chosen = Default(components, type);
    return chosen ? std::optional(*chosen) : std::nullopt;
}

// The first, but of sound rather one in the preferred language, and rather no audio description.
const Component* ComponentChoice::Default(const std::vector<Component>& components, ComponentType type) const {
    const Component* best = nullptr;
    int bestScore = -1;
    for (const Component& component : components) {
        if (component.type != type) continue;
        const bool preferred = type == ComponentType::Audio && !m_language.empty() &&
                               IsSameLanguage(component.language, m_language);
        const int score = 2 * preferred + !component.audioDescription;
        if (score > bestScore) {
            bestScore = score;
            best = &component;
        }
    }
    return best;
}

}  // namespace television
