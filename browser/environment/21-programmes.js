// Programme and ProgrammeCollection: the present event of a channel and the following one (OIPF DAE, clause 7.16.2).
(function (environment) {
    "use strict";

    var tv = environment.tv;
    var EXTENSION_TAG = 0x7F;
    var PRIVATE_DATA_SPECIFIER_TAG = 0x5F;

    function hex(number) {
        return number.toString(16);
    }

    function readUint32(descriptor) {
        return descriptor.slice(2, 6).split("").reduce(function (value, byte) {
            return value * 256 + byte.charCodeAt(0);
        }, 0);
    }

    // The descriptors with the tag, whole, one character a byte. A private data specifier holds for what follows it.
    function selectDescriptors(descriptors, tag, extension, specifier) {
        var current = 0;
        return descriptors.filter(function (descriptor) {
            var actual = descriptor.charCodeAt(0);
            if (actual === PRIVATE_DATA_SPECIFIER_TAG) {
                current = readUint32(descriptor);
            }
            return actual === tag && (isNaN(specifier) || specifier === current) &&
                (tag !== EXTENSION_TAG || isNaN(extension) || descriptor.charCodeAt(2) === extension);
        });
    }

    var createProgramme = environment.defineClass("Programme", function (programme, service) {
        var triplet = [service.onid, service.tsid, service.sid].map(hex).join(".");
        this.name = programme.name;
        this.longName = undefined;
        this.description = programme.description;
        this.longDescription = programme.longDescription;
        this.startTime = programme.startTime;
        this.duration = programme.duration;
        this.channelID = environment.ccidOfService(service);
        this.programmeID = "dvb://" + triplet + ";" + hex(programme.eventId);
        this.programmeIDType = this.ID_DVB_EVENT;
        this.parentalRatings = environment.createRatings(programme.ratings);
        Object.defineProperty(this, "getSIDescriptors", {
            value: function (tag, extension, specifier) {
                var toNumber = environment.toNumber;
                var found = selectDescriptors(programme.descriptors, toNumber(tag), toNumber(extension),
                                              toNumber(specifier));
                return found.length > 0 ? environment.makeCollection(found) : null;
            }
        });
    }, {
        constants: { ID_TVA_CRID: 0, ID_DVB_EVENT: 1, ID_TVA_GROUP_CRID: 2 }
    });

    environment.defineClass("ProgrammeCollection", function (channelId) {
        var service = tv.service(environment.toNumber(channelId));
        environment.fill(this, service ? tv.programmes(service.id).map(function (programme) {
            return createProgramme(programme, service);
        }) : []);
    }, { base: environment.Collection });
}(this.__tvEnvironment));
