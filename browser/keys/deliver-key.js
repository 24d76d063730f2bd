// Delivers a key of the remote control to the page: events with codes that no keyboard has cannot be made from outside.
(function (code, types) {
    "use strict";

    function innermostDocument() {
        var current = document;
        for (;;) {
            var focused = current.activeElement;
            var isFrame = focused && /^i?frame$/i.test(focused.tagName);
            var inner = isFrame ? focused.contentDocument : null;
            if (!inner) {
                return current;
            }
            current = inner;
        }
    }

    function makeEvent(type, target) {
        var event = target.ownerDocument.createEvent("KeyboardEvent");
        event.initKeyboardEvent(type, true, true, target.ownerDocument.defaultView, "", 0, false, false, false, false);
        [["keyCode", code], ["which", code], ["charCode", 0]].forEach(function (member) {
            Object.defineProperty(event, member[0], { value: member[1] });
        });
        return event;
    }

    var page = innermostDocument();
    var target = page.activeElement || page.body || page.documentElement;
    var prevented = false;
    types.forEach(function (type) {
        prevented = !target.dispatchEvent(makeEvent(type, target)) || prevented;
    });
    // What a browser does itself with its Enter key.
    if (code === 13 && !prevented && types.indexOf("keypress") >= 0 && target !== page.body && target.click) {
        target.click();
    }
})
