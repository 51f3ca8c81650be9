#pragma once

namespace tarne::shots {

class Gallery;

/// The pages of onboarding with its closing alert, and the settings tab.
void takeSetupShots(Gallery &gallery);

} // namespace tarne::shots
