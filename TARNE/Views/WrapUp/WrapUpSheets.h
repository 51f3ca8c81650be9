#pragma once

#include "SessionReflectionView.h"

namespace tarne {

/// What makes the two sheets of a session's end: each reflection sheet that it makes presents
/// feedback sheets over the same controller. The controller outlives what is made.
[[nodiscard]] MakeReflectionView wrapUpSheets(SessionViewModel &sessionViewModel,
                                              FeedbackPlatform platform);

} // namespace tarne
