#pragma once

// Documents and the document manager.
// Simplified: the host implements documents (see ArxHost); reactors are told of closing documents only; no
// document locking.

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

class AcApDocManagerReactor : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcApDocManagerReactor)

    /// The document is about to be closed. It is still valid.
    virtual void documentToBeDestroyed(AcApDocument* document);
};

class AcApDocManager : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcApDocManager)

    virtual AcApDocument* curDocument() const = 0;
    virtual AcApDocument* mdiActiveDocument() const = 0;
    virtual int documentCount() const = 0;

    /// Attaches the reactor, which the caller keeps owning and removes before deleting it.
    virtual void addReactor(AcApDocManagerReactor* reactor) = 0;
    virtual void removeReactor(AcApDocManagerReactor* reactor) = 0;

    /// Queues text for the document's command line, as if typed; the host executes it when it is idle.
    virtual Acad::ErrorStatus sendStringToExecute(AcApDocument* document, const ACHAR* text,
                                                  bool activate = true, bool wrapUpInactiveDocument = false,
                                                  bool echoString = true) = 0;
};

AcApDocManager* acDocManagerPtr();
#define acDocManager acDocManagerPtr()
#define curDoc() (acDocManagerPtr()->curDocument())
