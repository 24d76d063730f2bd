// Puts things on the screen; knows nothing of the video/broadcast object.
var View = (function () {
    "use strict";

    var ROWS = 10;
    var EVENTS = 10;
    var STATES = ["unrealized", "connecting", "presenting", "stopped"];

    function element(id) {
        return document.getElementById(id);
    }

    function setText(id, text) {
        element(id).textContent = text;
    }

    function show(id, text) {
        setText(id, text);
        element(id).style.display = text ? "block" : "none";
    }

    function make(tag, className, text) {
        var made = document.createElement(tag);
        made.className = className;
        made.textContent = text;
        return made;
    }

    function twoDigits(number) {
        return (number < 10 ? "0" : "") + number;
    }

    function clockTime(seconds) {
        var date = new Date(seconds * 1000);
        return twoDigits(date.getHours()) + ":" + twoDigits(date.getMinutes());
    }

    function now() {
        return Date.now() / 1000;
    }

    function numberOf(channel) {
        return channel.majorChannel === undefined ? "\u2013" : String(channel.majorChannel);
    }

    function channelRow(channel, current) {
        var row = make("li", current ? "current" : "", "");
        row.appendChild(make("span", "number", numberOf(channel)));
        row.appendChild(document.createTextNode(channel.name));
        return row;
    }

    // As many rows as fit, the current one among them.
    function showChannels(channels, currentIndex) {
        var first = Math.max(0, Math.min(currentIndex - Math.floor(ROWS / 2), channels.length - ROWS));
        var rows = element("channel-list");
        var i;
        rows.textContent = "";
        for (i = first; i < channels.length && i < first + ROWS; ++i) {
            rows.appendChild(channelRow(channels[i], i === currentIndex));
        }
    }

    function showChannel(channel) {
        setText("banner-number", channel ? numberOf(channel) : "");
        setText("banner-name", channel ? channel.name : "No channel");
    }

    function showState(state) {
        setText("play-state", STATES[state]);
        element("play-state").className = STATES[state];
    }

    function showVolume(volume) {
        element("volume-level").style.width = (volume === undefined ? 0 : Math.max(0, Math.min(100, volume))) + "%";
    }

    // The languages of a channel's sound, where there is a choice; the one that is heard stands out.
    function showSounds(sounds, isHeard) {
        var chips = element("sounds");
        chips.textContent = "";
        if (sounds.length > 1) {
            sounds.forEach(function (sound) {
                chips.appendChild(make("span", isHeard(sound) ? "heard" : "", sound.language || "?"));
            });
        }
    }

    function showTimes(id, programme) {
        var times = programme ? clockTime(programme.startTime) + " \u2013 " +
            clockTime(programme.startTime + programme.duration) : "";
        setText(id, times);
    }

    function showProgrammes(present, following) {
        setText("present-title", present ? present.name : "No programme information");
        setText("present-text", present ? present.longDescription || present.description : "");
        showTimes("present-times", present);
        setText("following-title", following ? "Next: " + following.name : "");
        showTimes("following-times", following);
    }

    function showProgress(programme) {
        var part = programme ? (now() - programme.startTime) / programme.duration : 0;
        element("progress-done").style.width = Math.max(0, Math.min(100, part * 100)) + "%";
    }

    function showClock() {
        setText("clock", clockTime(now()));
    }

    function addEvent(type, detail) {
        var rows = element("event-list");
        var row = make("li", type, "");
        row.appendChild(make("span", "what", type));
        row.appendChild(make("span", "detail", detail));
        rows.insertBefore(row, rows.firstChild);
        while (rows.childNodes.length > EVENTS) {
            rows.removeChild(rows.lastChild);
        }
    }

    // For an event that comes all the time: the newest of its type takes the place of the one before.
    function keepEvent(type, detail) {
        var before = element("event-list").getElementsByClassName(type);
        if (before.length > 0) {
            before[0].parentNode.removeChild(before[0]);
        }
        addEvent(type, detail);
    }

    function showFull(full) {
        document.body.className = full ? "full" : "";
    }

    // An empty place is the one that the style sheet gives.
    function placeStage(place) {
        var stage = element("stage");
        stage.className = place.left ? "overlapping" : "";
        ["left", "top", "width", "height"].forEach(function (name) {
            stage.style[name] = place[name] || "";
        });
    }

    return {
        states: STATES,
        showChannels: showChannels,
        showChannel: showChannel,
        showState: showState,
        showVolume: showVolume,
        showSounds: showSounds,
        showProgrammes: showProgrammes,
        showProgress: showProgress,
        showClock: showClock,
        showMessage: function (text) { show("message", text); },
        showTypedNumber: function (text) { show("typed-number", text); },
        showFull: showFull,
        placeStage: placeStage,
        addEvent: addEvent,
        keepEvent: keepEvent
    };
}());
