#include "sim/cad/arx/HostArx.h"

#include <acdocman.h>
#include <aced.h>
#include <acutmem.h>

#include <stdexcept>

#include "sim/cad/app/HostApp.h"
#include "sim/cad/app/MainFrame.h"
#include "sim/cad/app/WideText.h"

namespace cad {

namespace {

/// The program's only document.
class Document : public AcApDocument {
public:
    explicit Document(const std::string& title) : m_title(toWide(title)) {}

    const ACHAR* fileName() const override { return m_title; }
    const ACHAR* docTitle() const override { return m_title; }

private:
    CString m_title;
};

const ACHAR* const kAccountService = _T("ZR_ACCOUNT");
constexpr UINT kLongestMessage = 512;

/// MFC throws CException by pointer; rethrows it as a std::runtime_error, whose text the editor can print.
void runModuleFunction(AcRxFunctionPtr function) {
    try {
        function();
    } catch (CException* exception) {
        ACHAR text[kLongestMessage] = {};
        exception->GetErrorMessage(text, kLongestMessage);
        exception->Delete();
        throw std::runtime_error(fromWide(text, ::lstrlen(text)));
    }
}

}  // namespace

HostArx::HostArx(HostApp& app, const std::string& token, bool maySignIn)
    : m_app(app), m_account(token, maySignIn), m_document(std::make_unique<Document>("Drawing1.dwg")) {
    setArxHost(this);
    m_app.editor().addListener(this);
    m_app.editor().setExternalCommands(this);
}

HostArx::~HostArx() {
    arxFireDocumentToBeDestroyed(m_document.get());
    m_app.editor().setExternalCommands(nullptr);
    m_app.editor().removeListener(this);
    setArxHost(nullptr);
}

void HostArx::print(const CString& text) {
    m_app.editor().commandLine().print(fromWide(text));
    if (m_app.frame() != nullptr) {
        m_app.frame()->refresh();
    }
}

bool HostArx::getVar(const ACHAR* name, resbuf& value) {
    const SystemVariable* const variable = m_app.editor().variables().find(fromWide(name, ::lstrlen(name)));
    if (variable == nullptr) {
        return false;
    }
    const VariableValue current = variable->current();
    value.rbnext = nullptr;
    if (const auto* number = std::get_if<int>(&current)) {
        value.restype = RTSHORT;
        value.resval.rint = static_cast<short>(*number);
    } else if (const auto* real = std::get_if<double>(&current)) {
        value.restype = RTREAL;
        value.resval.rreal = *real;
    } else if (const auto* point = std::get_if<Point>(&current)) {
        value.restype = RT3DPOINT;
        value.resval.rpoint[0] = point->x;
        value.resval.rpoint[1] = point->y;
        value.resval.rpoint[2] = 0;
    } else {
        value.restype = RTSTR;
        return acutNewString(toWide(std::get<std::string>(current)), value.resval.rstring) == Acad::eOk;
    }
    return true;
}

CMDIFrameWnd* HostArx::frame() {
    return m_app.frame();
}

CView* HostArx::drawingView() {
    return m_app.frame() == nullptr ? nullptr : &m_app.frame()->view();
}

AcApDocument* HostArx::currentDocument() {
    return m_document.get();
}

bool HostArx::isQuiescent(const AcApDocument*) {
    return m_app.editor().isQuiescent();
}

Acad::ErrorStatus HostArx::sendString(AcApDocument* document, const ACHAR* text, bool, bool, bool echo) {
    if (document != m_document.get()) {
        return Acad::eNoDocument;
    }
    m_app.editor().sendString(fromWide(text, ::lstrlen(text)), echo);
    return Acad::eOk;
}

bool HostArx::hasService(const ACHAR* service) {
    return ::lstrcmp(service, kAccountService) == 0;
}

void* HostArx::serviceSymbol(const ACHAR* service, const char* symbol) {
    return hasService(service) ? Account::symbol(symbol) : nullptr;
}

bool HostArx::dockState(const CString& toolId, ArxDockState& state) {
    const auto& palettes = m_app.state().palettes;
    const auto found = palettes.find(fromWide(toolId));
    if (found == palettes.end()) {
        return false;
    }
    state.dockBarId = found->second.side == DockSide::Right ? AFX_IDW_DOCKBAR_RIGHT : AFX_IDW_DOCKBAR_LEFT;
    state.width = found->second.width;
    return true;
}

void HostArx::dockStateChanged(const CString& toolId, const ArxDockState& state) {
    const DockSide side = state.dockBarId == AFX_IDW_DOCKBAR_RIGHT ? DockSide::Right : DockSide::Left;
    m_app.state().palettes[fromWide(toolId)] = {side, state.width};
}

bool HostArx::isDark() {
    return m_app.editor().variables().integer("COLORTHEME") == 0;
}

void HostArx::commandWillStart(const std::string& globalName) {
    arxFireCommandWillStart(toWide(globalName));
}
void HostArx::commandEnded(const std::string& globalName) {
    arxFireCommandEnded(toWide(globalName));
}
void HostArx::commandCancelled(const std::string& globalName) {
    arxFireCommandCancelled(toWide(globalName));
}
void HostArx::commandFailed(const std::string& globalName) {
    arxFireCommandFailed(toWide(globalName));
}
void HostArx::sysVarWillChange(const std::string& name) {
    arxFireSysVarWillChange(toWide(name));
}
void HostArx::sysVarChanged(const std::string& name, bool success) {
    arxFireSysVarChanged(toWide(name), success);
}

std::optional<ExternalCommand> HostArx::find(const std::string& typedName) const {
    AcEdCommandStack* const stack = acedRegCmds;
    const AcEdCommand* const command =
        stack == nullptr ? nullptr : stack->lookupCmd(toWide(typedName), false);
    if (command == nullptr || command->functionAddr() == nullptr) {
        return std::nullopt;
    }
    ExternalCommand found;
    found.globalName = fromWide(command->globalName(), ::lstrlen(command->globalName()));
    found.transparent = (command->commandFlags() & ACRX_CMD_TRANSPARENT) != 0;
    found.noHistory = (command->commandFlags() & ACRX_CMD_NOHISTORY) != 0;
    found.run = [function = command->functionAddr()] { runModuleFunction(function); };
    return found;
}

}  // namespace cad
