#include <algorithm>
#include <vector>

#include "ArxHost.h"
#include "ArxThread.h"
#include "acdocman.h"

ACRX_NO_CONS_DEFINE_MEMBERS(AcApDocument, AcRxObject)
ACRX_NO_CONS_DEFINE_MEMBERS(AcApDocManagerReactor, AcRxObject)
ACRX_NO_CONS_DEFINE_MEMBERS(AcApDocManager, AcRxObject)

void AcApDocManagerReactor::documentToBeDestroyed(AcApDocument*) {}

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

    void addReactor(AcApDocManagerReactor* reactor) override {
        arxRequireUiThread("AcApDocManager::addReactor");
        if (!has(reactor)) {
            m_reactors.push_back(reactor);
        }
    }
    void removeReactor(AcApDocManagerReactor* reactor) override {
        arxRequireUiThread("AcApDocManager::removeReactor");
        m_reactors.erase(std::remove(m_reactors.begin(), m_reactors.end(), reactor), m_reactors.end());
    }
    void announceDestruction(AcApDocument* document) {
        arxRequireUiThread("arxFireDocumentToBeDestroyed");
        const std::vector<AcApDocManagerReactor*> reactors = m_reactors;
        for (AcApDocManagerReactor* const reactor : reactors) {
            if (has(reactor)) {
                reactor->documentToBeDestroyed(document);
            }
        }
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

private:
    bool has(const AcApDocManagerReactor* reactor) const {
        return std::find(m_reactors.begin(), m_reactors.end(), reactor) != m_reactors.end();
    }

    std::vector<AcApDocManagerReactor*> m_reactors;
};

DocManager& docManager() {
    static DocManager manager;
    return manager;
}

}  // namespace

AcApDocManager* acDocManagerPtr() {
    arxRequireUiThread("acDocManagerPtr");
    return &docManager();
}

void arxFireDocumentToBeDestroyed(AcApDocument* document) {
    docManager().announceDestruction(document);
}
