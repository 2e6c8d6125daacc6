#include <algorithm>
#include <vector>

#include "ArxHost.h"
#include "ArxObjects.h"
#include "ArxThread.h"

ACRX_NO_CONS_DEFINE_MEMBERS(AcEditorReactor, AcRxObject)
ACRX_NO_CONS_DEFINE_MEMBERS(AcEditor, AcRxObject)

void AcEditorReactor::commandWillStart(const ACHAR*) {}
void AcEditorReactor::commandEnded(const ACHAR*) {}
void AcEditorReactor::commandCancelled(const ACHAR*) {}
void AcEditorReactor::commandFailed(const ACHAR*) {}
void AcEditorReactor::sysVarWillChange(const ACHAR*) {}
void AcEditorReactor::sysVarChanged(const ACHAR*, bool) {}

namespace {

class Editor : public AcEditor {
public:
    void addReactor(AcEditorReactor* reactor) override {
        arxRequireUiThread("AcEditor::addReactor");
        if (reactor != nullptr && !has(reactor)) {
            m_reactors.push_back(reactor);
        }
    }

    void removeReactor(AcEditorReactor* reactor) override {
        arxRequireUiThread("AcEditor::removeReactor");
        m_reactors.erase(std::remove(m_reactors.begin(), m_reactors.end(), reactor), m_reactors.end());
    }

    bool has(const AcEditorReactor* reactor) const {
        return std::find(m_reactors.begin(), m_reactors.end(), reactor) != m_reactors.end();
    }

    /// Iterates over a copy and skips reactors that have been removed: a reactor may remove itself or others.
    template <typename Notification>
    void tell(Notification notification) {
        const std::vector<AcEditorReactor*> reactors = m_reactors;
        for (AcEditorReactor* reactor : reactors) {
            if (has(reactor)) {
                notification(*reactor);
            }
        }
    }

    int count() const { return static_cast<int>(m_reactors.size()); }

private:
    std::vector<AcEditorReactor*> m_reactors;
};

Editor& editor() {
    static Editor instance;
    return instance;
}

}  // namespace

AcEditor& arxEditor() {
    return editor();
}

void arxFireCommandWillStart(const ACHAR* commandName) {
    editor().tell([commandName](AcEditorReactor& reactor) { reactor.commandWillStart(commandName); });
}

void arxFireCommandEnded(const ACHAR* commandName) {
    editor().tell([commandName](AcEditorReactor& reactor) { reactor.commandEnded(commandName); });
}

void arxFireCommandCancelled(const ACHAR* commandName) {
    editor().tell([commandName](AcEditorReactor& reactor) { reactor.commandCancelled(commandName); });
}

void arxFireCommandFailed(const ACHAR* commandName) {
    editor().tell([commandName](AcEditorReactor& reactor) { reactor.commandFailed(commandName); });
}

void arxFireSysVarWillChange(const ACHAR* variableName) {
    editor().tell([variableName](AcEditorReactor& reactor) { reactor.sysVarWillChange(variableName); });
}

void arxFireSysVarChanged(const ACHAR* variableName, bool success) {
    editor().tell([=](AcEditorReactor& reactor) { reactor.sysVarChanged(variableName, success); });
}

int arxEditorReactorCount() {
    return editor().count();
}
