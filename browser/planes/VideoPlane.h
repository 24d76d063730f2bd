// The video plane: the television's current picture in the rectangle that it was given, black elsewhere.
#pragma once

#include <QPainter>
#include <QRect>

namespace browser {

// Paints the whole stage.
void PaintVideoPlane(QPainter& painter, const QRect& stage);

// The part of the stage that changes with each picture.
QRect PictureOnStage(const QRect& stage);

}  // namespace browser
