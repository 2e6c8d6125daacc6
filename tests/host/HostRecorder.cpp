#include "tests/host/HostRecorder.h"

namespace {

QString text(const ACHAR* name) {
    return QString::fromUtf16(reinterpret_cast<const ushort*>(name));
}

}  // namespace

class HostRecorder::Stack : public AcEdCommandStack {
public:
    explicit Stack(HostRecorder& recorder) : m_recorder(recorder), m_real(acedRegCmds) {
        acrxSysRegistry()->atPut(ACED_REGCMDS_OBJ, this);
    }
    ~Stack() override { acrxSysRegistry()->atPut(ACED_REGCMDS_OBJ, m_real); }

    Acad::ErrorStatus addCommand(const ACHAR* group, const ACHAR* globalName, const ACHAR* localName,
                                 Adesk::Int32 flags, AcRxFunctionPtr function, AcEdUIContext* uiContext,
                                 int functionCode, const AcRxResourceInstance& resources,
                                 AcEdCommand** added) override {
        m_recorder.note(QStringLiteral("addCommand ") + text(globalName));
        m_recorder.commands.push_back(
            {group, globalName, localName, flags, uiContext, functionCode, !resources.isNull()});
        return m_real->addCommand(group, globalName, localName, flags, function, uiContext, functionCode,
                                  resources, added);
    }
    Acad::ErrorStatus removeCmd(const ACHAR* group, const ACHAR* globalName) override {
        m_recorder.note(QStringLiteral("removeCmd ") + text(globalName));
        return m_real->removeCmd(group, globalName);
    }
    Acad::ErrorStatus removeGroup(const ACHAR* group) override {
        m_recorder.note(QStringLiteral("removeGroup ") + text(group));
        return m_real->removeGroup(group);
    }
    Acad::ErrorStatus popGroupToTop(const ACHAR* group) override { return m_real->popGroupToTop(group); }
    AcEdCommand* lookupCmd(const ACHAR* name, bool globalLookup, bool allGroups) override {
        return m_real->lookupCmd(name, globalLookup, allGroups);
    }
    AcEdCommandIterator* iterator() override { return m_real->iterator(); }

private:
    HostRecorder& m_recorder;
    AcEdCommandStack* m_real;
};

class HostRecorder::Editor : public AcEditor {
public:
    explicit Editor(HostRecorder& recorder) : m_recorder(recorder), m_real(acedEditor) {
        acrxSysRegistry()->atPut(ACED_EDITOR_OBJ, this);
    }
    ~Editor() override { acrxSysRegistry()->atPut(ACED_EDITOR_OBJ, m_real); }

    void addReactor(AcEditorReactor* reactor) override {
        m_recorder.note(QStringLiteral("addReactor"));
        m_recorder.addedReactors.push_back(reactor);
        m_real->addReactor(reactor);
    }
    void removeReactor(AcEditorReactor* reactor) override {
        m_recorder.note(QStringLiteral("removeReactor"));
        m_recorder.removedReactors.push_back(reactor);
        m_real->removeReactor(reactor);
    }

private:
    HostRecorder& m_recorder;
    AcEditor* m_real;
};

HostRecorder::HostRecorder()
    : m_stack(std::make_unique<Stack>(*this)), m_editor(std::make_unique<Editor>(*this)) {}

HostRecorder::~HostRecorder() = default;

void HostRecorder::note(const QString& call) const {
    if (onCall) {
        onCall(call);
    }
}
