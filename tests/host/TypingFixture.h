#pragma once

#include <QString>

#include "tests/host/ModuleFixture.h"

/// The module with its panel open.
class TypingFixture : public ModuleFixture {
protected:
    TypingFixture();

    /// Gives the input box the Qt focus, as a click in it does, upon which the palette takes the keys.
    void focusInput();
    /// Runs the loop until the input box holds the text and nothing more is on its way.
    bool typed(const QString& text);
    /// Posts the UTF-16 units as an input method does: characters without keys.
    static void postCharacters(UINT message, const QString& text);
    static HWND palette();
};
