#pragma once

#include <afx.h>

#include <QString>
#include <exception>

#include "host/core/ZR_ZentriLogger.h"
#include "host/core/ZR_ZentriText.h"

/// Runs the work of a worker thread. An exception ends the work and is logged: as `errorBegin` followed by
/// its message or, if it has none, as `unknownError`. It must not leave the thread: that would terminate the
/// host.
template <typename Work>
void runAndLogExceptions(const CString& errorBegin, const CString& unknownError, const Work& work) {
    try {
        work();
    } catch (const std::exception& error) {
        zentriLog(errorBegin + toCString(QString::fromLocal8Bit(error.what())));
    } catch (CException* error) {
        error->Delete();
        zentriLog(unknownError);
    } catch (...) {
        zentriLog(unknownError);
    }
}
