// What there is to choose on a channel: its pictures, sounds and subtitles, and which of them are presented.
var Components = (function () {
    "use strict";

    var PRESENTING = 2;
    var NAMES = ["video", "sound", "subtitles"];  // by the type's number

    // Empty without a player.
    function list(video, type) {
        return video.getComponents(type) || [];
    }

    function isActive(video, component) {
        return (video.getCurrentActiveComponents(component.type) || []).some(function (active) {
            return active.index === component.index;
        });
    }

    function aspect(ratio) {
        return { 1.33: "4:3", 1.78: "16:9" }[ratio] || (ratio === undefined ? "on" : ratio + ":1");
    }

    function label(component) {
        if (component.type === component.COMPONENT_TYPE_VIDEO) {
            return aspect(component.aspectRatio);
        }
        return (component.language || "und") + (component.audioDescription ? " AD" : "") +
            (component.hearingImpaired ? " HI" : "");
    }

    // The video and the subtitles can be switched off, the sound goes on.
    function canBeOff(type) {
        return type !== 1;
    }

    // What the viewer can choose of a type, in its order: { label, active, component }, without a component for "off".
    function choices(video, type) {
        var items = list(video, type).map(function (component) {
            return { label: label(component), active: isActive(video, component), component: component };
        });
        var none = items.every(function (item) { return !item.active; });
        if (items.length > 0 && canBeOff(type)) {
            items.push({ label: "off", active: none && video.playState === PRESENTING, component: null });
        }
        return items;
    }

    function choose(video, type, item) {
        if (item.component) {
            video.selectComponent(item.component);
            return;
        }
        choices(video, type).forEach(function (other) {
            if (other.active && other.component) {
                video.unselectComponent(other.component);
            }
        });
    }

    // The choice after the present one, round the end. Null where there is nothing to choose.
    function next(video, type) {
        var items = choices(video, type);
        var active = items.map(function (item) { return item.active; }).indexOf(true);
        return items.length > 1 ? items[(active + 1) % items.length] : null;
    }

    return { names: NAMES, choices: choices, choose: choose, next: next };
}());
