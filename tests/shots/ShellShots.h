#pragma once

namespace tarne::shots {

class Gallery;

/// The window as a whole: the tabs with the first screen, the open menu, and an answer of the
/// updater.
void takeShellShots(Gallery &gallery);

} // namespace tarne::shots
