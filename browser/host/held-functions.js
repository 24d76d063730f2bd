// The functions that a page has given to its video/broadcast objects, by number: kept here for the adapter plug-in,
// which reaches them by no other way that lasts. The window's one function takes what to do first: 0 keep, 1 get,
// 2 drop, 3 call.
(function (window, name) {
    "use strict";

    var apply = Reflect.apply;
    var functions = [];  // null where a place is free
    var counts = [];

    function placeOf(wanted) {
        for (var i = 0; i < functions.length; ++i) {
            if (functions[i] === wanted) {
                return i;
            }
        }
        return -1;
    }

    function keep(wanted) {
        if (typeof wanted !== "function") {
            return -1;
        }
        var index = placeOf(wanted);
        if (index < 0) {
            index = placeOf(null);
            index = index < 0 ? functions.length : index;
            functions[index] = wanted;
            counts[index] = 0;
        }
        ++counts[index];
        return index;
    }

    function drop(index) {
        --counts[index];
        if (counts[index] === 0) {
            functions[index] = null;
        }
    }

    function call(index, all) {
        var values = [];
        for (var i = 2; i < all.length; ++i) {
            values[i - 2] = all[i];
        }
        return apply(functions[index], undefined, values);
    }

    if (name in window) {
        return;
    }
    Object.defineProperty(window, name, {
        value: function (operation, subject) {
            switch (operation) {
            case 0: return keep(subject);
            case 1: return functions[subject];
            case 2: return drop(subject);
            case 3: return call(subject, arguments);
            }
        }
    });
})
