#pragma once

#include <gtest/gtest.h>

#include <QString>
#include <memory>

#include "host/CZR_ZentriApp.h"
#include "tests/host/FakeAccount.h"
#include "tests/support/TestProgram.h"
#include "tests/support/http/FakeHttpServer.h"

class QApplication;
class QTextEdit;
class ZR_ZentriPalette;
class ZR_ZentriPaletteSet;
class ZR_ZentriPaletteView;

/// The module's application object in a host with real windows and an AI service that knows no sessions. The
/// module is unloaded when the test ends.
class ModuleFixture : public testing::Test {
protected:
    /// With the module's own Qt application or, if one is passed, in a process that has one already.
    explicit ModuleFixture(QApplication* existing = nullptr);
    ~ModuleFixture() override;

    AcRx::AppRetCode load() { return app.On_kInitAppMsg(&app); }
    AcRx::AppRetCode unload() { return app.On_kUnloadAppMsg(&app); }

    /// Runs a registered command; false when there is none of that name.
    static bool run(const CString& command);
    /// Opens the panel for a signed-in user and waits until the user's sessions have been read.
    void openPanel();
    /// Number of the module's palette sets in the host's frame.
    int paletteSetsInFrame() const;

    /// Null while there is no palette.
    static ZR_ZentriPalette* palette();
    static HWND paletteHandle();
    ZR_ZentriPaletteView* view() const;
    QTextEdit* inputBox() const;

    /// Gives the input box the Qt focus, as a click in it does; the palette then takes the native focus.
    void focusInput();
    /// Runs the host's loop until the input box holds the text and nothing more is on its way.
    bool typed(const QString& text);

    /// The Qt application; the fake service needs it before the module is loaded.
    QApplication* application;
    FakeHttpServer service;
    TestProgram program;
    CZR_ZentriApp app;
};
