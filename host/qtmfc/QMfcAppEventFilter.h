#pragma once

#include <QAbstractNativeEventFilter>

/// Shows QMfcApp the Win32 messages that pass through Qt.
class QMfcAppEventFilter : public QAbstractNativeEventFilter {
public:
    bool nativeEventFilter(const QByteArray& eventType, void* message, long* result) override;
};
