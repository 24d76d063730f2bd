// debug(), the page's side of a page test, and the end of the environment's construction.
(function (window, environment) {
    "use strict";

    var tv = environment.tv;
    var stringify = window.JSON.stringify;

    environment.publish("debug", function (text) { tv.log(String(text)); });

    // `settings().testing` is true when the browser was started with --test. done() ends the run: the browser prints
    // the text and exits with 0 or 1. pixels() is the mean colour of a rectangle of the screen, picture and page as one
    // sees them: {red, green, blue, pixels}. remote() sends a line to the television's remote and returns its answer.
    // tuneTimes() is {count, toFirstPicture}: the channel changes that came to a picture or sound, and the milliseconds
    // that the last one took. sinceStreamEvent() is how many milliseconds ago the last stream event came that the page
    // listens for.
    if (tv.settings().testing) {
        environment.publish("tvTest", {
            done: function (ok, text) {
                tv.event(stringify({ test: "done", ok: !!ok, text: String(text) }));
            },
            pixels: function (x, y, width, height) { return tv.pixels(x, y, width, height); },
            remote: function (line) { return tv.remote(String(line)); },
            tuneTimes: function () { return tv.tuneTimes(); },
            sinceStreamEvent: function () { return tv.sinceStreamEvent(); }
        });
    }

    delete window.__tvEnvironment;
}(this, this.__tvEnvironment));
