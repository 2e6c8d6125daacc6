#include "ArxHost.h"
#include "acui.h"

namespace {
int g_initialisations = 0;
}

void InitAcUiDLL() {
    ++g_initialisations;
}

int arxDialogLibraryInitialisations() {
    return g_initialisations;
}
