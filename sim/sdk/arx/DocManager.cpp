#include "ArxHost.h"
#include "acdocman.h"

ACRX_NO_CONS_DEFINE_MEMBERS(AcApDocument, AcRxObject)
ACRX_NO_CONS_DEFINE_MEMBERS(AcApDocManager, AcRxObject)

bool AcApDocument::isQuiescent() const {
    return arxHost().isQuiescent(this);
}

namespace {

/// The current and the active document are the same; the host determines which it is.
class DocManager : public AcApDocManager {
public:
    AcApDocument* curDocument() const override { return arxHost().currentDocument(); }
    AcApDocument* mdiActiveDocument() const override { return arxHost().currentDocument(); }
    int documentCount() const override { return arxHost().documentCount(); }

    Acad::ErrorStatus sendStringToExecute(AcApDocument* document, const ACHAR* text, bool activate,
                                          bool wrapUpInactiveDocument, bool echoString) override {
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
    static DocManager manager;
    return &manager;
}
