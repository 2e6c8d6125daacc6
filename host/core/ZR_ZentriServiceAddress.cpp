#include "host/core/ZR_ZentriServiceAddress.h"

#include <QtGlobal>

namespace {

QString environmentOr(const char* variable, const char* fixed) {
    const QString value = qEnvironmentVariable(variable);
    return value.isEmpty() ? QString::fromLatin1(fixed) : value;
}

}  // namespace

QString zentriServiceAddress() {
    return environmentOr("ZR_ZENTRI_SERVICE", ZENTRI_SERVICE_ADDRESS);
}

QString zentriProbeAddress() {
    return environmentOr("ZR_ZENTRI_PROBE", ZENTRI_PROBE_ADDRESS);
}
