#pragma once

// Window messages of the host.
// Simplified: only WM_ACAD_KEEPFOCUS.

/// The host's frame takes the keyboard focus away from its child windows as soon as the mouse moves over the
/// drawing. It first sends this message to the window with the focus and to that window's parents, up to
/// itself: if one returns TRUE, the focus stays.
#define WM_ACAD_KEEPFOCUS 1001
