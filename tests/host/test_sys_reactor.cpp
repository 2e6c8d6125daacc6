#include <QVariant>
#include <QWidget>

#include "host/ZR_ZentriModule.h"
#include "host/ZR_ZentriSysReactor.h"
#include "tests/host/ModuleFixture.h"
#include "view/ZR_ZentriPaletteView.h"

namespace {

class SysReactor : public ModuleFixture {
protected:
    int theme() const { return view()->property("ZR_ColorTheme").toInt(); }

    void change(const ACHAR* variable, short value, bool success = true) {
        program.host().setVar(_T("COLORTHEME"), value);
        arxFireSysVarChanged(variable, success);
    }
};

}  // namespace

TEST_F(SysReactor, AChangeOfTheThemeReachesTheViewAtOnce) {
    load();
    change(_T("COLORTHEME"), 0);
    EXPECT_EQ(theme(), 0);
    change(_T("COLORTHEME"), 1);
    EXPECT_EQ(theme(), 1);
}

TEST_F(SysReactor, TheValueIsPassedThroughUnchanged) {
    load();
    change(_T("COLORTHEME"), 5);
    EXPECT_EQ(theme(), 5);
}

TEST_F(SysReactor, AnotherVariableDoesNothing) {
    load();
    change(_T("COLORTHEME"), 1);
    change(_T("LTSCALE"), 0);
    change(_T("colortheme"), 0);
    change(_T("COLORTHEME2"), 0);
    change(_T("COLOR"), 0);
    EXPECT_EQ(theme(), 1);
}

TEST_F(SysReactor, AFailedChangeDoesNothing) {
    load();
    change(_T("COLORTHEME"), 1);
    change(_T("COLORTHEME"), 0, false);
    EXPECT_EQ(theme(), 1);
}

TEST_F(SysReactor, WithoutAPaletteChangesAreIgnored) {
    ZR_ZentriSysReactor reactor;
    ASSERT_EQ(zentriPalette(), nullptr);
    reactor.sysVarChanged(_T("COLORTHEME"), true);
    // The palette of an earlier load is none.
    load();
    unload();
    ASSERT_NE(g_zentriPalette, nullptr);
    reactor.sysVarChanged(_T("COLORTHEME"), true);
    EXPECT_EQ(zentriPalette(), nullptr);
}

TEST_F(SysReactor, TheNextOpeningAppliesAChangeMadeBefore) {
    program.host().setVar(_T("COLORTHEME"), 0);
    load();
    openPanel();
    EXPECT_EQ(theme(), 0);
}
