#pragma once

#include <afxwin.h>

#include "adsdef.h"
#include "acadstrc.h"

class AcApDocument;

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
    /// True when no command is in progress in the document.
    virtual bool isQuiescent(const AcApDocument* document) = 0;
    /// Queues text for the document's command line.
    virtual Acad::ErrorStatus sendString(AcApDocument* document, const ACHAR* text, bool activate,
                                         bool wrapUpInactiveDocument, bool echo) = 0;

    /// The address behind a service's symbol, or null.
    virtual void* serviceSymbol(const ACHAR* service, const char* symbol) = 0;
};

/// The installed host. Calling into the slice without one ends the program with a message.
ArxHost& arxHost();
/// Installs the host; null takes it away. The caller keeps ownership.
void setArxHost(ArxHost* host);
