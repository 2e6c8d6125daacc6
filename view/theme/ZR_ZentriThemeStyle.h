#pragma once

#include <QVariant>

class QObject;

/// The dynamic property that carries the colour theme on every chat widget: kLightTheme or kDarkTheme. Style
/// sheets select their rules by it; with any other value only the rules without a theme selector apply.
constexpr char kColorThemeProperty[] = "ZR_ColorTheme";
constexpr int kLightTheme = 1;
constexpr int kDarkTheme = 0;

/// Sets the property on the object and all its descendants, depth first in child order, and re-polishes each
/// widget, because a style sheet evaluates property selectors only while polishing. An exception ends the
/// walk of its branch only. A null object is ignored. UI thread.
void applyThemeProperty(QObject* object, const char* name, const QVariant& value);

/// Applies the object's own theme to all its descendants. For a panel that has created children since the
/// last theme change. A null object is ignored. UI thread.
void reapplyOwnTheme(QObject* panel);
