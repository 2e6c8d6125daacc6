#pragma once

/// The value of the host's COLORTHEME variable, unchanged: 1 light, 0 dark. UI thread.
int readColorTheme();
