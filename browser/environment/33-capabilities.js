// What the television can do, as a profile list and by name (OIPF DAE, clauses 7.15.3 and 9; ETSI TS 102 796,
// clause 10.2.4).
(function (window, environment) {
    "use strict";

    var tv = environment.tv;
    var BASE_PROFILE = "OITF_HD_UIPROF";
    var FRAGMENTS = ["META_SI", "META_EIT"];
    var DELIVERY_SYSTEMS = { 10: "DVB_C", 11: "DVB_S", 12: "DVB_T", 14: "DVB_C2", 15: "DVB_S2", 16: "DVB_T2" };

    // The delivery systems are those of the stream that is being received.
    function fragments() {
        return tv.services().reduce(function (names, service) {
            var name = DELIVERY_SYSTEMS[service.idType];
            return name && names.indexOf(name) < 0 ? names.concat([name]) : names;
        }, FRAGMENTS);
    }

    function describe() {
        var text = '<profilelist xmlns="urn:hbbtv:config:oitf:oitfCapabilities:2011-1">' +
            '<ui_profile name="' + [BASE_PROFILE].concat(fragments()).join("+") + '">' +
            '<ext><colorkeys>true</colorkeys><parentalcontrol schemes="dvb-si">true</parentalcontrol></ext>' +
            '</ui_profile>' +
            '</profilelist>';
        return new window.DOMParser().parseFromString(text, "text/xml");
    }

    function hasCapability(name) {
        var wanted = String(name).replace(/^\+/, "");
        return wanted.split("+").every(function (part) {
            return part === BASE_PROFILE || fragments().indexOf(part) >= 0;
        });
    }

    // One video decoder, and the broadcast has it.
    environment.objectTypes["application/oipfcapabilities"] = {
        get xmlCapabilities() { return describe(); },
        extraSDVideoDecodes: 0,
        extraHDVideoDecodes: 0,
        extraUHDVideoDecodes: 0,
        hasCapability: hasCapability
    };
}(this, this.__tvEnvironment));
