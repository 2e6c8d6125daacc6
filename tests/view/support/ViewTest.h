#pragma once

#include <gtest/gtest.h>

#include <QImage>
#include <QObject>
#include <QRect>
#include <QString>
#include <QStringList>
#include <QWidget>
#include <functional>
#include <vector>

#include "chat/ZR_AiChatViewInterface.h"
#include "host/core/ZR_ZentriPaletteAccess.h"
#include "tests/support/FakeArxHost.h"

/// In seconds, the unit of all times of records.
constexpr qint64 kDay = 86400;

/// A palette without a window. Registers itself with the module for its lifetime and records the calls. Its
/// view is itself until a test sets another one or null.
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

/// Runs a test signed in, in a fake host that keeps what is printed, with the module's two threads created.
class ViewTest : public testing::Test {
protected:
    ViewTest();
    ~ViewTest() override;

    static void signIn();
    static void signOut();
    void setHostTheme(short theme) { m_host.setVar(_T("COLORTHEME"), theme); }
    QString printed() const;

    /// Processes events until the condition holds. False if it does not in time.
    static bool waitFor(const std::function<bool()>& condition);
    /// Processes all posted events, deferred deletes included.
    static void settle();

    FakeArxHost m_host;
};

/// Counts the paint events of a widget.
class PaintCounter : public QObject {
public:
    explicit PaintCounter(QWidget* widget);
    int count() const { return m_count; }
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    int m_count = 0;
};

/// The descendant of that name; fails the test if there is none.
template <typename Widget>
Widget* childNamed(const QWidget& parent, const char* name) {
    auto* widget = parent.findChild<Widget*>(QString::fromLatin1(name));
    EXPECT_NE(widget, nullptr) << name;
    return widget;
}

/// An image of the widget and its children.
QImage grabbed(QWidget& widget);
/// Puts the widget into the hover state.
void hover(QWidget& widget);
/// Sets the animations of the widget to their end.
void finishAnimations(const QWidget& widget);
/// The number of pixels that have the colour.
int pixelsOf(const QImage& image, const QColor& color);
/// The grey value of the darkest pixel.
int darkestGray(const QImage& image);
/// A record whose messages are question and answer in turn, all at the time.
ZR_AiChatSingleChatRecord makeRecord(const QString& id, const QStringList& messages, qint64 time);
