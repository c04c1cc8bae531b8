#include "ui/AccessibleRole.h"

#include <QAccessibleWidget>
#include <QMetaType>
#include <QProgressBar>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QWidget>

#include <optional>
#include <utility>

namespace quillmark {

namespace {

/// What a widget has been given, kept as a property of it.
struct Presentation {
    QAccessible::Role role{QAccessible::Client};
    std::function<void()> press;
    bool isWhole{};
};

constexpr const char* property = "accessiblePresentation";

class PresentedWidget final : public QAccessibleWidget {
public:
    PresentedWidget(QWidget* widget, Presentation presentation)
        : QAccessibleWidget(widget, presentation.role), m_presentation(std::move(presentation))
    {
    }

    [[nodiscard]] int childCount() const override { return static_cast<int>(children().size()); }
    [[nodiscard]] QAccessibleInterface* child(int index) const override
    {
        const QWidgetList shown = children();
        if (index < 0 || index >= shown.size()) return nullptr;
        return QAccessible::queryAccessibleInterface(shown.at(index));
    }
    int indexOfChild(const QAccessibleInterface* child) const override
    {
        if (child == nullptr) return -1;
        return static_cast<int>(children().indexOf(qobject_cast<QWidget*>(child->object())));
    }

    [[nodiscard]] QStringList actionNames() const override
    {
        QStringList names = QAccessibleWidget::actionNames();
        if (m_presentation.press) names.prepend(pressAction());
        return names;
    }
    void doAction(const QString& name) override
    {
        if (m_presentation.press && name == pressAction())
            m_presentation.press();
        else
            QAccessibleWidget::doAction(name);
    }

private:
    // As deep as the window's own widgets stand in each other.
    // NOLINTNEXTLINE(misc-no-recursion)
    static void collectOperable(const QWidget* parent, QWidgetList& found)
    {
        for (auto* const child :
             parent->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
            if (child->isWindow() || child->isHidden()) continue;
            if ((child->focusPolicy() & Qt::TabFocus) != 0 ||
                qobject_cast<QProgressBar*>(child) != nullptr)
                found.push_back(child);
            else
                collectOperable(child, found);
        }
    }

    [[nodiscard]] QWidgetList children() const
    {
        QWidgetList found;
        if (m_presentation.press) return found;
        if (m_presentation.isWhole) {
            collectOperable(widget(), found);
            return found;
        }
        for (int i = 0; i < QAccessibleWidget::childCount(); ++i)
            if (auto* const interface = QAccessibleWidget::child(i))
                if (auto* const child = qobject_cast<QWidget*>(interface->object()))
                    found.push_back(child);
        return found;
    }

    Presentation m_presentation;
};

QAccessibleInterface* present(const QString&, QObject* object)
{
    if (object == nullptr || !object->isWidgetType()) return nullptr;
    const QVariant given = object->property(property);
    if (!given.isValid()) return nullptr;
    return new PresentedWidget(static_cast<QWidget*>(object), given.value<Presentation>());
}

void give(QWidget* widget, const Presentation& presentation)
{
    static const bool installed = (QAccessible::installFactory(present), true);
    Q_ASSERT(installed);
    widget->setProperty(property, QVariant::fromValue(presentation));
    // Giving a widget its name has already asked how it is presented.
    if (QAccessibleInterface* const former = QAccessible::queryAccessibleInterface(widget))
        QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(former));
}

} // namespace

void setAccessibleRole(QWidget* widget, QAccessible::Role role, std::function<void()> press)
{
    give(widget, {role, std::move(press), false});
}

void setAccessibleWhole(QWidget* widget, QAccessible::Role role)
{
    give(widget, {role, {}, true});
}

} // namespace quillmark
