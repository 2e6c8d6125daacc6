#include <QVariant>
#include <QWidget>

#include "host/ZR_ZentriSysReactor.h"
#include "host/core/ZR_ZentriPaletteAccess.h"
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

TEST_F(SysReactor, AThemeChangeReachesTheViewAtOnce) {
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

TEST_F(SysReactor, AnotherVariableIsIgnored) {
    load();
    change(_T("COLORTHEME"), 1);
    change(_T("LTSCALE"), 0);
    change(_T("colortheme"), 0);
    change(_T("COLORTHEME2"), 0);
    change(_T("COLOR"), 0);
    EXPECT_EQ(theme(), 1);
}

TEST_F(SysReactor, AFailedChangeIsIgnored) {
    load();
    change(_T("COLORTHEME"), 1);
    change(_T("COLORTHEME"), 0, false);
    EXPECT_EQ(theme(), 1);
}

TEST_F(SysReactor, WithoutAPaletteChangesAreIgnored) {
    ZR_ZentriSysReactor reactor;
    ASSERT_EQ(zentriPaletteAccess(), nullptr);
    reactor.sysVarChanged(_T("COLORTHEME"), true);
    load();
    unload();
    ASSERT_EQ(zentriPaletteAccess(), nullptr);
    reactor.sysVarChanged(_T("COLORTHEME"), true);
}

TEST_F(SysReactor, OpeningThePanelAppliesAnEarlierChange) {
    program.host().setVar(_T("COLORTHEME"), 0);
    load();
    openPanel();
    EXPECT_EQ(theme(), 0);
}
