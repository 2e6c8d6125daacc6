#pragma once

// The well-known objects of the slice, which the system registry holds. Private to the slice.

#include "accmd.h"
#include "aced.h"
#include "rxdlinkr.h"

AcEdCommandStack& arxCommandStack();
AcEditor& arxEditor();
AcRxDynamicLinker& arxDynamicLinker();
