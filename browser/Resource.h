// The files that are built into the program.
#pragma once

#include <QString>

namespace browser {

// The text of a file, by its name in the folder browser/.
QString ReadResource(const QString& name);

}  // namespace browser
