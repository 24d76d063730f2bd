// The demonstration: what the keys do, and what happens when the video/broadcast object reports something.
(function () {
    "use strict";

    var PRESENTING = 2;
    var VOLUME_STEP = 5;
    var PLACES = [
        {},
        { left: "640px", top: "288px", width: "576px", height: "324px" },
        { left: "64px", top: "402px", width: "416px", height: "234px" },
        { left: "144px", top: "54px", width: "992px", height: "558px" }
    ];
    var ERRORS = {
        0: "This receiver does not support the channel", 1: "No signal", 3: "Blocked by parental control",
        4: "The channel is scrambled", 7: "A recording is running", 10: "There is no other channel",
        11: "The receiver or the screen is in use", 12: "There is no such channel", 100: "The channel cannot be shown"
    };
    var NOTES = { 1: "no signal", 3: "blocked", 4: "scrambled" };

    var video = document.getElementById("video");
    var place = 0;
    var wanted = null;  // the channel that was asked for and is not there yet
    var present = null;
    var notes = {};  // what was wrong with a channel the last time that it was watched, or that it is new, by its ccid
    var known = [];  // the channels that there were before the list changed
    var shownChoices = "";

    function currentChannel() {
        return wanted || video.currentChannel;
    }

    function noteOf(channel) {
        return notes[channel.ccid] || (channel.locked ? "locked" : "") ||
            (channel.channelType === channel.TYPE_RADIO ? "radio" : "");
    }

    function refreshChannels() {
        var channels = Channels.list(video);
        var channel = currentChannel();
        View.showChannels(channels, Channels.indexOf(channels, channel), noteOf);
        View.showChannel(channel);
    }

    function note(channel, error) {
        if (channel) {
            notes[channel.ccid] = error === undefined ? "" : NOTES[error] || "";
            refreshChannels();
        }
    }

    function reportList(channels, sign) {
        channels.forEach(function (channel) {
            notes[channel.ccid] = sign === "+" ? "new" : "";
            View.addEvent("ChannelListUpdate", sign + " " + nameOf(channel));
        });
    }

    // A channel that has come or gone stands out; another name or number shows by itself.
    function listChanged() {
        var now = Channels.copy(video);
        reportList(Channels.missing(known, now), "\u2212");
        reportList(Channels.missing(now, known), "+");
        known = now;
        refreshChannels();
    }

    // Without a player there are no programmes.
    function refreshProgrammes() {
        var programmes = video.programmes;
        var count = programmes ? programmes.length : 0;
        present = count > 0 ? programmes.item(0) : null;
        View.showRating(present && present.parentalRatings.length > 0 ? present.parentalRatings.item(0).name : undefined);
        View.showProgrammes(present, count > 1 ? programmes.item(1) : null);
        View.showProgress(present);
    }

    function choose(type, item) {
        Components.choose(video, type, item);
        View.addEvent("Chosen", Components.names[type] + " " + item.label);
        refreshComponents();
    }

    function chooseNext(type) {
        var next = Components.next(video, type);
        if (next) {
            choose(type, next);
        }
    }

    function activeLabels(items) {
        return items.filter(function (item) { return item.active && item.component; }).map(function (item) {
            return item.label;
        });
    }

    // The broadcast may change its components without an event: what has not changed is left alone.
    function refreshComponents() {
        var all = Components.names.map(function (name, type) { return Components.choices(video, type); });
        var text = JSON.stringify(all);
        if (text === shownChoices) {
            return;
        }
        shownChoices = text;
        all.forEach(function (items, type) {
            View.showChoices(Components.names[type], items, choose.bind(null, type));
        });
        View.fitChoices();
        View.showPresented(activeLabels(all[1]).concat(activeLabels(all[2])).join(" / "));
    }

    function refreshState() {
        View.showState(video.playState);
        View.showVolume(video.getVolume());
        refreshComponents();
    }

    function refresh() {
        refreshChannels();
        refreshProgrammes();
        refreshState();
    }

    function nameOf(channel) {
        return channel ? channel.name || channel.ccid : "no channel";
    }

    function errorText(code) {
        return code === undefined ? "" : ERRORS[code] || "Error " + code;
    }

    // What stands in place of the picture, where there is none.
    function messageFor(state, error) {
        var channel = video.currentChannel;
        if (error !== undefined) {
            return errorText(error);
        }
        if (state === PRESENTING) {
            return channel && channel.channelType === channel.TYPE_RADIO ? "Radio" : "";
        }
        return { 0: "Released", 1: "", 3: "Stopped" }[state];
    }

    function select(channel) {
        if (channel) {
            wanted = channel;
            refreshChannels();
            video.setChannel(channel);
        }
    }

    function selectNumber(number) {
        var channel = Channels.withNumber(video, number);
        if (channel) {
            select(channel);
        } else {
            View.addEvent("No channel", "number " + number);
        }
    }

    function step(steps) {
        select(Channels.neighbour(video, currentChannel(), steps));
    }

    function changeVolume(by) {
        var volume = video.getVolume();
        if (volume !== undefined) {
            video.setVolume(Math.max(0, Math.min(100, volume + by)));
            View.showVolume(video.getVolume());
        }
    }

    function toggleFullScreen() {
        video.setFullScreen(!video.fullscreen);
    }

    function move() {
        place = (place + 1) % PLACES.length;
        View.placeStage(PLACES[place]);
    }

    function release() {
        video.release();
        refresh();
    }

    // The object reports: handler properties get the values one by one, listeners get them in an event.
    video.onPlayStateChange = function (state, error) {
        View.addEvent("PlayStateChange", View.states[state] + (error === undefined ? "" : ", error " + error));
        View.showMessage(messageFor(state, error));
        if (state === PRESENTING || NOTES[error]) {
            note(video.currentChannel, error);
        }
        refreshState();
    };

    video.onChannelChangeSucceeded = function (channel) {
        View.addEvent("ChannelChangeSucceeded", nameOf(channel));
        wanted = null;
        refresh();
        listenForStreamEvents();
    };

    video.addEventListener("ChannelChangeError", function (event) {
        View.addEvent("ChannelChangeError", nameOf(event.channel) + ", error " + event.errorState);
        View.showMessage(errorText(event.errorState));
        wanted = null;
        refresh();
    }, false);

    video.addEventListener("ProgrammesChanged", function () {
        refreshProgrammes();
        View.addEvent("ProgrammesChanged", present ? present.name : "none");
    });

    video.addEventListener("FullScreenChange", function () {
        View.addEvent("FullScreenChange", video.fullscreen ? "on" : "off");
        View.showFull(video.fullscreen);
    });

    function reportRating(event) {
        View.addEvent(event.type, event.rating && event.rating.length > 0 ? "age " + event.rating.item(0).name : "");
        refreshProgrammes();
    }
    video.addEventListener("ParentalRatingChange", reportRating, false);
    video.addEventListener("ParentalRatingError", reportRating, false);

    video.addEventListener("DrmRightsError", function (event) {
        View.addEvent("DrmRightsError", event.errorState === 2 ? "rights are valid" : "no rights");
    });

    // One channel announces a "tick" each second, and a "message" when the television is asked for one. Where there are
    // none, or none any more, the listener is told so and is not called again.
    function reportTick(event) {
        View.showTick(event.status === "trigger" ? Number(event.text) : undefined);
    }

    function reportMessage(event) {
        if (event.status === "trigger") {
            View.addEvent("StreamEvent", event.name + " " + event.text);
        }
        View.showBroadcastMessage(event.status === "trigger" ? event.text : "");
    }

    function listenForStreamEvents() {
        video.removeStreamEventListener("events.xml", "tick", reportTick);
        video.removeStreamEventListener("events.xml", "message", reportMessage);
        video.addStreamEventListener("events.xml", "tick", reportTick);
        video.addStreamEventListener("events.xml", "message", reportMessage);
    }

    var KEYS = {};
    KEYS[VK_UP] = function () { step(-1); };
    KEYS[VK_DOWN] = function () { step(1); };
    KEYS[VK_LEFT] = KEYS[VK_VOLUME_DOWN] = function () { changeVolume(-VOLUME_STEP); };
    KEYS[VK_RIGHT] = KEYS[VK_VOLUME_UP] = function () { changeVolume(VOLUME_STEP); };
    KEYS[VK_CHANNEL_UP] = function () { wanted = null; video.nextChannel(); };
    KEYS[VK_CHANNEL_DOWN] = function () { wanted = null; video.prevChannel(); };
    KEYS[VK_ENTER] = toggleFullScreen;
    KEYS[VK_MENU] = function () { chooseNext(video.COMPONENT_TYPE_VIDEO); };
    KEYS[VK_INFO] = function () { chooseNext(video.COMPONENT_TYPE_AUDIO); };
    KEYS[VK_SUBTITLE] = function () { chooseNext(video.COMPONENT_TYPE_SUBTITLE); };
    KEYS[VK_RED] = move;
    KEYS[VK_GREEN] = function () { video.stop(); };
    KEYS[VK_YELLOW] = function () { video.bindToCurrentChannel(); refresh(); };
    KEYS[VK_BLUE] = release;

    document.addEventListener("keydown", function (event) {
        var digit = event.keyCode - VK_0;
        if (digit >= 0 && digit <= 9) {
            Channels.type(String(digit), View.showTypedNumber, selectNumber);
        } else if (KEYS[event.keyCode]) {
            KEYS[event.keyCode]();
        } else {
            return;
        }
        event.preventDefault();
    }, false);

    function start() {
        var application = document.getElementById("applicationManager").getOwnerApplication(document);
        var keyset = application.privateData.keyset;
        keyset.setValue(keyset.RED + keyset.GREEN + keyset.YELLOW + keyset.BLUE + keyset.NAVIGATION + keyset.NUMERIC +
                        keyset.INFO + keyset.OTHER);
        application.show();
        video.bindToCurrentChannel();
        known = Channels.copy(video);
        video.getChannelConfig().onChannelListUpdate = listChanged;
        View.showTimetable(Channels.isDemonstration(known));
        refresh();
        listenForStreamEvents();
        View.showTick();
        View.showClock();
        setInterval(function () {
            View.showClock();
            View.showProgress(present);
            refreshComponents();
        }, 1000);
    }

    start();
}());
