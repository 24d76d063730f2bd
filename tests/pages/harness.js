// What a page test is written with: test(), a record of the object's events, and assertions.
//
// A page test is one page with one behaviour and one test(). The TV browser, started with --test, gives its pages
// `tvTest`: done(ok, text) ends the run with exit status 0 or 1 and prints the text; pixels(x, y, width, height) is the
// mean colour {red, green, blue} of that part of the screen, picture and page together; remote(line) sends a line to
// the television's remote and returns the answer. The slots behind them are event('{"test":"done",...}'), pixels and
// remote of the browser's bridge; settings().testing says that the browser was started so.
var UNREALIZED = 0, CONNECTING = 1, PRESENTING = 2, STOPPED = 3;

var EVENT_MEMBERS = {
    ChannelChangeSucceeded: ["channel"],
    ChannelChangeError: ["channel", "errorState"],
    PlayStateChange: ["state", "error"],
    FullScreenChange: [],
    ProgrammesChanged: [],
    ParentalRatingChange: ["contentID", "rating", "DRMSystemID"],
    ParentalRatingError: ["contentID", "rating", "DRMSystemID"],
    DrmRightsError: ["errorState", "contentID", "DRMSystemID", "rightsIssuerURL"]
};

var PATIENCE = 15000;  // milliseconds for one condition; beyond it the page has failed

// Runs a generator function with the page's object: `yield` waits for a promise. Its end is the page's verdict.
function test(body) {
    var video = document.getElementById("video");
    var steps = body(video);

    function advance(method, value) {
        var step;
        try {
            step = steps[method](value);
        } catch (error) {
            finish(false, error);
            return;
        }
        if (step.done) {
            finish(true, document.title);
        } else {
            Promise.resolve(step.value).then(advance.bind(null, "next"), advance.bind(null, "throw"));
        }
    }
    advance("next");
}

// Where in the page an assertion failed.
function placeOf(error) {
    var lines = String(error.stack || "").split("\n").filter(function (line) {
        return /:\d+/.test(line) && line.indexOf("harness.js") < 0;
    });
    var match = lines.length > 0 ? /([^\/]*):(\d+)(:\d+)?$/.exec(lines[0]) : null;
    return match ? " (" + match[1] + ", line " + match[2] + ")" : "";
}

// The first verdict counts. Without tvTest somebody is looking at the page.
function finish(passed, result) {
    var text = result instanceof Error ? result.message + placeOf(result) : result;
    if (window.tvTest) {
        tvTest.done(passed, text);
    } else {
        document.body.appendChild(document.createTextNode((passed ? "passed: " : "failed: ") + text));
    }
}

window.onerror = function (message, source, line) {
    finish(false, new Error(message + " (" + source + ":" + line + ")"));
};

function show(value) {
    var text = typeof value === "object" || typeof value === "string" ? JSON.stringify(value) : String(value);
    return text === undefined ? String(value) : text;
}

function ok(condition, what) {
    if (!condition) {
        throw new Error(what);
    }
}

function equal(actual, expected, what) {
    ok(actual === expected, (what ? what + ": " : "") + show(actual) + " instead of " + show(expected));
}

function equalLists(actual, expected, what) {
    equal(actual.join("\n"), expected.join("\n"), what);
}

// The exact text of the exception that a call raises.
function raises(text, call) {
    var error = null;
    try {
        call();
    } catch (caught) {
        error = caught;
    }
    ok(error, "no exception, expected " + show(text));
    equal(error.message, text, "exception");
}

// A promise that is kept once the condition holds, which is looked at a hundred times a second.
function until(condition, what) {
    var start = Date.now();
    return new Promise(function (resolve, reject) {
        function look() {
            var result;
            try {
                result = condition();
            } catch (error) {
                reject(error);
                return;
            }
            if (result) {
                resolve(result);
            } else if (Date.now() - start > PATIENCE) {
                reject(new Error("in vain waited for " + (typeof what === "function" ? what() : what)));
            } else {
                setTimeout(look, 10);
            }
        }
        look();
    });
}

// The next turn of the event loop: what was queued before has run.
function nextTurn() {
    return new Promise(function (resolve) { setTimeout(resolve, 0); });
}

function nameOf(channel) {
    return channel === null || channel === undefined ? String(channel) : String(channel.name);
}

// One line for an event: its type and its arguments, channels by name: "ChannelChangeError News 12".
function describe(type, values) {
    return [type].concat(EVENT_MEMBERS[type].map(function (member, index) {
        return member === "channel" ? nameOf(values[index]) : String(values[index]);
    })).join(" ");
}

// Records the events of an object as lines, in order. `by` says how it listens: "listener" (the default) or "handler".
function record(video, types, by) {
    var lines = [];
    var next = 0;

    function listen(type) {
        video.addEventListener(type, function (event) {
            lines.push(describe(type, EVENT_MEMBERS[type].map(function (member) { return event[member]; })));
        }, false);
    }
    function handle(type) {
        video[type === "DrmRightsError" ? "onDRMRightsError" : "on" + type] = function () {
            lines.push(describe(type, arguments));
        };
    }
    types = types || ["PlayStateChange", "ChannelChangeSucceeded", "ChannelChangeError"];
    types.forEach(by === "handler" ? handle : listen);

    return {
        lines: lines,
        // Waits until this line has come (again), whatever came before it.
        reaches: function (line) {
            return until(function () {
                var found = lines.indexOf(line, next);
                next = found < 0 ? next : found + 1;
                return found >= 0;
            }, function () { return show(line) + "; there were " + show(lines); });
        },
        // Waits for as many lines as are given and compares them with what came since the last look.
        are: function (expected) {
            return until(function () { return lines.length - next >= expected.length; }, function () {
                return show(expected) + "; there were " + show(lines.slice(next));
            }).then(function () {
                equalLists(lines.slice(next, next + expected.length), expected, "events");
                next += expected.length;
            });
        },
        // Forgets what came so far.
        clear: function () { next = lines.length; }
    };
}

// Binds the object to the television's channel and waits until it is presented.
function present(video) {
    video.bindToCurrentChannel();
    return until(function () { return video.playState === PRESENTING; }, "presentation");
}

// Another object for the page, as a script makes it.
function addVideo() {
    var added = document.createElement("object");
    added.setAttribute("type", "video/broadcast");
    document.body.appendChild(added);
    return added;
}

function channelList(video) {
    return video.getChannelConfig().channelList;
}

// Two channels whose pictures are there for everyone: the television's own at the start, and the one after it.
function twoChannels(video) {
    var list = channelList(video);
    var first = video.getChannelConfig().currentChannel;
    var index = 0;
    while (list.item(index).ccid !== first.ccid) {
        ++index;
    }
    return [list.item(index), list.item((index + 1) % list.length)];
}

// The screen inside a rectangle shows neither the page's colour nor the black of an empty video plane.
function showsPicture(x, y, width, height) {
    var colour = tvTest.pixels(x, y, width, height);
    return !isPage(colour) && colour.red + colour.green + colour.blue > 60;
}

// Pages that look at pixels have this background.
var PAGE_COLOUR = "rgb(255, 0, 255)";

function isPage(colour) {
    return colour.red > 250 && colour.green < 5 && colour.blue > 250;
}

function showsPage(x, y, width, height) {
    return isPage(tvTest.pixels(x, y, width, height));
}
