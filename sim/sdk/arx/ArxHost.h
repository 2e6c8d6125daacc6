#pragma once

#include <afxwin.h>

#include "acadstrc.h"
#include "adsdef.h"
#include "rxdefs.h"

class AcApDocument;

/// How a docked palette set stands, as the host remembers it between runs.
struct ArxDockState {
    UINT dockBarId = 0;  ///< AFX_IDW_DOCKBAR_LEFT or AFX_IDW_DOCKBAR_RIGHT
    int width = 0;       ///< of the docked set, in pixels
};

/// What the ObjectARX slice needs of the program it runs in. zentri-host implements it; tests install a fake.
/// The module never sees this header. All calls come on the UI thread, but for print().
class ArxHost {
public:
    virtual ~ArxHost() = default;

    /// Text printed with acutPrintf, already formatted. Any thread.
    virtual void print(const CString& text) = 0;

    /// The value of a system variable; false when there is none of that name. A string result is allocated
    /// with malloc and owned by the caller.
    virtual bool getVar(const ACHAR* name, resbuf& value) = 0;

    virtual CMDIFrameWnd* frame() = 0;
    virtual CView* drawingView() = 0;

    virtual AcApDocument* currentDocument() = 0;
    virtual int documentCount() { return currentDocument() != nullptr ? 1 : 0; }
    /// True when no command is in progress in the document.
    virtual bool isQuiescent(const AcApDocument* document) = 0;
    /// Queues text for the document's command line.
    virtual Acad::ErrorStatus sendString(AcApDocument* document, const ACHAR* text, bool activate,
                                         bool wrapUpInactiveDocument, bool echo) = 0;

    /// True when the host offers the service.
    virtual bool hasService(const ACHAR* service) = 0;
    /// The address behind a service's symbol, or null.
    virtual void* serviceSymbol(const ACHAR* service, const char* symbol) = 0;

    /// The remembered state of the palette set of this title; false when there is none. A host that remembers
    /// nothing leaves this as it is.
    virtual bool dockState(const CString& title, ArxDockState& state);
    /// The palette set has been docked, or its width has changed.
    virtual void dockStateChanged(const CString& title, const ArxDockState& state);

    /// The palettes' colours: true for the dark interface.
    virtual bool isDark() { return false; }
};

/// The installed host. Calling into the slice without one ends the program with a message.
ArxHost& arxHost();
/// Installs the host; null takes it away. The caller keeps ownership.
void setArxHost(ArxHost* host);

// What the program tells the editor's reactors, in the order in which they were attached. A reactor may
// attach or remove reactors meanwhile.
void arxFireCommandWillStart(const ACHAR* commandName);
void arxFireCommandEnded(const ACHAR* commandName);
void arxFireCommandCancelled(const ACHAR* commandName);
void arxFireCommandFailed(const ACHAR* commandName);
void arxFireSysVarWillChange(const ACHAR* variableName);
void arxFireSysVarChanged(const ACHAR* variableName, bool success);
/// How many reactors are attached.
int arxEditorReactorCount();

/// Sends a message to every loaded module: kQuitMsg when the program ends, kLoadDwgMsg for a new document.
void arxSendToModules(AcRx::AppMsgCode message);
/// How many modules have initialised the dialog library so far.
int arxDialogLibraryInitialisations();
/// Unloads every module, the last loaded first, locked or not, as the program's end does.
void arxUnloadAllModules();
