#pragma once

#include <accmd.h>
#include <rxdict.h>

/// Runs a command on the host's command stack; false when there is none of that name.
inline bool runHostCommand(const ACHAR* name) {
    AcEdCommand* const command = acedRegCmds->lookupCmd(name, false);
    if (command == nullptr) {
        return false;
    }
    command->functionAddr()();
    return true;
}
