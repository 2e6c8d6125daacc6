#include "host/core/ZR_ZentriCmdRecorder.h"

ZR_ZentriCmdRecorder* g_zentriCmdRecorder = nullptr;

void ZR_ZentriCmdRecorder::commandWillStart(const ACHAR* globalName) {
    m_lastCommandName = globalName;
}
