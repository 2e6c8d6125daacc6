#include "AcExtensionModule.h"

BOOL CAcExtensionModule::AttachInstance(HINSTANCE instance) {
    m_instance = instance;
    return TRUE;
}

void CAcExtensionModule::DetachInstance() {
    m_instance = nullptr;
}

CAcModuleResourceOverride::CAcModuleResourceOverride(HINSTANCE instance) : m_former(AfxGetResourceHandle()) {
    AfxSetResourceHandle(instance);
}

CAcModuleResourceOverride::~CAcModuleResourceOverride() {
    AfxSetResourceHandle(m_former);
}
