#pragma once

#include <acdocman.h>
#include <afxwin.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "sim/sdk/arx/ArxHost.h"

/// A document of FakeArxHost.
class FakeArxDocument : public AcApDocument {
public:
    explicit FakeArxDocument(const CString& title = _T("Drawing1.dwg")) : m_title(title) {}

    const ACHAR* fileName() const override { return m_title; }
    const ACHAR* docTitle() const override { return m_title; }

    bool quiescent = true;

private:
    CString m_title;
};

/// A host without a message loop. Records what it is called with and returns what the test has set. Installed
/// as the SDK's host for its lifetime. UI thread.
class FakeArxHost : public ArxHost {
public:
    struct SentString {
        AcApDocument* document;
        CString text;
        bool activate;
        bool wrapUpInactiveDocument;
        bool echo;
    };

    FakeArxHost();
    ~FakeArxHost() override;
    FakeArxHost(const FakeArxHost&) = delete;
    FakeArxHost& operator=(const FakeArxHost&) = delete;

    // Set by the test.
    void setVar(const CString& name, short value) { m_variables[name] = value; }
    void setService(const CString& service, const char* symbol, void* address);
    /// Closes the current document and opens another one in its place; null leaves no open document.
    void setDocument(std::unique_ptr<FakeArxDocument> document);
    /// Makes another document the current one. The former one stays open, until it is closed.
    void switchToDocument(std::unique_ptr<FakeArxDocument> document);
    void closeFormerDocument();
    /// The current document.
    FakeArxDocument* document() const { return m_document.get(); }
    void setFrame(CMDIFrameWnd* frame) { m_frame = frame; }
    void setDrawingView(CView* view) { m_view = view; }
    void setDark(bool dark) { m_dark = dark; }
    void setDockState(const CString& toolId, const ArxDockState& state) { m_dockStates[toolId] = state; }

    // Recorded calls of the module.
    const std::vector<CString>& printed() const { return m_printed; }
    /// Called within print(), after the text has been recorded.
    std::function<void(const CString&)> onPrint;
    /// All printed text, concatenated.
    CString printedText() const;
    void clearPrinted();
    const std::vector<SentString>& sent() const { return m_sent; }
    void clearSent() { m_sent.clear(); }
    /// The dock states by tool id, as set by the test or last reported by the ObjectARX slice.
    const std::map<CString, ArxDockState>& dockStates() const { return m_dockStates; }

    void print(const CString& text) override;
    bool getVar(const ACHAR* name, resbuf& value) override;
    CMDIFrameWnd* frame() override { return m_frame; }
    CView* drawingView() override { return m_view; }
    AcApDocument* currentDocument() override { return m_document.get(); }
    bool isQuiescent(const AcApDocument* document) override;
    Acad::ErrorStatus sendString(AcApDocument* document, const ACHAR* text, bool activate,
                                 bool wrapUpInactiveDocument, bool echo) override;
    bool hasService(const ACHAR* service) override;
    void* serviceSymbol(const ACHAR* service, const char* symbol) override;
    bool dockState(const CString& toolId, ArxDockState& state) override;
    void dockStateChanged(const CString& toolId, const ArxDockState& state) override;
    bool isDark() override { return m_dark; }

private:
    std::vector<CString> m_printed;
    std::map<CString, short> m_variables;
    std::map<CString, std::map<std::string, void*>> m_services;
    std::map<CString, ArxDockState> m_dockStates;
    std::vector<SentString> m_sent;
    std::unique_ptr<FakeArxDocument> m_document = std::make_unique<FakeArxDocument>();
    std::unique_ptr<FakeArxDocument> m_formerDocument;
    CMDIFrameWnd* m_frame = nullptr;
    CView* m_view = nullptr;
    bool m_dark = false;
};
