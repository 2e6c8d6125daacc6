#include "host/qtmfc/QMfcAppEventFilter.h"

#include "host/qtmfc/QMfcApp.h"

// Qt shows a filter a message under one of two names. "windows_dispatcher_MSG": Qt's dispatcher has taken it
// from the queue, in place of MFC's pump, so everything that the pump would have done is to be done here.
// "windows_generic_MSG": it has reached the procedure of a Qt window, pumped by whomever, or sent.
//
// A generic message must not go through PreTranslateMessage. It may be the copy of a key that the palette has
// just sent to its view; MFC would walk from the view up to the palette, which would send the view a further
// copy, and the key would act twice. Only the menu keys are looked at there, since those reach a focused Qt
// window from the host's own pump in no other way. Other platforms' events are not MSGs and are left alone.
bool QMfcAppEventFilter::nativeEventFilter(const QByteArray& eventType, void* message, long* result) {
    auto* const application = qobject_cast<QMfcApp*>(QCoreApplication::instance());
    if (application == nullptr)
        return false;
    if (eventType == "windows_dispatcher_MSG")
        return application->winEventFilter(static_cast<MSG*>(message), result);
    if (eventType == "windows_generic_MSG")
        return application->forwardMenuKey(static_cast<MSG*>(message), result);
    return false;
}
