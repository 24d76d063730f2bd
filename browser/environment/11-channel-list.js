// ChannelConfig, ChannelList and FavouriteLists (OIPF DAE, clauses 7.13.9, 7.13.10 and 7.13.13).
(function (environment) {
    "use strict";

    var tv = environment.tv;
    var toNumber = environment.toNumber;
    var channelList = null;
    var channelsById = {};
    var observedConfigurations = [];

    // The channel of a service: always the same object as long as the service is there.
    function channelOf(service) {
        var channel = channelsById[service.id];
        if (channel) {
            environment.updateChannel(channel, service);
            return channel;
        }
        return environment.createChannel(service.id);
    }

    function readChannels() {
        var channels = tv.services().filter(function (service) { return !service.hidden; }).map(channelOf);
        channelsById = {};
        channels.forEach(function (channel) { channelsById[channel.mid] = channel; });
        environment.fill(channelList, channels);
    }

    function currentChannel() {
        var id = tv.currentService();
        if (!id) {
            return null;
        }
        return channelsById[id] || environment.createChannel(id);
    }

    function find(list, matches) {
        var i;
        for (i = 0; i < list.length; ++i) {
            if (matches(list[i])) {
                return list[i];
            }
        }
        return null;
    }

    // An absent network or transport stream stands for any.
    function equals(wanted, actual, absentIsAny) {
        var number = toNumber(wanted);
        return number === actual || (absentIsAny && isNaN(number));
    }

    var createList = environment.defineClass("ChannelList", function () {
        environment.fill(this, []);
    }, {
        base: environment.Collection,
        methods: {
            getChannel: function (channelID) {
                return find(this, function (channel) { return channel.ccid === String(channelID); });
            },
            getChannelByTriplet: function (onid, tsid, sid, nid) {
                return find(this, function (channel) {
                    return equals(onid, channel.onid, false) && equals(tsid, channel.tsid, true) &&
                        equals(sid, channel.sid, false) && equals(nid, channel.nid, true);
                });
            },
            getChannelBySourceID: function (sourceID) {
                return find(this, function (channel) { return equals(sourceID, channel.sourceID, false); });
            }
        }
    });

    var createFavouriteLists = environment.defineClass("FavouriteLists", function () {
        environment.fill(this, []);
    }, {
        base: environment.Collection,
        methods: {
            getFavouriteList: function () { return null; }
        }
    });

    function sharedList() {
        if (!channelList) {
            channelList = createList();
            readChannels();
        }
        return channelList;
    }

    // A configuration is remembered from its first listener on: one that nobody listens to may be collected.
    function observe(configuration, listener) {
        observedConfigurations.push({ configuration: configuration, listener: listener });
    }

    function forget(configuration, listener) {
        observedConfigurations = observedConfigurations.filter(function (entry) {
            return entry.configuration !== configuration || entry.listener !== listener;
        });
    }

    function handlerProperty(configuration) {
        var handler = null;
        function call() { handler.call(configuration); }
        return {
            enumerable: true,
            get: function () { return handler; },
            set: function (value) {
                forget(configuration, call);
                handler = typeof value === "function" ? value : null;
                if (handler) {
                    observe(configuration, call);
                }
            }
        };
    }

    environment.defineClass("ChannelConfig", function () {
        Object.defineProperties(this, {
            channelList: { enumerable: true, get: sharedList },
            favouriteLists: { enumerable: true, value: createFavouriteLists() },
            currentFavouriteList: { enumerable: true, value: null },
            currentChannel: { enumerable: true, get: currentChannel },
            onChannelListUpdate: handlerProperty(this)
        });
    }, {
        methods: {
            addEventListener: function (type, listener) {
                if (type === "ChannelListUpdate" && listener) {
                    forget(this, listener);
                    observe(this, listener);
                }
            },
            removeEventListener: function (type, listener) {
                if (type === "ChannelListUpdate") {
                    forget(this, listener);
                }
            }
        }
    });

    function notify(entry) {
        var event = { type: "ChannelListUpdate", target: entry.configuration, currentTarget: entry.configuration,
                      bubbles: false, cancelable: false };
        try {
            if (typeof entry.listener === "function") {
                entry.listener.call(entry.configuration, event);
            } else {
                entry.listener.handleEvent(event);
            }
        } catch (error) {
            console.error("ChannelListUpdate: " + error);
        }
    }

    tv.servicesChanged.connect(function () {
        if (channelList) {
            readChannels();
        }
        observedConfigurations.slice().forEach(notify);
    });

    environment.currentChannel = function () {
        sharedList();
        return currentChannel();
    };
}(this.__tvEnvironment));
