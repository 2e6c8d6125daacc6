#pragma once

#include <afx.h>
#include <afxcoll.h>

#include "chat/ZR_AiChatSingleChatRecord.h"

// The session calls of the AI service. Each blocks until the whole reply has been received, without a
// timeout, and fails without sending a request when nobody is signed in. A call fails at once when its thread
// is asked to quit.

/// Creates a session and returns its id, empty on any failure. UI thread: while it blocks, events are
/// delivered, except for user input, which is held back.
CString createSessionOnServer();

/// Reads the ids of all the user's sessions, in the service's order. Any thread. Part of the interface;
/// nothing in the module calls it.
bool readSessionIds(CStringArray& ids);
/// The same for the user with this token. Fails without sending a request when another user, or nobody, is
/// signed in now.
bool readSessionIds(const CString& token, CStringArray& ids);

/// Reads one session with its messages. A failure leaves the record empty. Any thread. Part of the
/// interface; nothing in the module calls it.
bool readSessionChats(const CString& sessionId, ZR_AiChatSingleChatRecord& record);
/// The same for the user with this token, like readSessionIds().
bool readSessionChats(const CString& token, const CString& sessionId, ZR_AiChatSingleChatRecord& record);
