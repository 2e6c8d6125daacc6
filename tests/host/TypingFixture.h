#pragma once

#include <QString>

#include "tests/host/ModuleFixture.h"

/// The module with its panel open.
class TypingFixture : public ModuleFixture {
protected:
    TypingFixture();

    /// Posts the UTF-16 units as an input method does: characters without keys.
    static void postCharacters(UINT message, const QString& text);
};
