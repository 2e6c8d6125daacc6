#pragma once

// Documents and the document manager.
// Simplified: the host implements documents (see ArxHost); no document reactors, no document locking.

#include "acadstrc.h"
#include "rxobject.h"

class AcApDocument : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcApDocument)

    /// The drawing's full path, or its title if it has not been saved.
    virtual const ACHAR* fileName() const = 0;
    virtual const ACHAR* docTitle() const = 0;

    /// Whether no command is in progress in the document.
    bool isQuiescent() const;
};

class AcApDocManager : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcApDocManager)

    virtual AcApDocument* curDocument() const = 0;
    virtual AcApDocument* mdiActiveDocument() const = 0;
    virtual int documentCount() const = 0;

    /// Queues text for the document's command line, as if typed; the host executes it when it is idle.
    virtual Acad::ErrorStatus sendStringToExecute(AcApDocument* document, const ACHAR* text,
                                                  bool activate = true, bool wrapUpInactiveDocument = false,
                                                  bool echoString = true) = 0;
};

AcApDocManager* acDocManagerPtr();
#define acDocManager acDocManagerPtr()
#define curDoc() (acDocManagerPtr()->curDocument())
