#include "view/theme/ZR_ZentriThemeStyle.h"

#include <QObject>
#include <QStyle>
#include <QWidget>

void applyThemeProperty(QObject* object, const char* name, const QVariant& value) {
    if (object == nullptr) {
        return;
    }
    try {
        object->setProperty(name, value);
        if (auto* widget = qobject_cast<QWidget*>(object)) {
            widget->style()->unpolish(widget);
            widget->style()->polish(widget);
        }
        // A copy, because polishing may add children to a widget.
        const QObjectList children = object->children();
        for (QObject* child : children) {
            applyThemeProperty(child, name, value);
        }
    } catch (...) {
        // A partly applied theme is better than an exception in the host.
    }
}

void reapplyOwnTheme(QObject* panel) {
    if (panel != nullptr) {
        applyThemeProperty(panel, kColorThemeProperty, panel->property(kColorThemeProperty).toInt());
    }
}
