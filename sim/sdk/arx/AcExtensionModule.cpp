#include "AcExtensionModule.h"

BOOL CAcExtensionModule::AttachInstance(HINSTANCE instance) {
    m_instance = instance;
    return instance != nullptr ? TRUE : FALSE;
}

void CAcExtensionModule::DetachInstance() {
    m_instance = nullptr;
}

CTemporaryResourceOverride::CTemporaryResourceOverride(HINSTANCE instance)
    : m_former(AfxGetResourceHandle()) {
    AfxSetResourceHandle(instance);
}

CTemporaryResourceOverride::~CTemporaryResourceOverride() {
    AfxSetResourceHandle(m_former);
}
