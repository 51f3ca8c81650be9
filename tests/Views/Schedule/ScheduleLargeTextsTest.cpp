// The planning screen for users who have asked the desktop for larger texts.

#include "ClippedTexts.h"
#include "ScheduleScreenFixture.h"
#include "StyleWishes.h"

namespace tarne::test {
namespace {

class ScheduleWithLargeTexts : public ScheduleScreenTest {
protected:
    void enlarge() {
        StyleWishes::of(*ui().view().engine())
            .setWishes({.reducedMotion = true, .textScale = DesktopWishes::largestTextScale});
    }
    std::string clipped() {
        draw();
        ui().settle();
        return ClippedTexts::in(ui().view()).join(u'\n').toStdString();
    }
};

TEST_F(ScheduleWithLargeTexts, CutsNoneOfThemOff) {
    enlarge();
    EXPECT_EQ(clipped(), "");
    add(2, 15, u"Write the report on what everybody has done since the summer"_s);
    EXPECT_EQ(clipped(), "");
}

TEST_F(ScheduleWithLargeTexts, CutsNoneOfThemOffOnItsSheet) {
    enlarge();
    openSheet();
    EXPECT_EQ(clipped(), "");
}

} // namespace
} // namespace tarne::test
