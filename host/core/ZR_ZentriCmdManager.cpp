#include "host/core/ZR_ZentriCmdManager.h"

#include <acdocman.h>
#include <windows.h>

#include "host/core/ZR_ZentriCmdRecorder.h"
#include "host/core/ZR_ZentriModalScope.h"
#include "host/core/ZR_ZentriText.h"
#include "host/core/ZR_ZentriWideText.h"

namespace {

/// Ctrl-C twice, which cancels in a string sent to the command line: the first leaves a prompt, the second
/// the command.
constexpr const TCHAR* kCancel = _T("\x03\x03");

/// Queues text on the current document, as if typed there.
void sendToCurrentDocument(const CString& text) {
    AcApDocument* const document = acDocManager->curDocument();
    if (document != nullptr) {
        acDocManager->sendStringToExecute(document, text, true, false, true);
    }
}

/// Asks whether to cancel the command in progress for the requested one.
bool mayCancelFor(const CString& command) {
    const CString running =
        g_zentriCmdRecorder != nullptr ? g_zentriCmdRecorder->lastCommandName() : CString();
    CString question;
    question.Format(_T("当前有未结束的【%s】命令，是否取消当前命令并执行【%s】命令？"), running.GetString(),
                    command.GetString());
    const ZR_ZentriModalScope open;
    return MessageBoxW(nullptr, question, _T("命令执行"), MB_YESNO | MB_ICONWARNING) == IDYES;
}

}  // namespace

ZR_ZentriCmdManager& ZR_ZentriCmdManager::instance() {
    static ZR_ZentriCmdManager manager;
    return manager;
}

void ZR_ZentriCmdManager::runCommand(CString command) {
    const AcApDocument* const document = acDocManager->curDocument();
    if (document == nullptr) {
        return;
    }
    // The host takes a terminated string: after an embedded null it would not see the line feed that runs the
    // command.
    command = terminatedText(command);
    // The message box runs the host's message loop, and the document may be closed meanwhile. So the current
    // one is looked up again for each string.
    if (!document->isQuiescent()) {
        if (!mayCancelFor(command)) {
            return;
        }
        sendToCurrentDocument(kCancel);
    }
    sendToCurrentDocument(command + _T("\n"));
    m_lastRunCommand = toQString(command);
}
