#pragma once

#include <QAbstractNativeEventFilter>

/// Passes the Win32 messages that Qt sees on to QMfcApp.
class QMfcAppEventFilter : public QAbstractNativeEventFilter {
public:
    bool nativeEventFilter(const QByteArray& eventType, void* message, long* result) override;
};
