#pragma once

// The module's commands on the host's command stack: KQ_AICHAT, which opens and closes the chat panel, and
// the hidden _refreshChatView. UI thread.

/// Registers the commands; commands that are already registered are left unchanged.
void registerZentriCommands();

/// Removes the group with both commands and resets the signed-in state.
void removeZentriCommands();
