#pragma once

#include <atomic>

class ZR_AiChatCSThread;
class ZR_AiChatReadHistoricalChatThread;

// What the module holds for the chat as a whole. But for the flag and the exchange source, UI thread only.

/// The one streaming thread and the one history reader. The module entry creates them before the manager, and
/// sets the pointer of one that it deletes to null.
extern ZR_AiChatCSThread* g_zentriChatThread;
extern ZR_AiChatReadHistoricalChatThread* g_zentriHistoryThread;

/// True from the manager's onStreamStart until its onStreamEnd. Written on the UI thread, read by the
/// streaming thread too.
extern std::atomic<bool> g_zentriCommunicating;

/// Tells the manager's destructor that an exchange was left unfinished. Nothing sets it at present.
extern bool g_zentriExchangeUnfinished;
