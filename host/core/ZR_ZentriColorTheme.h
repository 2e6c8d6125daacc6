#pragma once

/// The host's colour theme as its COLORTHEME variable tells it, unchanged: 1 light, 0 dark. UI thread.
int readColorTheme();
