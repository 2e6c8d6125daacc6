#pragma once

#include <afxwin.h>

#include <QList>
#include <QString>
#include <functional>
#include <mutex>
#include <thread>

/// The module's message boxes in a test: MFC passes them to the application object, which records them and
/// answers OK. Any thread.
class MessageBoxes : public CWinApp {
public:
    struct Box {
        QString text;
        UINT type;
        /// The thread that opened the box.
        std::thread::id thread;
        /// The last log entry at that time.
        QString lastLogged;
    };

    QList<Box> boxes() const {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_boxes;
    }
    int count() const { return boxes().size(); }
    void clear() {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_boxes.clear();
        m_onBox = nullptr;
    }
    /// Called on the box's thread while it would be open.
    void setOnBox(const std::function<void()>& onBox) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_onBox = onBox;
    }

    int DoMessageBox(LPCTSTR text, UINT type, UINT helpId) override;

    static MessageBoxes& instance();

private:
    mutable std::mutex m_mutex;
    QList<Box> m_boxes;
    std::function<void()> m_onBox;
};
