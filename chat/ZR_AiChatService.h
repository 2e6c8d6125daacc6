#pragma once

#include <afx.h>
#include <afxcoll.h>

#include "chat/ZR_AiChatSingleChatRecord.h"

// The session calls of the AI service. Each waits for the whole reply, without a timeout, and fails without a
// request when nobody is signed in. A call whose thread is told to quit fails at once.

/// Creates a session and returns its id, empty on any failure. UI thread: user input waits meanwhile, other
/// events are delivered.
CString createSessionOnServer();

/// Reads the ids of all the user's sessions, in the service's order. Any thread.
bool readSessionIds(CStringArray& ids);

/// Reads one session with its messages. A failure leaves the record empty. Any thread.
bool readSessionChats(const CString& sessionId, ZR_AiChatSingleChatRecord& record);
