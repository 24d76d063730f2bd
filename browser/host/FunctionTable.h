// The page's side of a cure: see adapter/HeldFunctions.h.
#pragma once

#include <QWebFrame>

namespace browser {

// Puts the table of held functions into a frame's window, before the page's scripts run.
void InstallFunctionTable(QWebFrame& frame);

// Whether that has been done in the window that the frame has now.
bool HasFunctionTable(QWebFrame& frame);

}  // namespace browser
