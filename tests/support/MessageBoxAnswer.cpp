#include "tests/support/MessageBoxAnswer.h"

#include <win32_control.h>

#include <utility>

namespace {

constexpr UINT kLookMilliseconds = 20;
MessageBoxAnswer* g_answer = nullptr;

}  // namespace

MessageBoxAnswer::MessageBoxAnswer(int button, std::function<void()> meanwhile)
    : m_button(button),
      m_meanwhile(std::move(meanwhile)),
      m_timer(SetTimer(nullptr, 0, kLookMilliseconds, &MessageBoxAnswer::lookForBoxes)) {
    g_answer = this;
}

MessageBoxAnswer::~MessageBoxAnswer() {
    KillTimer(nullptr, m_timer);
    g_answer = nullptr;
}

void CALLBACK MessageBoxAnswer::lookForBoxes(HWND, UINT, UINT_PTR, DWORD) {
    if (g_answer != nullptr) {
        g_answer->answerOpenBox();
    }
}

void MessageBoxAnswer::answerOpenBox() {
    const std::vector<Win32MessageBox> boxes = win32MessageBoxes();
    if (boxes.empty() || boxes.back().window == m_answered) {
        return;
    }
    const Win32MessageBox& box = boxes.back();
    m_answered = box.window;
    m_text = CString(box.text.c_str());
    m_caption = CString(box.caption.c_str());
    m_type = box.type;
    if (m_meanwhile) {
        m_meanwhile();
    }
    ++m_count;
    win32AnswerMessageBox(m_answered, m_button);
}
