#include <afx.h>

#include <map>

#include "ArxObjects.h"
#include "ArxThread.h"
#include "rxdict.h"

ACRX_NO_CONS_DEFINE_MEMBERS(AcRxDictionary, AcRxObject)

namespace {

class Dictionary : public AcRxDictionary {
public:
    AcRxObject* at(const ACHAR* key) const override {
        arxRequireUiThread("AcRxDictionary::at");
        const auto found = m_entries.find(CString(key));
        return found != m_entries.end() ? found->second : nullptr;
    }

    AcRxObject* atPut(const ACHAR* key, AcRxObject* object) override {
        arxRequireUiThread("AcRxDictionary::atPut");
        AcRxObject*& entry = m_entries[CString(key)];
        AcRxObject* const former = entry;
        entry = object;
        return former;
    }

    AcRxObject* remove(const ACHAR* key) override {
        arxRequireUiThread("AcRxDictionary::remove");
        const auto found = m_entries.find(CString(key));
        if (found == m_entries.end()) {
            return nullptr;
        }
        AcRxObject* const former = found->second;
        m_entries.erase(found);
        return former;
    }

    bool has(const ACHAR* key) const override { return m_entries.count(CString(key)) != 0; }

    Adesk::UInt32 numEntries() const override { return static_cast<Adesk::UInt32>(m_entries.size()); }

private:
    std::map<CString, AcRxObject*> m_entries;
};

class SystemRegistry : public Dictionary {
public:
    SystemRegistry() {
        atPut(ACED_EDITOR_OBJ, &arxEditor());
        atPut(ACED_REGCMDS_OBJ, &arxCommandStack());
        atPut(ACRX_DYNAMIC_LINKER, &arxDynamicLinker());
    }
};

}  // namespace

AcRxDictionary* acrxSysRegistry() {
    arxRequireUiThread("acrxSysRegistry");
    static SystemRegistry registry;
    return &registry;
}
