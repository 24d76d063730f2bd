// Playing a script of lines for the remote.
#pragma once

#include <QString>
#include <vector>

#include "browser/remote/Completion.h"

namespace browser {

// Reads the file, and plays it when it has no fault: sends each line at its time and prints the answers. The exit
// status: 0 when all was done, 1 when something was not, 2 when the script is at fault.
int Play(const QString& socket, const QString& file, const std::vector<CommandText>& commands);

}  // namespace browser
