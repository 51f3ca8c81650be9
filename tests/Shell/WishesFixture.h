#pragma once

#include "ShellFixture.h"
#include "StyleWishes.h"

namespace tarne::test {

/// The whole window for users who have asked the desktop for something.
class WishesTest : public ShellTest {
protected:
    void wish(const DesktopWishes &wishes) {
        StyleWishes::of(*ui().view().engine()).setWishes(wishes);
        ui().settle();
    }
};

} // namespace tarne::test
