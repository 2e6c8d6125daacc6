#pragma once

// What the ObjectARX slice requires of the program, and the notifications that the program sends through the
// slice. Not part of ObjectARX; the module never includes it.

#include <afxwin.h>

#include "acadstrc.h"
#include "adsdef.h"
#include "rxdefs.h"

class AcApDocument;

/// What is not documented, or differs between releases of the host. The defaults leave most to the module;
/// its tests run with each value.
struct ArxVariant {
    /// Whether the destructor of a palette set deletes its palettes. If not, whoever made them deletes them.
    bool setDeletesPalettes = false;
    /// Whether the destructors of palette sets and palettes destroy the window. If not, that of CControlBar
    /// or CWnd does, when the handlers and virtual functions of the derived classes are gone.
    bool setDestroysWindow = false;
    /// What becomes of the underscore before a typed command, which selects the global name, when a
    /// registered name begins with one too. True: the host strips it from either before it compares them.
    /// False: the command is looked up as it was typed, and only then without the underscore.
    bool underscoreIsStripped = true;
};

/// The process's variant; to be changed before what it is about happens. UI thread.
ArxVariant& arxVariant();

/// The docking state of a palette set, as the host remembers it between runs.
struct ArxDockState {
    UINT dockBarId = 0;  ///< AFX_IDW_DOCKBAR_LEFT or AFX_IDW_DOCKBAR_RIGHT
    int width = 0;       ///< docked width, in pixels
};

/// Implemented by zentri-host; tests install a fake. All functions are called on the UI thread: the slice
/// aborts when one of its own is called on another thread.
class ArxHost {
public:
    virtual ~ArxHost() = default;

    /// Prints acutPrintf's formatted text.
    virtual void print(const CString& text) = 0;

    /// Gets the value of a system variable; false if there is no such variable. A string value is allocated
    /// with malloc; the caller owns it.
    virtual bool getVar(const ACHAR* name, resbuf& value) = 0;

    /// Called when the wizard's base class has initialised the module; its result.
    virtual AcRx::AppRetCode baseInitialised() { return AcRx::kRetOK; }
    /// Called when the wizard's base class has undone that.
    virtual void baseUnloaded() {}

    virtual CMDIFrameWnd* frame() = 0;
    virtual CView* drawingView() = 0;

    virtual AcApDocument* currentDocument() = 0;
    virtual int documentCount() { return currentDocument() != nullptr ? 1 : 0; }
    /// Whether no command is in progress in the document.
    virtual bool isQuiescent(const AcApDocument* document) = 0;
    /// Queues text for the document's command line.
    virtual Acad::ErrorStatus sendString(AcApDocument* document, const ACHAR* text, bool activate,
                                         bool wrapUpInactiveDocument, bool echo) = 0;

    /// Whether the host provides the service.
    virtual bool hasService(const ACHAR* service) = 0;
    /// The address of a service's symbol, or null.
    virtual void* serviceSymbol(const ACHAR* service, const char* symbol) = 0;

    /// Gets the remembered state of the palette set with this tool id, a GUID in braces; false if there is
    /// none. The default implementation remembers nothing. Not called for a set without an id.
    virtual bool dockState(const CString& toolId, ArxDockState& state);
    /// Called when a palette set with a tool id has been docked or resized.
    virtual void dockStateChanged(const CString& toolId, const ArxDockState& state);

    /// Whether palettes use the dark colour theme.
    virtual bool isDark() { return false; }
};

/// The installed host. Aborts with a message if there is none.
ArxHost& arxHost();
/// Installs the host; null removes it. The caller keeps ownership.
void setArxHost(ArxHost* host);

// Notify the editor reactors, in the order in which they were attached. A reactor may add or remove reactors
// during the notification.
void arxFireCommandWillStart(const ACHAR* commandName);
void arxFireCommandEnded(const ACHAR* commandName);
void arxFireCommandCancelled(const ACHAR* commandName);
void arxFireCommandFailed(const ACHAR* commandName);
void arxFireSysVarWillChange(const ACHAR* variableName);
void arxFireSysVarChanged(const ACHAR* variableName, bool success);
/// The number of attached reactors.
int arxEditorReactorCount();

/// Notifies the document manager's reactors, before the program closes a document. A reactor may add or
/// remove reactors during the notification.
void arxFireDocumentToBeDestroyed(AcApDocument* document);

/// Sends a message to all loaded modules, for example kQuitMsg when the program exits, kLoadDwgMsg for a new
/// document.
void arxSendToModules(AcRx::AppMsgCode message);
/// How many modules have initialised the dialog library so far.
int arxDialogLibraryInitialisations();
/// Unloads all modules at program exit: last loaded first, locked ones too.
void arxUnloadAllModules();
