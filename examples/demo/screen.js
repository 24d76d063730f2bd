// Puts things on the screen; knows nothing of the video/broadcast object.
var View = (function () {
    "use strict";

    var ROWS = 10;
    var EVENTS = 6;
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

    function channelRow(channel, current, note) {
        var row = make("li", current ? "current" : "", "");
        row.appendChild(make("span", "number", numberOf(channel)));
        row.appendChild(make("span", note ? "name noted" : "name", channel.name));
        row.appendChild(make("span", "note " + note, note));
        return row;
    }

    // As many rows as fit, the current one among them. `noteOf` has a word for a channel, or an empty text.
    function showChannels(channels, currentIndex, noteOf) {
        var first = Math.max(0, Math.min(currentIndex - Math.floor(ROWS / 2), channels.length - ROWS));
        var rows = element("channel-list");
        var i;
        rows.textContent = "";
        for (i = first; i < channels.length && i < first + ROWS; ++i) {
            rows.appendChild(channelRow(channels[i], i === currentIndex, noteOf(channels[i])));
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

    function chip(item, choose) {
        var made = make("span", item.active ? "choice active" : "choice", item.label);
        made.addEventListener("click", function () { choose(item); }, false);
        return made;
    }

    // What there is to choose of a kind; what is presented stands out.
    function showChoices(kind, items, choose) {
        var chips = element(kind + "-choices");
        chips.textContent = "";
        items.forEach(function (item) { chips.appendChild(chip(item, choose)); });
        if (items.length === 0) {
            chips.appendChild(make("span", "none", "none"));
        }
    }

    // Where there is much to choose, the names of the kinds give way.
    function fitChoices() {
        var components = element("components");
        components.className = "panel";
        if (components.scrollWidth > components.clientWidth) {
            components.className = "panel dense";
        }
    }

    function showTimes(id, programme) {
        var times = programme ? clockTime(programme.startTime) + " \u2013 " +
            clockTime(programme.startTime + programme.duration) : "";
        setText(id, times);
    }

    // The age from which a programme is for, where it has one.
    function showRating(age) {
        show("rating", age === undefined ? "" : "from " + age);
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

    // The second of the minute that the broadcast announces; undefined where it announces none.
    function showTick(second) {
        setText("tick", second === undefined ? "none on this channel" : "tick " + second);
        element("tick").className = second === undefined ? "silent" : "";
        element("tick-done").style.width = (second === undefined ? 0 : second / 59 * 100) + "%";
    }

    function showFull(full) {
        document.body.classList[full ? "add" : "remove"]("full");
    }

    // What the demonstration multiplex does by itself is worth a word only where it is received.
    function showTimetable(shown) {
        document.body.classList[shown ? "add" : "remove"]("demonstration");
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
        showChoices: showChoices,
        fitChoices: fitChoices,
        showPresented: function (text) { setText("presented", text); },
        showRating: showRating,
        showProgrammes: showProgrammes,
        showProgress: showProgress,
        showClock: showClock,
        showMessage: function (text) { show("message", text); },
        showTypedNumber: function (text) { show("typed-number", text); },
        showFull: showFull,
        showTimetable: showTimetable,
        placeStage: placeStage,
        showTick: showTick,
        showBroadcastMessage: function (text) { setText("broadcast-message", text); },
        addEvent: addEvent
    };
}());
