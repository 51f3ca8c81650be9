#include "WrapUpSheets.h"

#include <utility>

namespace tarne {

MakeReflectionView wrapUpSheets(SessionViewModel &sessionViewModel, FeedbackPlatform platform) {
    const MakeFeedbackView makeFeedback =
        [&sessionViewModel, platform = std::move(platform)](QBindable<bool> isPresented,
                                                            std::function<void()> onComplete) {
            return std::make_unique<SessionFeedbackView>(sessionViewModel, platform, isPresented,
                                                         std::move(onComplete));
        };
    return [&sessionViewModel, makeFeedback](QBindable<bool> isPresented,
                                             std::function<void()> onComplete) {
        return std::make_unique<SessionReflectionView>(sessionViewModel, makeFeedback, isPresented,
                                                       std::move(onComplete));
    };
}

} // namespace tarne
