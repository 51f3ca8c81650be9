#pragma once

namespace tarne {

/// Puts the null device where standard input, output or error is closed. What is opened next would
/// take its number otherwise, and the log would be written into a socket of the display or the bus.
/// To be called before anything is opened.
void openStandardDescriptors();

/// Has the program that takes this process's place find standard input, output and error open and
/// nothing else. To be called in a child before it becomes that program: a system call only.
///
/// Not every library marks its descriptors itself; a child that inherits a connection would hold it
/// open after we have closed it.
void keepOtherDescriptorsToOurselves();

} // namespace tarne
