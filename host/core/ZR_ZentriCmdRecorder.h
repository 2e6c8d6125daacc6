#pragma once

#include <aced.h>
#include <afx.h>

/// Remembers the global name of the last command that started, whoever started it.
class ZR_ZentriCmdRecorder : public AcEditorReactor {
public:
    void commandWillStart(const ACHAR* globalName) override;

    CString lastCommandName() const { return m_lastCommandName; }

private:
    CString m_lastCommandName;
};

/// The module's recorder; null until the module is initialised.
extern ZR_ZentriCmdRecorder* g_zentriCmdRecorder;
