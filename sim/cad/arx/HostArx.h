#pragma once

#include <ArxHost.h>

#include <memory>
#include <string>

#include "sim/cad/arx/Account.h"
#include "sim/cad/core/CommandTable.h"
#include "sim/cad/core/EditorListener.h"

class AcApDocument;

namespace cad {

class HostApp;

/// Implements the SDK's host interface for loaded modules, and makes the commands that they register
/// available to the editor. UI thread.
class HostArx : public ArxHost, private EditorListener, private ExternalCommands {
public:
    /// Installs itself as the SDK's host; SDK calls work during the lifetime of the object.
    HostArx(HostApp& app, const std::string& token, bool maySignIn);
    HostArx(const HostArx&) = delete;
    HostArx& operator=(const HostArx&) = delete;
    ~HostArx() override;

    void print(const CString& text) override;
    bool getVar(const ACHAR* name, resbuf& value) override;
    CMDIFrameWnd* frame() override;
    CView* drawingView() override;
    AcApDocument* currentDocument() override;
    bool isQuiescent(const AcApDocument* document) override;
    Acad::ErrorStatus sendString(AcApDocument* document, const ACHAR* text, bool activate,
                                 bool wrapUpInactiveDocument, bool echo) override;
    bool hasService(const ACHAR* service) override;
    void* serviceSymbol(const ACHAR* service, const char* symbol) override;
    bool dockState(const CString& toolId, ArxDockState& state) override;
    void dockStateChanged(const CString& toolId, const ArxDockState& state) override;
    bool isDark() override;

private:
    void commandWillStart(const std::string& globalName) override;
    void commandEnded(const std::string& globalName) override;
    void commandCancelled(const std::string& globalName) override;
    void commandFailed(const std::string& globalName) override;
    void sysVarWillChange(const std::string& name) override;
    void sysVarChanged(const std::string& name, bool success) override;

    std::optional<ExternalCommand> find(const std::string& typedName) const override;

    HostApp& m_app;
    Account m_account;
    std::unique_ptr<AcApDocument> m_document;
};

}  // namespace cad
