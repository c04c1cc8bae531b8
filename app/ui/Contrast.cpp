#include "ui/Contrast.h"

#include <QApplication>
#include <QVariant>
#include <QWidget>

namespace quillmark {

namespace {

// Kept with the application, whose appearance it is part of like the palette.
constexpr const char* property = "moreContrastWanted";

} // namespace

bool moreContrastWanted()
{
    return qApp->property(property).toBool();
}

void setMoreContrastWanted(bool wanted)
{
    qApp->setProperty(property, wanted);
    for (QWidget* widget : QApplication::allWidgets())
        widget->update();
}

} // namespace quillmark
