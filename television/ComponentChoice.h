// Which components of the presented service are presented: chosen by the page, else by what the viewer prefers.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "television/tables/Components.h"

namespace television {

class ComponentChoice {
public:
    // `language`: of sound, three letters or empty.
    explicit ComponentChoice(std::string language = {}) : m_language(std::move(language)) {}

    // For the next service nothing is chosen yet.
    void Reset() { m_types = {}; }
    // False, and nothing changes, when the service has no such component.
    bool Select(const std::vector<Component>& components, ComponentType type, unsigned int index);
    // False, and nothing changes, when this one is not presented.
    bool Unselect(const std::vector<Component>& components, ComponentType type, unsigned int index);
    // None when the service has none of this type, or none is wanted.
    std::optional<Component> Presented(const std::vector<Component>& components, ComponentType type) const;

private:
    struct OfType {
        std::optional<bool> wanted;  // by the page
        std::optional<unsigned int> index;
    };
    const OfType& Of(ComponentType type) const { return m_types[static_cast<std::size_t>(type)]; }
    OfType& Of(ComponentType type) { return m_types[static_cast<std::size_t>(type)]; }
    const Component* Default(const std::vector<Component>& components, ComponentType type) const;

    std::string m_language;
    std::array<OfType, 3> m_types;
};

// True for the same language, by the bibliographic or the terminology code (ISO 639-2), in any case.
bool IsSameLanguage(const std::string& one, const std::string& other);

}  // namespace television
