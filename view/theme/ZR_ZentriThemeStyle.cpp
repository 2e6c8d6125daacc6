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
        // By value: polishing may give a widget further children, and the walk must not follow a changing
        // list.
        const QObjectList children = object->children();
        for (QObject* child : children) {
            applyThemeProperty(child, name, value);
        }
    } catch (...) {
        // A look that is half applied is better than a host that goes down.
    }
}

void reapplyOwnTheme(QObject* panel) {
    if (panel != nullptr) {
        applyThemeProperty(panel, kColorThemeProperty, panel->property(kColorThemeProperty).toInt());
    }
}
