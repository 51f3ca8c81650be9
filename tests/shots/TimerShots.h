#pragma once

namespace tarne::shots {

class Gallery;

/// The timer screen's faces and its sheets for length and goal.
void takeTimerShots(Gallery &gallery);

} // namespace tarne::shots
