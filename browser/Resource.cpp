#include "browser/Resource.h"

#include <QFile>

namespace browser {

QString ReadResource(const QString& name) {
    QFile file(QStringLiteral(":/") + name);
    file.open(QIODevice::ReadOnly);
    return QString::fromUtf8(file.readAll()).trimmed();
}

}  // namespace browser
