#include "tests/host/TypingFixture.h"

TypingFixture::TypingFixture() {
    load();
    openPanel();
}

void TypingFixture::postCharacters(UINT message, const QString& text) {
    for (const QChar unit : text) {
        PostMessageW(paletteHandle(), message, unit.unicode(), 1);
    }
}
