// Cure: functions that the plug-in keeps (handlers and listeners) live as long as it keeps them.
//
// Qt WebKit ties the NPObject of a script's function to one of the frame's plug-in instances, whichever comes first in
// a hash table. When that instance goes, the function is dead for another instance that holds it, and giving it back
// to the page may crash the process. So the function stays with the page, in a table that the TV browser puts into each
// window (held-functions.js), and the plug-in gets an object of the adapter's that calls it there.
#pragma once

#include "npapi/npapi.h"

namespace adapter {

// Where `value` is a function of the page's: replaces it by the adapter's object for it and returns true; the caller
// then owns that reference. The same function of a page gives the same object as long as anyone holds it.
bool ReplaceByHeld(NPP npp, NPVariant& value);

// Notes for whoever observes that the adapter's object in `value` is a handler: under which name the page set it.
void NameHandler(const NPVariant& value, NPIdentifier property);

// Where `value` holds an object of the adapter's: gives that back and puts the page's own function in its place.
void ReplaceByOriginal(NPVariant& value);

// Lets the pages' tables forget the functions that the plug-in holds no more. Not while garbage is collected.
void DropLetGo();

}  // namespace adapter
