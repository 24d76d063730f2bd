#include "browser/host/adapter/ElementPlace.h"

#include <cmath>
#include <cstdlib>

#include "browser/host/adapter/Script.h"

namespace adapter {

namespace {

struct Offset {
    double x = 0;
    double y = 0;
};

// Lengths in computed style are texts like "12.5px".
double Pixels(const std::string& length) {
    return std::strtod(length.c_str(), nullptr);
}

ScriptObject WindowOf(const ScriptObject& element) {
    return element.Member("ownerDocument").Member("defaultView");
}

Offset Padding(const ScriptObject& element) {
    NPVariant argument{NPVariantType_Object, {}};
    argument.value.objectValue = element.Get();
    const ScriptObject style = WindowOf(element).Call("getComputedStyle", &argument, 1);
    return {Pixels(style.Text("paddingLeft")), Pixels(style.Text("paddingTop"))};
}

// From the top left of the element's view to the top left of its content.
std::optional<Offset> ContentOffset(const ScriptObject& element) {
    const ScriptObject rectangle = element.Call("getBoundingClientRect");
    const double width = rectangle.Number("width").value_or(0);
    const double height = rectangle.Number("height").value_or(0);
    if (width == 0 && height == 0) {
        return std::nullopt;
    }
    const Offset padding = Padding(element);
    return Offset{rectangle.Number("left").value_or(0) + element.Number("clientLeft").value_or(0) + padding.x,
                  rectangle.Number("top").value_or(0) + element.Number("clientTop").value_or(0) + padding.y};
}

}  // namespace

std::optional<Place> PlaceOnPage(NPP npp) {
    ScriptObject element = ElementOf(npp);
    std::optional<Offset> total = element ? ContentOffset(element) : std::nullopt;
    if (!total) {
        return std::nullopt;
    }
    for (ScriptObject frame = WindowOf(element).Member("frameElement"); frame;
         frame = WindowOf(frame).Member("frameElement")) {
        const Offset offset = ContentOffset(frame).value_or(Offset{});
        total->x += offset.x;
        total->y += offset.y;
    }
    return Place{static_cast<std::int32_t>(std::lround(total->x)), static_cast<std::int32_t>(std::lround(total->y))};
}

}  // namespace adapter
