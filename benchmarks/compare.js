// The measurements of compare.html. A row is one operation on the object and its like on the floor; the rows are gone
// through in rounds, and each round takes the two in the other order. What is told of a row are the medians over the
// rounds, and the median of the rounds' ratios.
"use strict";

// compare.html?rounds=N&rows=TEXT: how many rounds count, and of which rows (those whose names contain the text).
function parameter(name, otherwise) {
    var found = new RegExp("[?&]" + name + "=([^&]*)").exec(location.search);
    return found ? decodeURIComponent(found[1]) : otherwise;
}

var ROUNDS = +parameter("rounds", 41);
var WARM_UP = 3;  // rounds that do not count

var elements = {
    object: document.getElementById("video"),
    floor: document.getElementById("floor")
};
var control = document.getElementById("control");

function sleep(milliseconds) {
    return new Promise(function (resolve) { setTimeout(resolve, milliseconds); });
}

// An operation of script, `times` times in one go. A function of its own for each row and target: what the browser
// learns about one is of no use to another.
function direct(name, aim, code, times) {
    function loop() {
        return new Function("o", "n", "var r; for (var i = 0; i < n; ++i) { " + code + "; } return r;");
    }
    var loops = { object: loop(), floor: loop() };
    times = times || 20000;
    return {
        name: name, aim: aim, unit: "ns",
        run: function* (target) {
            var begun = control.cpu;
            loops[target](elements[target], times);
            var spent = control.cpu - begun;
            yield sleep(0);  // what was queued meanwhile
            return spent * 1000 / times;
        }
    };
}

// Listens on the target with `listeners` functions that run `arrived` once in total for each notification, or with the
// handler when there are none.
var listening = {
    object: function (listeners, type, arrived) {
        var functions = makeListeners(listeners, arrived);
        if (listeners === 0) { elements.object["on" + type] = arrived; }
        functions.forEach(function (each) { elements.object.addEventListener(type, each, false); });
        return function () {
            elements.object["on" + type] = null;
            functions.forEach(function (each) { elements.object.removeEventListener(type, each, false); });
        };
    },
    floor: function (listeners, type, arrived) {
        if (listeners === 0) { elements.floor.onFocus = arrived; }
        makeListeners(listeners, arrived).forEach(function (each) {
            elements.floor.addEventListener(type, each, false);
        });
        return function () {
            elements.floor.onFocus = null;
            elements.floor.removeEventListener();
        };
    }
};

function makeListeners(count, arrived) {
    var functions = [];
    while (functions.length < count - 1) { functions.push(new Function("event", "")); }
    if (count > 0) { functions.push(arrived); }
    return functions;
}

// Notifications that a thread has queued, from the first of them to the last one's return from script.
function delivery(name, aim, kind, type, listeners, times) {
    return {
        name: name, aim: aim, unit: "ns",
        run: function* (target) {
            var count = 0, begun = 0, spent = 0, finish;
            var finished = new Promise(function (resolve) { finish = resolve; });
            var stop = listening[target](listeners, type, function () {
                if (++count === times) {
                    spent = control.cpu - begun;
                    finish();
                }
            });
            control.post(target, kind, times);
            begun = control.cpu;
            yield finished;
            stop();
            yield sleep(0);
            return spent * 1000 / times;
        }
    };
}

// The same notifications on the thread that queues them.
function posting(name, kind, type, times) {
    var delivered = delivery(name, undefined, kind, type, 0, times);
    return {
        name: name, unit: "ns",
        run: function* (target) {
            yield* delivered.run(target);
            return control.postingCpu * 1000 / times;
        }
    };
}

// From the notification on a thread until the handler runs, one at a time: time that passes.
function latency(name, kind, type, times) {
    return {
        name: name, unit: "ns",
        run: function* (target) {
            var finish;
            var finished = new Promise(function (resolve) { finish = resolve; });
            var stop = listening[target](0, type, function () {
                if (control.arrived() === 0) { finish(); }
            });
            control.exchange(target, kind, times);
            yield finished;
            stop();
            yield sleep(0);
            return control.latency * 1000;
        }
    };
}

