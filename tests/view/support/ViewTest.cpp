#include "tests/view/support/ViewTest.h"

#include <QCoreApplication>
#include <QMouseEvent>
#include <QPropertyAnimation>
#include <QTest>
#include <algorithm>

#include "chat/ZR_AiChatCSThread.h"
#include "chat/ZR_AiChatModuleState.h"
#include "chat/ZR_AiChatReadHistoricalChatThread.h"
#include "host/core/ZR_ZentriAccount.h"
#include "host/core/ZR_ZentriText.h"

namespace {

// Limits the time of a failing test only; long enough for sanitizers.
constexpr int kWaitLimitMs = 30000;

}  // namespace

ViewTest::ViewTest() {
    g_zentriChatThread = new ZR_AiChatCSThread;
    g_zentriHistoryThread = new ZR_AiChatReadHistoricalChatThread;
    signIn();
    setHostTheme(1);
}

ViewTest::~ViewTest() {
    delete g_zentriChatThread;
    g_zentriChatThread = nullptr;
    delete g_zentriHistoryThread;
    g_zentriHistoryThread = nullptr;
    g_zentriCommunicating = false;
    signOut();
}

void ViewTest::signIn() {
    setZentriAccessToken(_T("token"));
    setZentriSignedIn(true);
}

void ViewTest::signOut() {
    setZentriSignedIn(false);
    setZentriAccessToken(CString());
}

QString ViewTest::printed() const {
    return toQString(m_host.printedText());
}

bool ViewTest::waitFor(const std::function<bool()>& condition) {
    return QTest::qWaitFor(condition, kWaitLimitMs);
}

void ViewTest::settle() {
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
}

PaintCounter::PaintCounter(QWidget* widget) {
    widget->installEventFilter(this);
}

bool PaintCounter::eventFilter(QObject* watched, QEvent* event) {
    Q_UNUSED(watched)
    m_count += event->type() == QEvent::Paint ? 1 : 0;
    return false;
}

QImage grabbed(QWidget& widget) {
    return widget.grab().toImage().convertToFormat(QImage::Format_RGB32);
}

void hover(QWidget& widget) {
    widget.setAttribute(Qt::WA_UnderMouse, true);
    QMouseEvent move(QEvent::MouseMove, widget.rect().center(), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &move);
}

void finishAnimations(const QWidget& widget) {
    for (QPropertyAnimation* animation : widget.findChildren<QPropertyAnimation*>()) {
        animation->setCurrentTime(animation->duration());
    }
}

int pixelsOf(const QImage& image, const QColor& color) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            count += image.pixelColor(x, y).rgb() == color.rgb() ? 1 : 0;
        }
    }
    return count;
}

int darkestGray(const QImage& image) {
    int gray = 255;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            gray = std::min(gray, qGray(image.pixel(x, y)));
        }
    }
    return gray;
}

ZR_AiChatSingleChatRecord makeRecord(const QString& id, const QStringList& messages, qint64 time) {
    ZR_AiChatSingleChatRecord record;
    record.SetSessionId(toCString(id));
    std::uint32_t role = kChatRoleUser;
    for (const QString& message : messages) {
        record.AddUnit(role, toCString(message), time);
        role = role == kChatRoleUser ? kChatRoleAssistant : kChatRoleUser;
    }
    return record;
}
