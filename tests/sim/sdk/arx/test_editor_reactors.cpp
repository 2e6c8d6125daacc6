#include <aced.h>
#include <gtest/gtest.h>

#include <vector>

#include "sim/sdk/arx/ArxHost.h"

namespace {

class Recorder : public AcEditorReactor {
public:
    ~Recorder() override { acedEditor->removeReactor(this); }

    void commandWillStart(const ACHAR* name) override { log += CString(_T("start:")) + name + _T(" "); }
    void commandEnded(const ACHAR* name) override { log += CString(_T("end:")) + name + _T(" "); }
    void commandCancelled(const ACHAR* name) override { log += CString(_T("cancel:")) + name + _T(" "); }
    void commandFailed(const ACHAR* name) override { log += CString(_T("fail:")) + name + _T(" "); }
    void sysVarWillChange(const ACHAR* name) override { log += CString(_T("will:")) + name + _T(" "); }
    void sysVarChanged(const ACHAR* name, bool success) override {
        log += CString(_T("changed:")) + name + (success ? _T("+ ") : _T("- "));
    }

    CString log;
};

class Remover : public AcEditorReactor {
public:
    explicit Remover(AcEditorReactor* victim) : m_victim(victim) {}
    void commandWillStart(const ACHAR*) override {
        acedEditor->removeReactor(m_victim);
        acedEditor->removeReactor(this);
    }

private:
    AcEditorReactor* m_victim;
};

}  // namespace

TEST(EditorReactors, EachReceivesEveryNotification) {
    Recorder first;
    Recorder second;
    acedEditor->addReactor(&first);
    acedEditor->addReactor(&second);
    arxFireCommandWillStart(_T("LINE"));
    arxFireCommandEnded(_T("LINE"));
    arxFireCommandCancelled(_T("ARC"));
    arxFireCommandFailed(_T("U"));
    arxFireSysVarWillChange(_T("COLORTHEME"));
    arxFireSysVarChanged(_T("COLORTHEME"), true);
    arxFireSysVarChanged(_T("LTSCALE"), false);
    EXPECT_TRUE(
        first.log ==
        _T("start:LINE end:LINE cancel:ARC fail:U will:COLORTHEME changed:COLORTHEME+ changed:LTSCALE- "));
    EXPECT_TRUE(second.log == first.log);
}

TEST(EditorReactors, AddingTwiceNotifiesOnce) {
    Recorder reactor;
    acedEditor->addReactor(&reactor);
    acedEditor->addReactor(&reactor);
    EXPECT_EQ(arxEditorReactorCount(), 1);
    arxFireCommandWillStart(_T("LINE"));
    EXPECT_TRUE(reactor.log == _T("start:LINE "));
}

TEST(EditorReactors, RemovedReactorIsNotNotified) {
    Recorder reactor;
    acedEditor->addReactor(&reactor);
    acedEditor->removeReactor(&reactor);
    arxFireCommandWillStart(_T("LINE"));
    EXPECT_TRUE(reactor.log.IsEmpty());
    EXPECT_EQ(arxEditorReactorCount(), 0);
}

TEST(EditorReactors, ReactorRemovedDuringANotificationIsSkipped) {
    Recorder victim;
    Remover remover(&victim);
    acedEditor->addReactor(&remover);
    acedEditor->addReactor(&victim);
    arxFireCommandWillStart(_T("LINE"));
    EXPECT_TRUE(victim.log.IsEmpty());
    EXPECT_EQ(arxEditorReactorCount(), 0);
}

TEST(EditorReactors, NullIsIgnored) {
    acedEditor->addReactor(nullptr);
    EXPECT_EQ(arxEditorReactorCount(), 0);
}
