#pragma once

namespace tarne::shots {

class Gallery;

/// The insights and the history: with their samples, with a year of sessions, before the first
/// load, in a locale that is written from right to left; and the two sheets that nothing presents.
void takeHistoryShots(Gallery &gallery);

} // namespace tarne::shots
