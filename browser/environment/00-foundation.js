// What the other files of the page environment build on: classes that ask for a key, collections, constants.
//
// The files of this folder run in the order of their names in every new window, before the page's own scripts.
// `__tv` (the browser's side) and `__tvEnvironment` (this side) exist only meanwhile: the files keep what they need in
// closures, and the last one removes the second.
(function (window, tv) {
    "use strict";

    function publish(name, value) {
        Object.defineProperty(window, name, { value: value, writable: true, configurable: true });
    }

    function addConstants(targets, constants) {
        targets.forEach(function (target) {
            Object.keys(constants).forEach(function (name) {
                Object.defineProperty(target, name, { value: constants[name] });
            });
        });
    }

    // Constants on the class and on its instances, methods on the instances.
    function furnish(Class, constants, methods) {
        addConstants([Class, Class.prototype], constants);
        Object.keys(methods).forEach(function (name) {
            Object.defineProperty(Class.prototype, name, { value: methods[name], writable: true, configurable: true });
        });
    }

    // A class of the page whose constructor takes a key first, so that only the plug-in can make objects of it. The
    // environment makes them with the returned function, which runs `initialise` with the same arguments less the key.
    function defineClass(name, initialise, members) {
        function Class(key) {
            if (!(this instanceof Class) || typeof key !== "string" || !tv.isKey(key)) {
                throw new TypeError(name + " objects are made by the video/broadcast object only.");
            }
            initialise.apply(this, Array.prototype.slice.call(arguments, 1));
        }
        members = members || {};
        if (members.base) {
            Class.prototype = Object.create(members.base.prototype);
        }
        Object.defineProperty(Class.prototype, "constructor", { value: Class, writable: true, configurable: true });
        Object.defineProperty(Class.prototype, Symbol.toStringTag, { value: name, configurable: true });
        furnish(Class, members.constants || {}, members.methods || {});
        publish(name, Class);
        return function create() {
            var object = Object.create(Class.prototype);
            initialise.apply(object, arguments);
            return object;
        };
    }

    // The base of all collections: `length`, `item(index)`, `[index]` and iteration; nothing outside the range throws.
    function Collection() {}
    furnish(Collection, {}, {
        item: function (index) {
            var item = this[index >>> 0];
            return item === undefined ? null : item;
        },
        toJSON: function () {
            return Array.prototype.slice.call(this);
        }
    });
    Object.defineProperty(Collection.prototype, Symbol.iterator, {
        value: Array.prototype[Symbol.iterator], writable: true, configurable: true
    });

    // Replaces what a collection holds.
    function fill(collection, items) {
        var i;
        for (i = items.length; i < collection.length; ++i) {
            delete collection[i];
        }
        items.forEach(function (item, index) {
            Object.defineProperty(collection, index, { value: item, enumerable: true, configurable: true });
        });
        Object.defineProperty(collection, "length", { value: items.length, configurable: true });
    }

    function makeCollection(items) {
        var collection = new Collection();
        fill(collection, items);
        return collection;
    }

    // Pages give numbers as texts, too; no text, null and undefined are no number.
    function toNumber(value) {
        return value === null || value === undefined || value === "" ? NaN : Number(value);
    }

    // The standard's value for what does not apply is undefined.
    function orNothing(value) {
        return value === null || value === "" ? undefined : value;
    }

    Object.defineProperty(window, "__tvEnvironment", {
        configurable: true,
        value: {
            tv: tv,
            publish: publish,
            addConstants: addConstants,
            defineClass: defineClass,
            Collection: Collection,
            fill: fill,
            makeCollection: makeCollection,
            toNumber: toNumber,
            orNothing: orNothing,
            objectTypes: Object.create(null)
        }
    });
}(this, this.__tv));
