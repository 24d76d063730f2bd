// What the page knows of channels: the list, where the current one is in it, and the digits that a viewer types.
var Channels = (function () {
    "use strict";

    var TYPING_TIME = 1500;  // milliseconds after the last digit
    var typed = "";
    var typingTimer = null;

    function list(video) {
        return video.getChannelConfig().channelList;
    }

    // Those of `channels` that `others` lacks.
    function missing(channels, others) {
        return channels.filter(function (channel) { return indexOf(others, channel) < 0; });
    }

    // The list as it is now: the object's own follows the stream.
    function copy(video) {
        return Array.prototype.slice.call(list(video));
    }

    // Whether these are the channels of the demonstration multiplex.
    function isDemonstration(channels) {
        return channels.length > 0 && channels[0].onid === 0xff01 && channels[0].tsid === 0x0401;
    }

    function indexOf(channels, channel) {
        var i;
        for (i = 0; channel && i < channels.length; ++i) {
            if (channels[i].ccid === channel.ccid) {
                return i;
            }
        }
        return -1;
    }

    // The channel so many steps down the list, round its end.
    function neighbour(video, channel, steps) {
        var channels = list(video);
        var index = indexOf(channels, channel);
        return channels.length > 0 ? channels[(index + steps + channels.length) % channels.length] : null;
    }

    function withNumber(video, number) {
        var channels = list(video);
        var i;
        for (i = 0; i < channels.length; ++i) {
            if (channels[i].majorChannel === number) {
                return channels[i];
            }
        }
        return null;
    }

    // Tells `show` what has been typed so far, and `choose` the number when no further digit comes.
    function type(digit, show, choose) {
        typed = (typed + digit).slice(-4);
        show(typed);
        clearTimeout(typingTimer);
        typingTimer = setTimeout(function () {
            var number = Number(typed);
            typed = "";
            show("");
            choose(number);
        }, TYPING_TIME);
    }

    return { list: list, copy: copy, missing: missing, isDemonstration: isDemonstration, indexOf: indexOf, neighbour: neighbour, withNumber: withNumber, type: type };
}());
