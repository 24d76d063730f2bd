// AVComponent: a video, audio or subtitle stream of a channel (OIPF DAE, clauses 7.16.5.2 to 7.16.5.5).
(function (environment) {
    "use strict";

    var toNumber = environment.toNumber;
    var orNothing = environment.orNothing;

    function known(number) {
        return isNaN(number) || number < 0 ? undefined : number;
    }

    environment.defineClass("AVComponent", function (type, index, pid, componentTag, language, encrypted, encoding,
                                                     aspectRatio, audioDescription, audioChannels, hearingImpaired,
                                                     active) {
        this.type = toNumber(type);
        this.index = toNumber(index);
        this.pid = toNumber(pid);
        this.componentTag = known(toNumber(componentTag));
        this.language = orNothing(language);
        this.encrypted = !!encrypted;
        this.encoding = orNothing(encoding);
        this.aspectRatio = known(Math.round(toNumber(aspectRatio) * 100) / 100);
        this.audioDescription = !!audioDescription;
        this.audioChannels = toNumber(audioChannels) || undefined;
        this.hearingImpaired = !!hearingImpaired;
        this.active = !!active;
        this.label = orNothing(language);
    }, {
        constants: { COMPONENT_TYPE_VIDEO: 0, COMPONENT_TYPE_AUDIO: 1, COMPONENT_TYPE_SUBTITLE: 2 }
    });
}(this.__tvEnvironment));