// An element of its own is put into the page, used and removed.
function construction(name, types, times) {
    return {
        name: name, unit: "ns",
        run: function* (target) {
            var begun = control.cpu;
            for (var i = 0; i < times; ++i) {
                var element = document.createElement("object");
                element.type = types[target];
                document.body.appendChild(element);
                element.playState;
                document.body.removeChild(element);
            }
            yield sleep(0);
            yield sleep(0);
            return (control.cpu - begun) * 1000 / times;
        }
    };
}

var ROWS = [
    direct("read of a property (playState)", 1.05, "r = o.playState"),
    direct("write of a property (onFocus = null)", 1.05, "o.onFocus = null"),
    direct("call without arguments (toString)", 1.10, "r = o.toString()"),
    direct("call with one argument (setFullScreen)", 1.10, "r = o.setFullScreen(false)"),
    direct("write that lays out (width)", undefined, "o.width = 160", 2000),
    direct("call that asks the platform (getVolume)", undefined, "r = o.getVolume()"),
    delivery("PlayStateChange to the handler", 1.25, "playState", "PlayStateChange", 0, 1000),
    delivery("PlayStateChange to 1 listener", 1.25, "playState", "PlayStateChange", 1, 1000),
    delivery("PlayStateChange to 10 listeners", 1.25, "playState", "PlayStateChange", 10, 300),
    delivery("ChannelChangeSucceeded to the handler", 1.25, "channel", "ChannelChangeSucceeded", 0, 30),
    posting("notifying, on the platform's thread", "playState", "PlayStateChange", 1000),
    latency("ProgrammesChanged, thread to handler (time)", "programmes", "ProgrammesChanged", 100),
    construction("element made and removed",
                 { object: "video/broadcast", floor: "application/x-floor" }, 10)
].filter(function (row) { return row.name.indexOf(parameter("rows", "")) >= 0; });

function median(values) {
    var sorted = values.slice().sort(function (a, b) { return a - b; });
    return sorted[sorted.length >> 1];
}

function* measure() {
    var results = ROWS.map(function () { return { object: [], floor: [], ratio: [] }; });
    for (var round = 0; round < WARM_UP + ROUNDS; ++round) {
        var order = round % 2 === 0 ? ["object", "floor"] : ["floor", "object"];
        for (var i = 0; i < ROWS.length; ++i) {
            var cost = {};
            for (var target of order) { cost[target] = yield* ROWS[i].run(target); }
            if (round < WARM_UP) { continue; }
            results[i].object.push(cost.object);
            results[i].floor.push(cost.floor);
            results[i].ratio.push(cost.object / cost.floor);
        }
    }
    return results;
}

function table(results) {
    var lines = ["| operation | object | floor | ratio | aim |", "| --- | ---: | ---: | ---: | ---: |"];
    ROWS.forEach(function (row, i) {
        lines.push("| " + [row.name, Math.round(median(results[i].object)) + " " + row.unit,
                           Math.round(median(results[i].floor)) + " " + row.unit,
                           median(results[i].ratio).toFixed(2), row.aim ? row.aim.toFixed(2) : ""].join(" | ") + " |");
    });
    return lines.join("\n");
}

function drive(steps, finish) {
    function advance(value) {
        try {
            var step = steps.next(value);
        } catch (error) {
            tvTest.done(false, String(error) + " " + error.stack);
            return;
        }
        if (step.done) {
            finish(step.value);
        } else {
            step.value.then(advance);
        }
    }
    advance();
}

window.onload = function () {
    elements.object.playState;  // the instances begin
    elements.floor.playState;
    control.cpu;
    setTimeout(function () {
        drive(measure(), function (results) { tvTest.done(true, table(results)); });
    }, 1000);
};
