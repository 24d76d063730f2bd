// The application manager, the page's application and its keys (OIPF DAE, clauses 7.2.1 to 7.2.5).
(function (window, environment) {
    "use strict";

    var tv = environment.tv;
    var document = window.document;

    var KEY_GROUPS = {
        RED: 0x1, GREEN: 0x2, YELLOW: 0x4, BLUE: 0x8, NAVIGATION: 0x10, VCR: 0x20, SCROLL: 0x40, INFO: 0x80,
        NUMERIC: 0x100, ALPHA: 0x200, OTHER: 0x400
    };
    var ALL_KEYS = 0x7FF;

    // Digits, channel keys and the like are the television's until the page asks for them.
    var keyset = {
        value: ALL_KEYS & ~KEY_GROUPS.NUMERIC & ~KEY_GROUPS.OTHER,
        otherKeys: [],
        maximumValue: ALL_KEYS,
        maximumOtherKeys: [],
        supportsPointer: false,
        setValue: function (value, otherKeys) {
            keyset.value = environment.toNumber(value) & ALL_KEYS;
            keyset.otherKeys = Array.isArray(otherKeys) ? otherKeys.slice() : [];
            tv.setKeyset(keyset.value);
            return keyset.value;
        },
        getKeyIcon: function () { return null; },
        getKeyLabel: function (code) { return String.fromCharCode(code); }
    };
    environment.addConstants([keyset], KEY_GROUPS);

    var privateData = {
        keyset: keyset,
        get currentChannel() { return environment.currentChannel(); },
        getFreeMem: function () { return tv.freeMemory(); }
    };

    // Unlike display or visibility, no rule of the page overrides it, and the video/broadcast object lives on.
    function setVisible(visible) {
        var root = document.documentElement;
        application.visible = visible;
        if (root && visible) {
            root.style.removeProperty("opacity");
        } else if (root) {
            root.style.setProperty("opacity", "0", "important");
        }
        return true;
    }

    function setActive(active) {
        application.active = active;
    }

    function absoluteUrl(url) {
        var anchor = document.createElement("a");
        anchor.href = url;
        return anchor.href;
    }

    function openApplication(url) {
        var text = String(url);
        if (/^dvb:/i.test(text)) {
            tv.log("createApplication: " + text + " needs an application information table; give the page's URL.");
            return null;
        }
        tv.openUrl(absoluteUrl(text));
        return application;
    }

    var application = {
        visible: true,
        active: true,
        isPrimaryReceiver: true,
        permissions: environment.makeCollection([]),
        privateData: privateData,
        show: function () { return setVisible(true); },
        hide: function () { return setVisible(false); },
        activate: function () { setActive(true); },
        deactivate: function () { setActive(false); },
        activateInput: function () { setActive(true); },
        deactivateInput: function () { setActive(false); },
        createApplication: openApplication,
        destroyApplication: function () { tv.openUrl("about:blank"); }
    };
    // JSON.stringify must not follow it.
    Object.defineProperty(application, "window", { value: window });

    environment.objectTypes["application/oipfapplicationmanager"] = {
        onLowMemory: null,
        onApplicationLoaded: null,
        onApplicationUnloaded: null,
        onApplicationLoadError: null,
        getOwnerApplication: function () { return application; },
        getChildApplications: function () { return environment.makeCollection([]); },
        gc: function () {}
    };
}(this, this.__tvEnvironment));
