// The members of the <object> elements that are no plug-ins, and oipfObjectFactory (OIPF DAE, clause 7.1).
(function (window, environment) {
    "use strict";

    var document = window.document;
    var objectTypes = environment.objectTypes;
    var getAttribute = window.Element.prototype.getAttribute;

    function normalised(type) {
        return String(type || "").split(";")[0].trim().toLowerCase();
    }

    function objectOf(element) {
        return objectTypes[normalised(getAttribute.call(element, "type"))];
    }

    // Handlers can be set, nothing else.
    function assign(element, name, value) {
        var object = objectOf(element);
        if (!object || !(name in object)) {
            Object.defineProperty(element, name, {
                value: value, writable: true, enumerable: true, configurable: true
            });
        } else if (/^on[A-Z]/.test(name)) {
            object[name] = value;
        }
    }

    // On the prototype, so that an element has its members however it was made and as soon as it has its type.
    function expose(name) {
        Object.defineProperty(window.HTMLObjectElement.prototype, name, {
            configurable: true,
            get: function () {
                var object = objectOf(this);
                return object ? object[name] : undefined;
            },
            set: function (value) { assign(this, name, value); }
        });
    }

    Object.keys(objectTypes).forEach(function (type) {
        Object.keys(objectTypes[type]).forEach(expose);
    });

    function createObject(type) {
        var element = document.createElement("object");
        element.setAttribute("type", type);
        return element;
    }

    function creates(type) {
        return function () { return createObject(type); };
    }

    function createsNothing() {
        return null;
    }

    var factory = {
        isObjectSupported: function (type) {
            return normalised(type) === "video/broadcast" || normalised(type) in objectTypes;
        },
        createVideoBroadcastObject: creates("video/broadcast"),
        createApplicationManagerObject: creates("application/oipfApplicationManager"),
        createConfigurationObject: creates("application/oipfConfiguration"),
        createCapabilitiesObject: creates("application/oipfCapabilities")
    };
    // The rest of the standard's factory, for objects that this television has not.
    ["VideoMpeg", "CodManager", "DownloadManager", "DownloadTrigger", "DrmAgent", "GatewayInfo", "IMS", "MDTF",
     "NotifSocket", "ParentalControlManager", "RecordingScheduler", "RemoteManagement", "RemoteControlFunction",
     "SearchManager", "StatusView"].forEach(function (name) {
        factory["create" + name + "Object"] = createsNothing;
    });
    environment.publish("oipfObjectFactory", factory);
}(this, this.__tvEnvironment));
