// What assistive technology is told about widgets whose class does not say it.
#pragma once

#include <QAccessible>

#include <functional>

class QWidget;

namespace quillmark {

/// Presents a widget with this role under its accessible name. With an action to `press` it, it is
/// a control, and what it is made of is not told. To be called in the widget's constructor.
void setAccessibleRole(QWidget* widget, QAccessible::Role role, std::function<void()> press = {});

/// The same for a widget that is a single thing to whoever cannot see it: of what stands in it
/// only widgets that the keyboard reaches, and progress bars, are told. The rest has to be in its
/// description.
void setAccessibleWhole(QWidget* widget, QAccessible::Role role);

} // namespace quillmark
