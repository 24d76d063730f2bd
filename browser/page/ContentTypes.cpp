#include "browser/page/ContentTypes.h"

namespace browser {

namespace {

const char kXhtml[] = "application/xhtml+xml";

bool IsTelevisionPage(const QByteArray& type) {
    return type == "application/vnd.hbbtv.xhtml+xml" || type == "application/ce-html+xml";
}

}  // namespace

QByteArray BrowserContentType(const QByteArray& contentType) {
    const int semicolon = contentType.indexOf(';');
    const int end = semicolon < 0 ? contentType.size() : semicolon;
    const QByteArray type = contentType.left(end).trimmed().toLower();
    return IsTelevisionPage(type) ? kXhtml + contentType.mid(end) : contentType;
}

QByteArray FileContentType(const QUrl& file) {
    const QString path = file.path();
    const bool xhtml = path.endsWith(QLatin1String(".xhtml"), Qt::CaseInsensitive) ||
                       path.endsWith(QLatin1String(".cehtml"), Qt::CaseInsensitive);
    return file.isLocalFile() && xhtml ? QByteArray(kXhtml) : QByteArray();
}

}  // namespace browser
