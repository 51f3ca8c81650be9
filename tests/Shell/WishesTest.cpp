// The whole window for users who have asked the desktop for something.

#include "AnimationClock.h"
#include "ShownOrb.h"
#include "TARNEStyle.h"
#include "WishesFixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>

using namespace Qt::StringLiterals;

namespace tarne::test {

namespace {

constexpr DesktopWishes noMotion{.reducedMotion = true};

class Wishes : public WishesTest {
protected:
    const GlowingOrbView *orb() { return orbBelow(*ui().root()); }
};

TEST_F(Wishes, ForNoMotionStillTheOrb) {
    ASSERT_TRUE(ui().waitUntil([&] { return orb()->isAnimating(); }));
    ASSERT_TRUE(ui().waitUntil([&] { return orb()->pulseScale() > 1.01; }));
    wish(noMotion);
    EXPECT_FALSE(orb()->isAnimating());
    EXPECT_EQ(orb()->pulseScale(), 1.0);
    EXPECT_TRUE(orb()->pulseAnimation()) << "what it would do is kept";
    wish({});
    EXPECT_TRUE(orb()->isAnimating());
}

TEST_F(Wishes, ForNoMotionPutTheTabsInTheirPlacesAtOnce) {
    wish(noMotion);
    AnimationClock clock;
    content().setSelectedTab(1);
    EXPECT_TRUE(isAtRest(1));
    EXPECT_FALSE(below(*ui().root(), u"tab-0"_s)->isVisible());
}

TEST_F(Wishes, ForNoMotionOpenTheCustomRowAtOnce) {
    openDurationSheet();
    wish(noMotion);
    AnimationClock clock;
    pressByKey(u"Custom Duration"_s);
    EXPECT_TRUE(isCustomRowOpen());
}

TEST_F(Wishes, MadeLateReachWhatIsShown) {
    const QQuickItem *const title = ui().findText(u"Session Setup"_s);
    const QQuickItem *const subtitle =
        ui().findText(u"Configure your focus session and start stillhour"_s);
    EXPECT_EQ(title->property("font").value<QFont>().pixelSize(), 24);
    wish({.contrastMore = true, .textScale = 1.5});
    EXPECT_EQ(title->property("font").value<QFont>().pixelSize(), 36);
    EXPECT_NE(subtitle->property("color").value<QColor>(), TARNEStyle::Colors::secondaryText);
    wish({});
    EXPECT_EQ(title->property("font").value<QFont>().pixelSize(), 24);
    EXPECT_EQ(subtitle->property("color").value<QColor>(), TARNEStyle::Colors::secondaryText);
}

/// The relative luminance of an opaque colour, as contrast is reckoned with.
double luminance(const QColor &color) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

double contrastOf(const QColor &text, const QColor &ground) {
    const auto mixed = [&](auto part) {
        return static_cast<float>(part(text) * text.alphaF() + part(ground) * (1 - text.alphaF()));
    };
    const QColor drawn = QColor::fromRgbF(mixed([](const QColor &c) { return c.redF(); }),
                                          mixed([](const QColor &c) { return c.greenF(); }),
                                          mixed([](const QColor &c) { return c.blueF(); }));
    const auto [darker, lighter] = std::ranges::minmax({luminance(drawn), luminance(ground)});
    return (lighter + 0.05) / (darker + 0.05);
}

/// The colour that most of a place has: of a text's, its ground.
QColor groundIn(const QImage &picture, const QRect &place) {
    std::map<QRgb, int> pixels;
    for (int y = place.top(); y <= place.bottom(); ++y) {
        for (int x = place.left(); x <= place.right(); ++x)
            ++pixels[picture.pixel(x, y)];
    }
    const auto most =
        std::ranges::max_element(pixels, {}, [](const auto &entry) { return entry.second; });
    return most == pixels.end() ? QColor() : QColor(most->first);
}

class MoreContrast : public WishesTest {
protected:
    /// The visible texts and their colours.
    std::map<const QQuickItem *, QColor> textColors() {
        std::map<const QQuickItem *, QColor> colors;
        collect(*ui().root()->window()->contentItem(), colors);
        return colors;
    }
    /// Expects that some texts become darker by the wish, and what these stand out by.
    void expectSecondaryTextsStandOut() {
        wish({.reducedMotion = true});
        const auto before = textColors();
        wish({.reducedMotion = true, .contrastMore = true});
        const QImage picture = ui().picture();
        int darker = 0;
        for (const auto &[text, color] : textColors()) {
            const QRect place =
                text->mapRectToScene(QRectF(QPointF(), text->size())).toAlignedRect();
            const auto former = before.find(text);
            if (former == before.end() || former->second == color ||
                !picture.rect().contains(place))
                continue;
            ++darker;
            EXPECT_GE(contrastOf(color, groundIn(picture, place)), 7.0)
                << qPrintable(text->property("text").toString());
        }
        EXPECT_GT(darker, 0);
    }

private:
    static void collect(const QQuickItem &item, std::map<const QQuickItem *, QColor> &colors) {
        if (!item.isVisible() || !item.isEnabled())
            return;
        if (item.inherits("QQuickText") && !item.property("text").toString().isEmpty())
            colors[&item] = item.property("color").value<QColor>();
        for (const QQuickItem *const child : item.childItems())
            collect(*child, colors);
    }
};

TEST_F(MoreContrast, MakesSecondaryTextsStandOutOnEachTab) {
    for (int tab = 0; tab < 4; ++tab) {
        content().setSelectedTab(tab);
        ASSERT_TRUE(ui().waitUntil([&] { return isAtRest(tab); }));
        expectSecondaryTextsStandOut();
    }
}
TEST_F(MoreContrast, MakesSecondaryTextsStandOutOnTheDurationSheet) {
    openDurationSheet();
    expectSecondaryTextsStandOut();
}
TEST_F(MoreContrast, MakesSecondaryTextsStandOutOnTheLastTwoSheets) {
    startSession(u"Write report"_s);
    pressByKey(u"Stop"_s);
    expectSecondaryTextsStandOut();
    pressByKey(u"Completed"_s);
    tabTo(u"Reflection"_s);
    ui().type(u"Fine"_s);
    pressByKey(u"Complete reflection"_s);
    ASSERT_TRUE(ui().waitUntil([&] { return !feedback.gemini.requests.empty(); }));
    expectSecondaryTextsStandOut();
}

class MoreContrastAtFirst : public MoreContrast {
protected:
    void SetUp() override {}
};

TEST_F(MoreContrastAtFirst, MakesSecondaryTextsStandOutInOnboarding) {
    ui().settle();
    expectSecondaryTextsStandOut();
    app().onboardingView()->goForward();
    ui().settle();
    expectSecondaryTextsStandOut();
}

} // namespace
} // namespace tarne::test
