// Whether texts can be read as they stand, in small windows and at large scales.

#include "ClippedTexts.h"
#include "WishesFixture.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

#include <cmath>
#include <tuple>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

/// A window of some size, in points, with texts of some scale.
struct Display {
    QSize size;
    double textScale;

    friend void PrintTo(const Display &display, std::ostream *out) {
        *out << display.size.width() << 'x' << display.size.height() << " times "
             << display.textScale;
    }
};

/// Every screen, sheet and alert that the program leads to.
class EveryText : public WishesTest, public testing::WithParamInterface<Display> {
protected:
    void SetUp() override { showAtScale(true); }

    void showAtScale(bool hasSeenOnboarding) {
        if (hasSeenOnboarding)
            completeOnboardingBefore();
        ui(GetParam().size).settle();
        wish({.reducedMotion = true, .textScale = GetParam().textScale});
    }
    /// What cannot be read when all has come to rest.
    QStringList clippedTexts() {
        EXPECT_FALSE(ui().picture().isNull());
        ui().settle();
        return ClippedTexts::in(ui().view());
    }
    /// The same where there should be nothing: on a busy machine a list is laid out some frames
    /// later.
    std::string clipped() {
        QStringList found;
        std::ignore = ui().waitUntil([&] { return (found = clippedTexts()).isEmpty(); });
        return found.join(u'\n').toStdString();
    }
    void openTab(int tab) {
        content().setSelectedTab(tab);
        ui().settle();
    }
    void openReflection() {
        startSession(u"Write the report, Review, Plan the week with everybody who is there"_s);
        pressByKey(u"Stop"_s);
    }
    void openFeedback() {
        openReflection();
        for (int goal = 0; goal < 3; ++goal) {
            ui().key(Qt::Key_Tab);
            pressByKey(u"Partially Completed"_s);
        }
        tabTo(u"Reflection"_s);
        ui().type(u"It went well, and I know what comes next."_s);
        pressByKey(u"Complete reflection"_s);
        ASSERT_TRUE(ui().waitUntil([&] { return !feedback.gemini.requests.empty(); }));
    }
};

TEST_P(EveryText, IsWholeOnTheSetupFace) {
    EXPECT_EQ(clipped(), "");
}
TEST_P(EveryText, IsWholeOnTheSessionFace) {
    startSession(u"Write report"_s);
    EXPECT_EQ(clipped(), "");
    pressByKey(u"Pause"_s);
    EXPECT_EQ(clipped(), "");
}
TEST_P(EveryText, IsWholeInTheMenu) {
    ASSERT_TRUE(ui().click(u"Menu"_s));
    EXPECT_EQ(clipped(), "");
}
TEST_P(EveryText, IsWholeInTheAlertOfUpdates) {
    updateCheck.present({.kind = UpdateCheckResult::Kind::NewerVersion,
                         .version = u"1.1.0"_s,
                         .downloadPage = QUrl(u"https://example.org/tarne"_s),
                         .failure = {}});
    EXPECT_EQ(clipped(), "");
}
TEST_P(EveryText, IsWholeOnTheDurationSheet) {
    openDurationSheet();
    EXPECT_EQ(clipped(), "");
    content().timerView()->durationSelection()->setCustomDuration(u"2"_s);
    pressByKey(u"Custom Duration"_s);
    EXPECT_EQ(clipped(), "");
}
TEST_P(EveryText, IsWholeOnTheNotesSheet) {
    openNotesSheet();
    EXPECT_EQ(clipped(), "");
    ui().type(u"Write the report, Review "_s.repeated(10));
    EXPECT_EQ(clipped(), "");
}
TEST_P(EveryText, IsWholeOnTheReflectionSheet) {
    openReflection();
    EXPECT_EQ(clipped(), "");
}
TEST_P(EveryText, IsWholeOnTheFeedbackSheet) {
    openFeedback();
    EXPECT_EQ(clipped(), "");
}
TEST_P(EveryText, IsWholeInInsights) {
    openTab(1);
    // The oldest weeks of the year are cut off where the card is too narrow, and their months.
    QStringList rest = clippedTexts();
    rest.removeIf([](const QString &line) {
        return line.contains(QRegularExpression(u"^\"(Mar|Dec)\" is (cut off at a side|out of)"_s));
    });
    EXPECT_EQ(rest.join(u'\n').toStdString(), "");
}
TEST_P(EveryText, IsWholeInTheHistory) {
    openTab(2);
    EXPECT_EQ(clipped(), "");
}
TEST_P(EveryText, IsWholeInTheSettings) {
    openTab(3);
    EXPECT_EQ(clipped(), "");
    content().settingsView()->setApiKey(u"an example of a key"_s);
    content().settingsView()->saveAPIKey();
    EXPECT_EQ(clipped(), "");
}

const auto displays =
    testing::Values(Display{{1000, 700}, 1.5}, Display{{800, 600}, 1.5}, Display{{1000, 700}, 1.25},
                    Display{{1000, 600}, 1.0}, Display{{960, 540}, 1.0});
const auto nameOfDisplay = [](const testing::TestParamInfo<Display> &display) {
    return std::to_string(display.param.size.width()) + "x" +
           std::to_string(display.param.size.height()) + "WithTextsOf" +
           std::to_string(std::lround(display.param.textScale * 100)) + "Percent";
};
INSTANTIATE_TEST_SUITE_P(At, EveryText, displays, nameOfDisplay);

class EveryTextAtFirst : public EveryText {
protected:
    void SetUp() override { showAtScale(false); }
};

TEST_P(EveryTextAtFirst, IsWholeInOnboarding) {
    EXPECT_EQ(clipped(), "");
    OnboardingView &view = *app().onboardingView();
    view.goForward();
    EXPECT_EQ(clipped(), "");
    view.setApiKey(u"an example of a key"_s);
    view.goForward();
    EXPECT_EQ(clipped(), "");
}

INSTANTIATE_TEST_SUITE_P(At, EveryTextAtFirst, displays, nameOfDisplay);

} // namespace
} // namespace tarne::test
