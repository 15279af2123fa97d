#include "Accessibility.h"

#include "AccessibleElement.h"

#include <QCoreApplication>
#include <QWidget>

namespace Clipboard::Accessibility {

namespace {

QAccessibleInterface* makeElement(const QString& /*className*/, QObject* object)
{
    auto* widget = qobject_cast<QWidget*>(object);
    const bool isOurs = widget != nullptr && widget->property(AccessibleElement::roleProperty).isValid();
    return isOurs ? new AccessibleElement(widget) : nullptr;
}

void tell(QWidget* widget, QAccessible::Event what)
{
    if (!QAccessible::isActive())
        return;
    QAccessibleEvent event(widget, what);
    QAccessible::updateAccessibility(&event);
}

} // namespace

void setRole(QWidget* widget, QAccessible::Role role)
{
    static const bool installed = (QAccessible::installFactory(makeElement), true);
    Q_UNUSED(installed)
    widget->setProperty(AccessibleElement::roleProperty, static_cast<int>(role));
}

void setFocused(QWidget* widget, bool focused)
{
    if (widget->property(AccessibleElement::focusedProperty) == QVariant(focused))
        return;
    widget->setProperty(AccessibleElement::focusedProperty, focused);
    if (!focused || !QAccessible::isActive())
        return;
    // A text field that takes the keyboard at the same time is told of first, this last: it is where the user is.
    const auto tellLater = [widget] {
        if (widget->property(AccessibleElement::focusedProperty).toBool())
            tell(widget, QAccessible::Focus);
    };
    QMetaObject::invokeMethod(widget, tellLater, Qt::QueuedConnection);
}

void announce(QWidget* notice)
{
    // The toolkit says nothing when a window of the tooltip kind appears, which is what notices are.
    tell(notice, QAccessible::ObjectShow);
    tell(notice, QAccessible::Alert);
}

void setShortcut(QWidget* button, const QString& keys)
{
    button->setProperty(AccessibleElement::shortcutProperty, keys);
}

QString spokenKeys(const QString& keys)
{
    QString spoken = keys;
    spoken.replace(QChar(u'⏎'), QCoreApplication::translate("Keys", "Return"));
    spoken.replace(QChar(u'⌫'), QCoreApplication::translate("Keys", "Backspace"));
    return spoken;
}

} // namespace Clipboard::Accessibility
