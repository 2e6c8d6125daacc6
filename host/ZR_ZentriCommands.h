#pragma once

// The module's commands on the host's command stack: KQ_AICHAT, which opens and closes the chat panel, and
// the hidden _refreshChatView. UI thread.

/// Registers the commands; those that are registered already stay as they are.
void registerZentriCommands();

/// Removes the group with both commands, and forgets the user who signed in through them.
void removeZentriCommands();
