#pragma once

#include <QString>

/// Base address of the AI service: a host name, optionally with a port; no scheme, no trailing slash.
/// Fixed by a build option; the environment variable ZR_ZENTRI_SERVICE overrides it. Any thread.
QString zentriServiceAddress();

/// Web address whose reachability is tested before each send. Fixed by a build option; the environment
/// variable ZR_ZENTRI_PROBE overrides it. Any thread.
QString zentriProbeAddress();
