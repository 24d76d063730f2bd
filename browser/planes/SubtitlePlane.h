// The subtitle plane, between video and graphics.
#pragma once

#include <QPainter>
#include <QRect>

namespace browser {

// Paints the television's current subtitles over its picture, scaled as the picture is.
void PaintSubtitlePlane(QPainter& painter, const QRect& stage);

}  // namespace browser
