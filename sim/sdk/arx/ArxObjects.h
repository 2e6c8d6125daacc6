#pragma once

// The well-known objects in the system registry. Private to the slice.

#include "accmd.h"
#include "aced.h"
#include "rxdlinkr.h"

AcEdCommandStack& arxCommandStack();
AcEditor& arxEditor();
AcRxDynamicLinker& arxDynamicLinker();
