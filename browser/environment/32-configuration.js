// The settings of the television and the television itself (OIPF DAE, clauses 7.3.1 to 7.3.3).
(function (environment) {
    "use strict";

    var tv = environment.tv;

    // The parts between the parentheses of "HbbTV/1.2.1 (capabilities;vendor;model;software;hardware;...)".
    function userAgentPart(index) {
        var match = /HbbTV\/[\d.]+\s*\(([^)]*)\)/.exec(tv.settings().userAgent);
        return match ? (match[1].split(";")[index] || "").trim() : "";
    }

    // A member that is asked for anew each time it is read.
    function fromSettings(members) {
        var object = {};
        Object.keys(members).forEach(function (name) {
            Object.defineProperty(object, name, { enumerable: true, get: members[name] });
        });
        return object;
    }

    function setting(name) {
        return function () { return tv.settings()[name]; };
    }

    function always(value) {
        return function () { return value; };
    }

    var configuration = fromSettings({
        preferredAudioLanguage: setting("audioLanguage"),
        preferredSubtitleLanguage: setting("subtitleLanguage"),
        preferredUILanguage: setting("audioLanguage"),
        countryId: setting("countryId"),
        regionId: always(0),
        subtitlesEnabled: setting("subtitlesEnabled")
    });

    var localSystem = fromSettings({
        volume: setting("volume"),
        mute: setting("mute"),
        systemReady: always(true),
        pvrEnabled: always(false),
        vendorName: function () { return userAgentPart(1); },
        modelName: function () { return userAgentPart(2); },
        softwareVersion: function () { return userAgentPart(3); },
        hardwareVersion: function () { return userAgentPart(4); },
        networkInterfaces: always(environment.makeCollection([]))
    });

    environment.objectTypes["application/oipfconfiguration"] = {
        configuration: configuration,
        localSystem: localSystem
    };
}(this.__tvEnvironment));
