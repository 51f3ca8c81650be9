#pragma once

namespace tarne {

/// Puts the null device where standard input, output or error is closed. What is opened next would
/// take its number otherwise, and the log would be written into a socket of the display or the bus.
/// To be called before anything is opened.
void openStandardDescriptors();

} // namespace tarne
