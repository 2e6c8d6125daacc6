#pragma once

#include <afx.h>

#include <QString>
#include <exception>

#include "host/core/ZR_ZentriLogger.h"
#include "host/core/ZR_ZentriText.h"

/// Runs the work of a worker thread. An exception ends the work and is logged, as `errorBegin` and its
/// message or, when it carries none, as `unknownError`; none may leave the thread, that would end the host.
template <typename Work>
void runAndLogExceptions(const CString& errorBegin, const CString& unknownError, const Work& work) {
    try {
        work();
    } catch (const std::exception& error) {
        zentriLog(errorBegin + toCString(QString::fromUtf8(error.what())));
    } catch (CException* error) {
        error->Delete();
        zentriLog(unknownError);
    } catch (...) {
        zentriLog(unknownError);
    }
}
