#pragma once

namespace tarne::shots {

class Gallery;

/// The schedule screen and its sheet, which no part of the program presents.
void takeScheduleShots(Gallery &gallery);

} // namespace tarne::shots
