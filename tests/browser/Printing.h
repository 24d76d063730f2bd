// Qt's values in the messages of failed tests.
#pragma once

#include <QByteArray>
#include <QRect>
#include <QString>
#include <ostream>

inline std::ostream& operator<<(std::ostream& stream, const QString& text) {
    return stream << '"' << text.toStdString() << '"';
}

inline std::ostream& operator<<(std::ostream& stream, const QByteArray& bytes) {
    return stream << '"' << bytes.toStdString() << '"';
}

inline std::ostream& operator<<(std::ostream& stream, const QRect& rectangle) {
    return stream << rectangle.x() << ',' << rectangle.y() << ' ' << rectangle.width() << 'x' << rectangle.height();
}
