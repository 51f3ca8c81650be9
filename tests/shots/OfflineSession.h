#pragma once

#include "FeedbackFakes.h"
#include "SessionFakes.h"

namespace tarne::shots {

/// A machine of fakes and a session controller on it.
struct OfflineSession : test::SessionFakes {
    SessionViewModel controller{platform()};
    test::FeedbackFakes feedback{time, log};
};

} // namespace tarne::shots
