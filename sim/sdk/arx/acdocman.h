#pragma once

// Documents and their manager. Simplified: what a document is and does is the host's (see ArxHost); document
// reactors and locks are not there.

#include "acadstrc.h"
#include "rxobject.h"

class AcApDocument : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcApDocument)

    /// Full path of the drawing, or its title while it has none.
    virtual const ACHAR* fileName() const = 0;
    virtual const ACHAR* docTitle() const = 0;

    /// True when no command is in progress in the document.
    bool isQuiescent() const;
};

class AcApDocManager : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcApDocManager)

    virtual AcApDocument* curDocument() const = 0;
    virtual AcApDocument* mdiActiveDocument() const = 0;
    virtual int documentCount() const = 0;

    /// Queues text for the document's command line, as if typed; the host takes it when it is next idle.
    virtual Acad::ErrorStatus sendStringToExecute(AcApDocument* document, const ACHAR* text,
                                                  bool activate = true, bool wrapUpInactiveDocument = false,
                                                  bool echoString = true) = 0;
};

AcApDocManager* acDocManagerPtr();
#define acDocManager acDocManagerPtr()
#define curDoc() (acDocManagerPtr()->curDocument())
