// The tour: drives the page's video/broadcast object through its states and checks the order of the events.
//
// `tour` is the program's side: event(json), step(text), picture(left, top, width, height), done(ok, text).
(function (tour) {
    "use strict";

    var STEP_TIME = 10000;     // milliseconds for a step's events to come
    var PICTURE_TIME = 10000;  // and for a picture to be seen
    var QUIET_TIME = 500;      // after a step: whatever comes in it was not expected
    var POLL_TIME = 100;
    var UNREALIZED = 0, CONNECTING = 1, PRESENTING = 2, STOPPED = 3;
    var CHANNEL_NOT_FOUND = 12;
    var ID_DVB_T = 12;

    var video = null;
    var seen = [];
    var boundChannel = null;   // the channel that the television showed at first
    var nextChannel = null;    // the one after it
    var unknownChannel = null;

    // What a step expects of an event: a line that is printed when it fails, and the test itself.
    function playState(state, error) {
        return {
            text: "PlayStateChange(" + state + ", " + error + ")",
            matches: function (event) {
                return event.type === "PlayStateChange" && event.state === state && event.error === error;
            }
        };
    }

    // `isChannel` says whether the event's channel is the right one.
    function succeeded(isChannel) {
        return {
            text: "ChannelChangeSucceeded(the channel)",
            matches: function (event) {
                return event.type === "ChannelChangeSucceeded" && !!event.channel && isChannel(event.channel);
            }
        };
    }

    function failed(isChannel, error) {
        return {
            text: "ChannelChangeError(the channel, " + error + ")",
            matches: function (event) {
                return event.type === "ChannelChangeError" && event.errorState === error && isChannel(event.channel);
            }
        };
    }

    function isChannel(expected) {
        return function (channel) { return !!expected && channel.ccid === expected.ccid; };
    }

    function isOther(channel) {
        return !boundChannel || channel.ccid !== boundChannel.ccid;
    }

    var BOUND = [playState(CONNECTING, undefined), playState(PRESENTING, undefined)];

    function changed(isRight) {
        return BOUND.concat([succeeded(isRight)]);
    }

    function listed(channel) {
        var list = video.getChannelConfig().channelList;
        for (var i = 0; i < list.length; ++i) {
            if (list.item(i).ccid === channel.ccid) {
                return list.item(i);
            }
        }
        throw new Error("the channel list lacks the channel " + channel.name);
    }

    // A triplet that no channel of the list has.
    function unknownTriplet() {
        var list = video.getChannelConfig().channelList;
        var sid = 65000;
        for (var i = 0; i < list.length; ++i) {
            sid = list.item(i).sid === sid ? sid - 1 : sid;
        }
        return video.createChannelObject(ID_DVB_T, 65000, 65000, sid);
    }

    // Each step: what it does, and the events that it must bring, in their order.
    var STEPS = [
        {
            text: "bindToCurrentChannel()",
            run: function () { video.bindToCurrentChannel(); },
            expected: function () { return BOUND; },
            after: function () { boundChannel = video.currentChannel; }
        },
        {
            text: "nextChannel()",
            run: function () { video.nextChannel(); },
            expected: function () { return changed(isOther); },
            after: function (events) { nextChannel = events[2].channel; }
        },
        {
            text: "prevChannel()",
            run: function () { video.prevChannel(); },
            expected: function () { return changed(isChannel(boundChannel)); }
        },
        {
            text: "setChannel(a channel of the channel list)",
            run: function () { video.setChannel(listed(nextChannel), false); },
            expected: function () { return changed(isChannel(nextChannel)); },
            seesPicture: true
        },
        {
            text: "setChannel(createChannelObject(idType, onid, tsid, sid))",
            run: function () {
                video.setChannel(video.createChannelObject(boundChannel.idType, boundChannel.onid, boundChannel.tsid,
                    boundChannel.sid), false);
            },
            expected: function () { return changed(isChannel(boundChannel)); }
        },
        {
            text: "setChannel(an unknown triplet)",
            run: function () {
                unknownChannel = unknownTriplet();
                video.setChannel(unknownChannel, false);
            },
            expected: function () {
                return [failed(function (channel) { return channel === unknownChannel; }, CHANNEL_NOT_FOUND),
                    playState(UNREALIZED, CHANNEL_NOT_FOUND)];
            }
        },
        {
            text: "stop() without a channel changes nothing",
            run: function () { video.stop(); },
            expected: function () { return []; }
        },
        {
            text: "bindToCurrentChannel()",
            run: function () { video.bindToCurrentChannel(); },
            expected: function () { return BOUND; }
        },
        {
            text: "stop()",
            run: function () { video.stop(); },
            expected: function () { return [playState(STOPPED, undefined)]; }
        },
        {
            text: "bindToCurrentChannel()",
            run: function () { video.bindToCurrentChannel(); },
            expected: function () { return BOUND; },
            // A television that gave its tuner up meanwhile may report that it has tuned again.
            optional: function () { return succeeded(isChannel(boundChannel)); }
        },
        {
            text: "release()",
            run: function () { video.release(); },
            expected: function () { return [playState(UNREALIZED, undefined)]; }
        }
    ];

    function describeChannel(channel) {
        return channel ? { ccid: channel.ccid, name: channel.name, sid: channel.sid } : null;
    }

    function report(event) {
        var details = { source: "tour", type: event.type };
        if (event.type === "PlayStateChange") {
            details.state = event.state;
            details.error = event.error;   // left out when it is undefined
        } else {
            details.channel = describeChannel(event.channel);
        }
        if (event.type === "ChannelChangeError") {
            details.errorState = event.errorState;
        }
        tour.event(JSON.stringify(details));
    }

    // The event's values are read while it is delivered.
    function onEvent(event) {
        var copy = {
            type: event.type, state: event.state, error: event.error,
            channel: event.channel, errorState: event.errorState
        };
        seen.push(copy);
        report(copy);
    }

    function findVideo() {
        var objects = document.getElementsByTagName("object");
        for (var i = 0; i < objects.length; ++i) {
            if (/^video\/broadcast\b/i.test(objects[i].type) && objects[i].bindToCurrentChannel) {
                return objects[i];
            }
        }
        return null;
    }

    // Calls `then` once `condition` holds, `otherwise` when it has not held in `time`.
    function wait(condition, time, then, otherwise) {
        var end = Date.now() + time;
        (function look() {
            if (condition()) {
                then();
            } else if (Date.now() > end) {
                otherwise();
            } else {
                window.setTimeout(look, POLL_TIME);
            }
        }());
    }

    function fail(text) {
        tour.done(false, text);
    }

    function firstDifference(expected, optional) {
        if (optional && seen.length === expected.length + 1) {
            expected = expected.concat([optional]);
        }
        for (var i = 0; i < Math.max(expected.length, seen.length); ++i) {
            if (!expected[i]) {
                return seen[i].type + " came and was not expected";
            }
            if (!seen[i] || !expected[i].matches(seen[i])) {
                return expected[i].text + " was expected, " + (seen[i] ? "another event" : "nothing") + " came";
            }
        }
        return null;
    }

    function seePicture(then) {
        var reason = "";
        wait(function () {
            var place = video.getBoundingClientRect();
            reason = tour.picture(place.left, place.top, place.width, place.height);
            return reason === "";
        }, PICTURE_TIME, then, function () { fail("No picture is seen through the object: " + reason); });
    }

    function endStep(step, expected, index) {
        var difference = firstDifference(expected, step.optional && step.optional());
        if (difference) {
            return fail(step.text + ": " + difference + ".");
        }
        if (step.after) {
            step.after(seen);
        }
        var next = function () { runStep(index + 1); };
        return step.seesPicture ? seePicture(next) : next();
    }

    // The events expected must come, and then nothing more.
    function runStep(index) {
        var step = STEPS[index];
        if (!step) {
            return tour.done(true, "The events came in their order, and the picture was seen through the object.");
        }
        tour.step(step.text);
        seen = [];
        step.run();
        var expected = step.expected();
        var settle = function () { window.setTimeout(function () { guard(endStep)(step, expected, index); }, QUIET_TIME); };
        return wait(function () { return seen.length >= expected.length; }, STEP_TIME, settle, settle);
    }

    function guard(action) {
        return function () {
            try {
                action.apply(null, arguments);
            } catch (error) {
                fail("The tour met an exception: " + error.message + ".");
            }
        };
    }

    // The page may have bound the object itself: the tour starts from the beginning.
    function start() {
        ["ChannelChangeSucceeded", "ChannelChangeError", "PlayStateChange"].forEach(function (name) {
            video.addEventListener(name, guard(onEvent));
        });
        if (video.playState !== UNREALIZED) {
            tour.step("release() of what the page had bound");
            video.release();
        }
        wait(function () { return video.playState === UNREALIZED; }, STEP_TIME, guard(function () { runStep(0); }),
            function () { fail("release() did not bring the object back to its first state."); });
    }

    runStep = guard(runStep);
    wait(function () {
        video = findVideo();
        return !!video;
    }, STEP_TIME, guard(start), function () { fail("The page has no video/broadcast object that is on the screen."); });
}(this.__tour));
