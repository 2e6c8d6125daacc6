#include "ArxHost.h"
#include "ArxThread.h"
#include "acdocman.h"

ACRX_NO_CONS_DEFINE_MEMBERS(AcApDocument, AcRxObject)
ACRX_NO_CONS_DEFINE_MEMBERS(AcApDocManager, AcRxObject)

bool AcApDocument::isQuiescent() const {
    arxRequireUiThread("AcApDocument::isQuiescent");
    return arxHost().isQuiescent(this);
}

namespace {

/// The current and the active document are the same; the host determines which it is.
class DocManager : public AcApDocManager {
public:
    AcApDocument* curDocument() const override {
        arxRequireUiThread("AcApDocManager::curDocument");
        return arxHost().currentDocument();
    }

    AcApDocument* mdiActiveDocument() const override {
        arxRequireUiThread("AcApDocManager::mdiActiveDocument");
        return arxHost().currentDocument();
    }

    int documentCount() const override {
        arxRequireUiThread("AcApDocManager::documentCount");
        return arxHost().documentCount();
    }

    Acad::ErrorStatus sendStringToExecute(AcApDocument* document, const ACHAR* text, bool activate,
                                          bool wrapUpInactiveDocument, bool echoString) override {
        arxRequireUiThread("AcApDocManager::sendStringToExecute");
        if (document == nullptr) {
            return Acad::eNoDocument;
        }
        if (text == nullptr) {
            return Acad::eInvalidInput;
        }
        return arxHost().sendString(document, text, activate, wrapUpInactiveDocument, echoString);
    }
};

}  // namespace

AcApDocManager* acDocManagerPtr() {
    arxRequireUiThread("acDocManagerPtr");
    static DocManager manager;
    return &manager;
}
