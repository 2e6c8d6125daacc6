#pragma once

#include <gtest/gtest.h>

#include <QImage>
#include <QObject>
#include <QRect>
#include <QString>
#include <QStringList>
#include <functional>
#include <vector>

#include "chat/ZR_AiChatViewInterface.h"
#include "host/core/ZR_ZentriPaletteAccess.h"
#include "tests/support/FakeArxHost.h"

class QWidget;

/// The palette in a test: announces itself while it lives, counts what is asked of it, and shows the view it
/// is given or, without one, stands in for it.
class FakePalette : public ZR_ZentriPaletteAccess, public ZR_AiChatViewInterface {
public:
    FakePalette() { setZentriPaletteAccess(this); }
    ~FakePalette() override { setZentriPaletteAccess(nullptr); }
    FakePalette(const FakePalette&) = delete;
    FakePalette& operator=(const FakePalette&) = delete;

    ZR_AiChatViewInterface* chatView() override { return view; }
    void setColorTheme(int) override {}
    void takeKeyboardFocus() override { ++focusTaken; }

    void onStreamStart() override { calls.append(QStringLiteral("start")); }
    void onStreamProcess() override { calls.append(QStringLiteral("process")); }
    void onStreamEnd() override { calls.append(QStringLiteral("end")); }
    void showCurrentSession() override { calls.append(QStringLiteral("show")); }
    void updateSideBarSessions(const ZR_AiChatSessionList&) override {
        calls.append(QStringLiteral("sessions"));
    }
    void setInputText(const QString& text) override { calls.append(QStringLiteral("input:") + text); }
    void sendInput() override { calls.append(QStringLiteral("send")); }
    QRect viewGeometry() const override { return geometry; }

    ZR_AiChatViewInterface* view = this;
    int focusTaken = 0;
    QStringList calls;
    QRect geometry;
};

/// Signed in, in a host that keeps what is printed, with the module's two threads.
class ViewTest : public testing::Test {
protected:
    ViewTest();
    ~ViewTest() override;

    static void signIn();
    static void signOut();
    void setHostTheme(short theme) { m_host.setVar(_T("COLORTHEME"), theme); }
    QString printed() const;

    static bool waitFor(const std::function<bool()>& condition);
    /// Handles everything posted, deferred deletions too.
    static void settle();

    FakeArxHost m_host;
};

/// Counts how often the widget is painted.
class PaintCounter : public QObject {
public:
    explicit PaintCounter(QWidget* widget);
    int count() const { return m_count; }
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    int m_count = 0;
};

/// What the widget and its children look like.
QImage grabbed(QWidget& widget);
/// Lets the widget believe that the mouse is over it.
void hover(QWidget& widget);
/// The number of pixels that have the colour.
int pixelsOf(const QImage& image, const QColor& color);
/// A record with messages "question", "answer", "question", ... at the time.
ZR_AiChatSingleChatRecord makeRecord(const QString& id, const QStringList& messages, qint64 time);
