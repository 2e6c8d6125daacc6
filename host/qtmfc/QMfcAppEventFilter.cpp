#include "host/qtmfc/QMfcAppEventFilter.h"

#include "host/qtmfc/QMfcApp.h"

// Qt shows a filter the same kind of message in three ways:
//
// "windows_generic_MSG" without a result: a loop of Qt's has taken it from the queue and not dispatched it
// yet. Qt pumps in place of MFC here, so everything that MFC's pump would have done is to be done by us.
//
// "windows_dispatcher_MSG": it has reached the hidden window through which Qt gets its timers and posted
// events.
//
// "windows_generic_MSG" with a result: it has reached the procedure of a Qt window, pumped by whomever, or
// sent. Whoever pumped it has shown it to MFC before, and input is not shown at all in this way. It must not
// lead to PreTranslateMessage: MFC would walk from the view up to the palette, which sends the view a copy of
// every key, and what the walk forwards is on its way there already.
//
// Other platforms' events are not MSGs and are left alone.
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
