#include "browser/page/ContentTypes.h"

namespace browser {

namespace {

const char kXhtml[] = "application/xhtml+xml";

bool IsTelevisionPage(const QByteArray& type) {
    return type == "application/vnd.hbbtv.xhtml+xml" || type == "application/ce-html+xml";
}

}  // namespace

QByteArray BrowserContentType(const QByteArray& contentType) {
    const int end = contentType.indexOf(';');
    const QByteArray type = contentType.left(end).trimmed().toLower();
    if (!IsTelevisionPage(type)) {
        return contentType;
    }
    return end < 0 ? QByteArray(kXhtml) : kXhtml + contentType.mid(end);
}

QByteArray FileContentType(const QUrl& file) {
    const QString path = file.path();
    const bool xhtml = path.endsWith(QLatin1String(".xhtml"), Qt::CaseInsensitive) ||
                       path.endsWith(QLatin1String(".cehtml"), Qt::CaseInsensitive);
    return file.isLocalFile() && xhtml ? QByteArray(kXhtml) : QByteArray();
}

}  // namespace browser
