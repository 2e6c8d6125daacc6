#include "tests/host/LoadedModule.h"

#include <accmd.h>
#include <aced.h>
#include <rxdlinkr.h>
#include <rxregsvc.h>

#include <QAbstractButton>
#include <QApplication>
#include <QListWidget>
#include <QTextEdit>
#include <QThread>

#include "tests/host/FakeAccount.h"
#include "tests/host/HostCommand.h"

LoadedModule::LoadedModule(const QString& file) : m_file(file) {
    FakeAccount::reset();
    FakeAccount::offer(program.host());
    FakeAccount::token = _T("token");
    program.host().setVar(_T("COLORTHEME"), 1);
}

LoadedModule::~LoadedModule() {
    arxUnloadAllModules();
    TestProgram::settle();
}

QString LoadedModule::builtFile() {
    return QStringLiteral(MODULE_FILE);
}

const ACHAR* LoadedModule::name() {
    return _T("ZR_Zentri.arx");
}

bool LoadedModule::load() {
    return acrxLoadModule(CString(reinterpret_cast<const ACHAR*>(m_file.utf16()), m_file.size()), true);
}

bool LoadedModule::unload() {
    return acrxUnloadModule(name());
}

bool LoadedModule::run(const ACHAR* command) {
    return runHostCommand(command);
}

bool LoadedModule::openPanel() {
    program.host().clearPrinted();
    return run(_T("KQ_AICHAT")) && TestProgram::pumpUntil([this] {
               return program.host().printedText().Find(_T("\nZentri:用户数据初始化完成")) >= 0 && isIdle();
           });
}

bool LoadedModule::isIdle() {
    for (const QThread* worker : QCoreApplication::instance()->findChildren<QThread*>()) {
        if (worker->isRunning()) {
            return false;
        }
    }
    return true;
}

void LoadedModule::ask(const QString& question) {
    view()->findChild<QTextEdit*>(QStringLiteral("textEdit_userInput"))->setPlainText(question);
    view()->findChild<QAbstractButton*>(QStringLiteral("toolButton_Send"))->click();
}

bool LoadedModule::waitForAnswer() {
    const QListWidget* const list = chatList();
    if (list->count() == 0) {
        return false;
    }
    // An empty answer is no higher than the question, which has one line.
    const QListWidgetItem* const question = list->item(list->count() - 2);
    const QListWidgetItem* const answer = list->item(list->count() - 1);
    return TestProgram::pumpUntil(
        [=] { return answer->sizeHint().height() > question->sizeHint().height(); });
}

int LoadedModule::bars() const {
    return static_cast<int>(program.frame()->GetControlBars().size());
}

CAdUiPaletteSet* LoadedModule::paletteSet() const {
    for (CControlBar* const bar : program.frame()->GetControlBars()) {
        if (auto* const set = dynamic_cast<CAdUiPaletteSet*>(bar)) {
            return set;
        }
    }
    return nullptr;
}

QWidget* LoadedModule::view() {
    if (QCoreApplication::instance() == nullptr) {
        return nullptr;
    }
    for (QWidget* widget : QApplication::allWidgets()) {
        if (widget->objectName() == QStringLiteral("ZR_ZentriPaletteViewClass")) {
            return widget;
        }
    }
    return nullptr;
}

QListWidget* LoadedModule::chatList() {
    return view()->findChild<QListWidget*>(QStringLiteral("listWidget_ChatView"));
}
