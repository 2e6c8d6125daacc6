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

/// Follows a document for as long as it is open. A later document may have the address of a closed one, so
/// comparing pointers would not do.
class OpenDocument : public AcApDocManagerReactor {
public:
    explicit OpenDocument(AcApDocument* document) : m_document(document) { acDocManager->addReactor(this); }
    ~OpenDocument() override { acDocManager->removeReactor(this); }
    OpenDocument(const OpenDocument&) = delete;
    OpenDocument& operator=(const OpenDocument&) = delete;

    void documentToBeDestroyed(AcApDocument* document) override {
        if (document == m_document) {
            m_document = nullptr;
        }
    }

    /// Queues text on the document, as if typed there; false if it has been closed.
    bool send(const CString& text) const {
        if (m_document == nullptr) {
            return false;
        }
        acDocManager->sendStringToExecute(m_document, text, true, false, true);
        return true;
    }

private:
    AcApDocument* m_document;
};

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
    AcApDocument* const current = acDocManager->curDocument();
    if (current == nullptr) {
        return;
    }
    // The host takes a terminated string: after an embedded null it would not see the line feed that runs the
    // command.
    command = terminatedText(command);
    // The message box runs the host's message loop: the user may switch to another document meanwhile, whose
    // command nobody has asked about, or close this one.
    const OpenDocument document(current);
    if (!current->isQuiescent() && (!mayCancelFor(command) || !document.send(kCancel))) {
        return;
    }
    if (document.send(command + _T("\n"))) {
        m_lastRunCommand = toQString(command);
    }
}
