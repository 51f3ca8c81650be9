#pragma once

namespace tarne {

/// Whether the machine has a device that renders OpenGL. Where it has none, only a software
/// rasteriser would answer. Looks for render nodes instead of creating a context, which would load
/// that rasteriser and cost the start 100 ms.
[[nodiscard]] bool hasGraphicsHardware();

} // namespace tarne
