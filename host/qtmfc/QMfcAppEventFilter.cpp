#include "host/qtmfc/QMfcAppEventFilter.h"

#include "host/qtmfc/QMfcApp.h"

// Qt passes the same kind of message to a filter in three ways:
//
// "windows_generic_MSG" without a result: a Qt event loop has removed it from the queue and not dispatched it
// yet. Qt pumps in place of MFC here, so winEventFilter() has to do everything that MFC's message pump would
// have done.
//
// "windows_dispatcher_MSG": it has reached the hidden window through which Qt receives its timers and posted
// events.
//
// "windows_generic_MSG" with a result: it has reached the window procedure of a Qt window, whether posted or
// sent. If it was posted, MFC has seen it when it was pumped; input messages are not passed in this way at
// all. It must not be passed to PreTranslateMessage: MFC would walk up from the view to the palette, which
// would send the view a copy of a key message that has already arrived there.
//
// Other platforms' events are not MSGs and are ignored.
bool QMfcAppEventFilter::nativeEventFilter(const QByteArray& eventType, void* message, long* result) {
    auto* const application = qobject_cast<QMfcApp*>(QCoreApplication::instance());
    if (application == nullptr) {
        return false;
    }
    const bool pumped = eventType == "windows_generic_MSG" && result == nullptr;
    if (pumped || eventType == "windows_dispatcher_MSG") {
        return application->winEventFilter(static_cast<MSG*>(message), result);
    }
    return false;
}
