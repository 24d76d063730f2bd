// The content types of interactive-TV pages, as a desktop browser must be told them.
#pragma once

#include <QByteArray>
#include <QUrl>

namespace browser {

// The content type to give to the browser for what a server sent, parameters kept: the types of TV pages are XHTML.
QByteArray BrowserContentType(const QByteArray& contentType);

// The content type of a local file that the browser would not know; empty: let it find out.
QByteArray FileContentType(const QUrl& file);

}  // namespace browser
