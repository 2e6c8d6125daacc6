#pragma once

#include <atomic>

class ZR_AiChatCSThread;
class ZR_AiChatReadHistoricalChatThread;

// Process-wide state of the chat. UI thread only, except for the communicating flag.

/// The one streaming thread and the one history reader. CZR_ZentriApp creates them before the manager, and
/// resets the pointer when it deletes one.
extern ZR_AiChatCSThread* g_zentriChatThread;
extern ZR_AiChatReadHistoricalChatThread* g_zentriHistoryThread;

/// True from the manager's onStreamStart until its onStreamEnd. Written on the UI thread, read by the
/// streaming thread too.
extern std::atomic<bool> g_zentriCommunicating;

/// Makes the manager's destructor report an unfinished exchange. Part of the interface; nothing in the module
/// sets it.
extern bool g_zentriExchangeUnfinished;
