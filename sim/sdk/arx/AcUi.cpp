#include "acui.h"
#include "ArxHost.h"

namespace {
int g_initialisations = 0;
}

void InitAcUiDLL() {
    ++g_initialisations;
}

int arxDialogLibraryInitialisations() {
    return g_initialisations;
}
