// The application's own icons, one SVG drawing each in app/resources/Symbols, drawn in one colour
// that follows the palette.
#pragma once

#include <QColor>
#include <QIcon>
#include <QPixmap>
#include <QString>

namespace quillmark {

/// The drawing of that name, such as "folder", in the palette's text colour: dimmed where it is
/// disabled, in the colour of selected text where it is selected. Sharp at every size and scale.
[[nodiscard]] QIcon symbolIcon(const QString& name);

/// The same in a colour of its own, which only "disabled" dims.
[[nodiscard]] QIcon symbolIcon(const QString& name, const QColor& colour);

/// A square picture of the drawing, `extent` wide in device-independent pixels.
[[nodiscard]] QPixmap symbolPixmap(const QString& name, const QColor& colour, int extent,
                                   qreal devicePixelRatio);

} // namespace quillmark
