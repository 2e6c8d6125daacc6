#pragma once

#include <QVariant>

class QObject;

/// The dynamic property that carries the colour theme on every chat widget: 1 light, 0 dark. Style sheets
/// select their rules by it; any other value leaves only the rules that do not depend on the theme.
constexpr char kColorThemeProperty[] = "ZR_ColorTheme";

/// Sets the property on the object and on everything below it, children in order and depth first, and
/// polishes every widget on the way anew, because a style sheet looks at properties only while it polishes.
/// An exception ends the walk of its branch and nothing else. A null object is ignored. UI thread.
void applyThemeProperty(QObject* object, const char* name, const QVariant& value);

/// Hands the object's own theme to everything below it: for a panel whose children were made after the last
/// change of the theme.
void reapplyOwnTheme(QObject* panel);
