// The page's side of a cure: see adapter/HeldFunctions.h.
#pragma once

#include <QWebFrame>

namespace browser {

// Puts the table of held functions into a frame's window, before the page's scripts run; one that is there stays.
void InstallFunctionTable(QWebFrame& frame);

}  // namespace browser
