#pragma once
// Painting needs a GUI application object; the tool never shows a window, so the offscreen
// platform serves unless the user chose another. Exists in builds with the GUI.

namespace ba::cli {

void EnsureGuiApplication();

} // namespace ba::cli
