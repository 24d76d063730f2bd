// Channel, and where channels are found: by id, by triplet, by delivery system descriptor (OIPF DAE, clause 7.13.11).
(function (environment) {
    "use strict";

    var tv = environment.tv;
    var toNumber = environment.toNumber;
    var orNothing = environment.orNothing;

    var CONSTANTS = {
        TYPE_TV: 0, TYPE_RADIO: 1, TYPE_OTHER: 2,
        ID_ANALOG: 0,
        ID_DVB_C: 10, ID_DVB_S: 11, ID_DVB_T: 12, ID_DVB_SI_DIRECT: 13, ID_DVB_C2: 14, ID_DVB_S2: 15, ID_DVB_T2: 16,
        ID_ISDB_C: 20, ID_ISDB_S: 21, ID_ISDB_T: 22,
        ID_ATSC_T: 30,
        ID_IPTV_SDS: 40, ID_IPTV_URI: 41
    };

    function toHex(bytes) {
        return bytes.split("").map(function (byte) {
            return ("0" + byte.charCodeAt(0).toString(16)).slice(-2);
        }).join("");
    }

    // Unique among the channels, and the same whenever the same stream is received.
    function ccidOf(idType, parts) {
        return "ccid:" + [idType].concat(parts).join(".");
    }

    // Every channel has every member, whatever is known of it.
    function setMembers(channel, known) {
        channel.ccid = known.ccid;
        channel.channelType = known.channelType;
        channel.idType = known.idType;
        channel.onid = known.onid;
        channel.tsid = known.tsid;
        channel.sid = known.sid;
        channel.nid = known.nid;
        channel.dsd = known.dsd;
        channel.name = known.name;
        channel.longName = known.longName;
        channel.description = known.description;
        channel.majorChannel = known.majorChannel;
        channel.minorChannel = undefined;
        channel.isHD = known.isHD;
        channel.locked = known.locked;
        channel.manualBlock = false;
        channel.hidden = known.hidden;
        channel.favourite = false;
        channel.favIDs = environment.makeCollection([]);
        channel.sourceID = undefined;
        channel.ipBroadcastID = undefined;
    }

    // What the television knows of a service, as members of a channel. `dsd` holds the descriptor's bytes, the form in
    // which createChannelObject takes it.
    function describe(service) {
        return {
            ccid: ccidOf(service.idType, [service.onid, service.tsid, service.sid]),
            channelType: service.type,
            idType: service.idType,
            onid: service.onid, tsid: service.tsid, sid: service.sid, nid: service.nid,
            dsd: orNothing(service.dsd),
            name: service.name, longName: service.name, description: orNothing(service.provider),
            majorChannel: service.number || undefined,
            isHD: service.hd, locked: service.locked, hidden: service.hidden
        };
    }

    function findService(matches) {
        var services = tv.services();
        var i;
        for (i = 0; i < services.length; ++i) {
            if (matches(services[i])) {
                return services[i];
            }
        }
        return null;
    }

    // setChannel reads "mid" before anything else.
    function fromId(channel, id) {
        var service = tv.service(id);
        channel.mid = id;
        setMembers(channel, service ? describe(service) : {});
    }

    // Without "mid" and "dsd" setChannel looks the triplet up.
    function fromTriplet(channel, idType, onid, tsid, sid) {
        var service = findService(function (candidate) {
            return candidate.onid === onid && candidate.tsid === tsid && candidate.sid === sid;
        });
        var known = service ? describe(service) : {};
        known.ccid = ccidOf(idType, [onid, tsid, sid]);
        known.idType = idType;
        known.onid = onid;
        known.tsid = tsid;
        known.sid = sid;
        known.dsd = undefined;
        setMembers(channel, known);
    }

    // setChannel reads the descriptor's hexadecimal text back from "dsd", so that is what stands there.
    function fromDescriptor(channel, idType, hexText, sid) {
        var service = findService(function (candidate) {
            return candidate.sid === sid && candidate.dsd !== "" && toHex(candidate.dsd) === hexText;
        });
        var known = service ? describe(service) : {};
        known.ccid = ccidOf(idType, [hexText, sid]);
        known.idType = idType;
        known.dsd = hexText;
        known.sid = sid;
        setMembers(channel, known);
    }

    environment.createChannel = environment.defineClass("Channel", function (first) {
        if (arguments.length === 1) {
            fromId(this, toNumber(first));
        } else if (arguments.length === 3) {
            fromDescriptor(this, toNumber(first), String(arguments[1]), toNumber(arguments[2]));
        } else {
            fromTriplet(this, toNumber(first), toNumber(arguments[1]), toNumber(arguments[2]), toNumber(arguments[3]));
        }
    }, { constants: CONSTANTS });

    // Brings the members of a channel that was made from an id up to date.
    environment.updateChannel = function (channel, service) {
        setMembers(channel, describe(service));
    };
    environment.ccidOfService = function (service) {
        return describe(service).ccid;
    };
}(this.__tvEnvironment));
