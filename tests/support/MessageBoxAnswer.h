#pragma once

#include <afxwin.h>

#include <functional>

/// Answers every message box that opens during its lifetime with the same button, as a user would. The box
/// must have that button. One instance at a time; main thread.
class MessageBoxAnswer {
public:
    /// `meanwhile` is called while a box is open, before it is answered.
    explicit MessageBoxAnswer(int button, std::function<void()> meanwhile = nullptr);
    ~MessageBoxAnswer();
    MessageBoxAnswer(const MessageBoxAnswer&) = delete;
    MessageBoxAnswer& operator=(const MessageBoxAnswer&) = delete;

    /// The number of boxes answered, and the contents of the last one.
    int count() const { return m_count; }
    CString text() const { return m_text; }
    CString caption() const { return m_caption; }
    UINT type() const { return m_type; }

private:
    static void CALLBACK lookForBoxes(HWND window, UINT message, UINT_PTR timer, DWORD time);
    void answerOpenBox();

    int m_button;
    std::function<void()> m_meanwhile;
    UINT_PTR m_timer;
    HWND m_answered = nullptr;
    int m_count = 0;
    CString m_text;
    CString m_caption;
    UINT m_type = 0;
};
