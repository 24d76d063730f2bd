// The key codes of a remote control: KeyEvent.VK_* and the same names on the window (CEA-2014-A, annex F).
(function (window, environment) {
    "use strict";

    var KEYS = {
        VK_ENTER: 13, VK_PAUSE: 19, VK_ESCAPE: 27, VK_SPACE: 32, VK_PAGE_UP: 33, VK_PAGE_DOWN: 34, VK_END: 35,
        VK_HOME: 36, VK_LEFT: 37, VK_UP: 38, VK_RIGHT: 39, VK_DOWN: 40,
        VK_0: 48, VK_1: 49, VK_2: 50, VK_3: 51, VK_4: 52, VK_5: 53, VK_6: 54, VK_7: 55, VK_8: 56, VK_9: 57,
        VK_RED: 403, VK_GREEN: 404, VK_YELLOW: 405, VK_BLUE: 406, VK_GREY: 407, VK_BROWN: 408, VK_POWER: 409,
        VK_REWIND: 412, VK_STOP: 413, VK_EJECT_TOGGLE: 414, VK_PLAY: 415, VK_RECORD: 416, VK_FAST_FWD: 417,
        VK_TRACK_PREV: 424, VK_TRACK_NEXT: 425, VK_CHANNEL_UP: 427, VK_CHANNEL_DOWN: 428,
        VK_VOLUME_UP: 447, VK_VOLUME_DOWN: 448, VK_MUTE: 449,
        VK_INFO: 457, VK_GUIDE: 458, VK_TELETEXT: 459, VK_SUBTITLE: 460, VK_BACK: 461, VK_MENU: 462,
        VK_PLAY_PAUSE: 463
    };

    var KeyEvent = window.KeyEvent || {};

    // Ordinary properties: many a page declares `var VK_LEFT` itself, or fills KeyEvent where it misses a name.
    Object.keys(KEYS).forEach(function (name) {
        KeyEvent[name] = KEYS[name];
        environment.publish(name, KEYS[name]);
    });
    environment.publish("KeyEvent", KeyEvent);
}(this, this.__tvEnvironment));
