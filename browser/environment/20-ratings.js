// ParentalRating and ParentalRatingCollection (OIPF DAE, clauses 7.9.4 and 7.9.5).
(function (environment) {
    "use strict";

    // Descriptors name a country by three letters, pages by two (ISO 3166-1).
    var REGIONS = {};
    ("ALBal ANDad AREae ARGar AUSau AUTat BELbe BGRbg BIHba BLRby BRAbr CANca CHEch CHNcn CYPcy CZEcz DEUde DNKdk " +
     "ESPes ESTee FINfi FRAfr GBRgb GEOge GRCgr HRVhr HUNhu IRLie ISLis ISRil ITAit JPNjp KORkr LIEli LTUlt LUXlu " +
     "LVAlv MARma MCOmc MDAmd MEXmx MKDmk MLTmt MNEme NLDnl NORno NZLnz POLpl PRTpt ROUro RUSru SMRsm SRBrs SVKsk " +
     "SVNsi SWEse TUNtn TURtr UKRua USAus VATva ZAFza").split(" ").forEach(function (pair) {
        REGIONS[pair.slice(0, 3)] = pair.slice(3);
    });

    var createRating = environment.defineClass("ParentalRating", function (scheme, name, value, labels, region) {
        this.name = String(name);
        this.scheme = String(scheme);
        this.value = environment.toNumber(value);
        this.labels = environment.toNumber(labels) || 0;
        this.region = environment.orNothing(region);
    });

    function add(collection, rating) {
        environment.fill(collection, Array.prototype.slice.call(collection).concat([rating]));
    }

    var createCollection = environment.defineClass("ParentalRatingCollection", function (scheme, name, value) {
        environment.fill(this, []);
        if (scheme !== undefined) {
            add(this, createRating(scheme, name, value));
        }
    }, {
        base: environment.Collection,
        methods: {
            addParentalRating: function (scheme, name, value, labels, region) {
                add(this, createRating(scheme, name, value, labels, region));
            }
        }
    });

    // 1 to 15 mean an age three years higher; anything else has the broadcaster's own meaning (ETSI EN 300 468,
    // clause 6.2.28).
    function ageOf(rating) {
        return rating >= 1 && rating <= 15 ? rating + 3 : rating;
    }

    environment.createRatings = function (descriptorEntries) {
        var collection = createCollection();
        descriptorEntries.forEach(function (entry) {
            var age = ageOf(entry.rating);
            collection.addParentalRating("dvb-si", String(age), age, 0, REGIONS[entry.country.toUpperCase()]);
        });
        return collection;
    };
}(this.__tvEnvironment));
