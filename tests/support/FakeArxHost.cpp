#include "tests/support/FakeArxHost.h"

namespace {

void close(std::unique_ptr<FakeArxDocument>& document) {
    if (document != nullptr) {
        arxFireDocumentToBeDestroyed(document.get());
        document.reset();
    }
}

}  // namespace

FakeArxHost::FakeArxHost() {
    setArxHost(this);
}

FakeArxHost::~FakeArxHost() {
    setArxHost(nullptr);
}

void FakeArxHost::setDocument(std::unique_ptr<FakeArxDocument> document) {
    close(m_document);
    m_document = std::move(document);
}

void FakeArxHost::switchToDocument(std::unique_ptr<FakeArxDocument> document) {
    close(m_formerDocument);
    m_formerDocument = std::exchange(m_document, std::move(document));
}

void FakeArxHost::closeFormerDocument() {
    close(m_formerDocument);
}

void FakeArxHost::setService(const CString& service, const char* symbol, void* address) {
    m_services[service][symbol] = address;
}

CString FakeArxHost::printedText() const {
    CString text;
    for (const CString& print : m_printed) {
        text += print;
    }
    return text;
}

void FakeArxHost::clearPrinted() {
    m_printed.clear();
}

void FakeArxHost::print(const CString& text) {
    m_printed.push_back(text);
    if (onPrint) {
        onPrint(text);
    }
}

bool FakeArxHost::getVar(const ACHAR* name, resbuf& value) {
    const auto found = m_variables.find(name);
    if (found == m_variables.end()) {
        return false;
    }
    value.rbnext = nullptr;
    value.restype = RTSHORT;
    value.resval.rint = found->second;
    return true;
}

bool FakeArxHost::isQuiescent(const AcApDocument* document) {
    return static_cast<const FakeArxDocument*>(document)->quiescent;
}

Acad::ErrorStatus FakeArxHost::sendString(AcApDocument* document, const ACHAR* text, bool activate,
                                          bool wrapUpInactiveDocument, bool echo) {
    m_sent.push_back({document, text, activate, wrapUpInactiveDocument, echo});
    return Acad::eOk;
}

bool FakeArxHost::hasService(const ACHAR* service) {
    return m_services.count(service) != 0;
}

void* FakeArxHost::serviceSymbol(const ACHAR* service, const char* symbol) {
    const auto symbols = m_services.find(service);
    if (symbols == m_services.end()) {
        return nullptr;
    }
    const auto found = symbols->second.find(symbol);
    return found != symbols->second.end() ? found->second : nullptr;
}

bool FakeArxHost::dockState(const CString& toolId, ArxDockState& state) {
    const auto found = m_dockStates.find(toolId);
    if (found == m_dockStates.end()) {
        return false;
    }
    state = found->second;
    return true;
}

void FakeArxHost::dockStateChanged(const CString& toolId, const ArxDockState& state) {
    m_dockStates[toolId] = state;
}
