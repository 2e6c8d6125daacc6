#pragma once

#include <afxwin.h>

#include <functional>

/// Answers the message boxes that open while it lives, as a user would: each with the same button. A box must
/// have a button of that kind. One at a time; main thread.
class MessageBoxAnswer {
public:
    /// `meanwhile` is called while a box is open, before it is answered.
    explicit MessageBoxAnswer(int button, std::function<void()> meanwhile = nullptr);
    ~MessageBoxAnswer();
    MessageBoxAnswer(const MessageBoxAnswer&) = delete;
    MessageBoxAnswer& operator=(const MessageBoxAnswer&) = delete;

    /// How many boxes were answered, and what the last one said.
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
