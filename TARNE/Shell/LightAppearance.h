#pragma once

namespace tarne {

/// Gives the application the light look, whatever the desktop's setting.
void useLightAppearance();

} // namespace tarne
