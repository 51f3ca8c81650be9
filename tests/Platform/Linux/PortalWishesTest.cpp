#include "PortalWishes.h"

#include "EventLoop.h"
#include "PrivateBus.h"

#include <QDBusVariant>

#include <gmock/gmock.h>

#include <cmath>

using testing::ElementsAre;
using testing::IsEmpty;

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tarne::test {
namespace {

const QString common = u"org.freedesktop.appearance"_s;
const QString gnome = u"org.gnome.desktop.interface"_s;
const QString gnomeAccessibility = u"org.gnome.desktop.a11y.interface"_s;
const QString kde = u"org.kde.kdeglobals.KDE"_s;

const QString settingsInterface = u"org.freedesktop.portal.Settings"_s;

/// What a portal answers that holds one setting, in Python.
QString holding(const QString &group, const QString &key, const QString &value) {
    return u"ret = dbus.Dictionary({'%1': dbus.Dictionary({'%2': %3}, signature='sv')}, "
           u"signature='sa{sv}')"_s.arg(group, key, value);
}
const QString nothing = u"ret = dbus.Dictionary({}, signature='sa{sv}')"_s;

class DesktopsWishes : public testing::Test {
protected:
    void startPortal(const QString &answer, const QString &signature = u"a{sa{sv}}"_s) {
        m_portal = MockService::bare(m_bus, u"org.freedesktop.portal.Desktop"_s,
                                     u"/org/freedesktop/portal/desktop"_s, settingsInterface);
        m_portal->addMethod(u"ReadAll"_s, u"as"_s, signature, answer);
    }
    void follow() {
        m_wishes = std::make_unique<PortalWishes>(
            m_bus.connect(), [this] { return m_drawnScale; },
            [this](const DesktopWishes &wishes) { m_told.push_back(wishes); });
    }
    void change(const QString &group, const QString &key, const QVariant &value) {
        m_portal->emitSignal(settingsInterface, u"SettingChanged"_s, u"ssv"_s,
                             {group, key, QVariant::fromValue(QDBusVariant(value))});
    }
    bool waitForTold(std::size_t count) {
        return serveUntil([&] { return m_told.size() >= count; });
    }
    /// What is told of one setting that is there from the beginning.
    DesktopWishes wishesOf(const QString &group, const QString &key, const QString &value) {
        startPortal(holding(group, key, value));
        follow();
        EXPECT_TRUE(waitForTold(1));
        return m_told.empty() ? DesktopWishes{} : m_told.back();
    }
    /// Whether a portal that answers so makes no wish: one that is made afterwards comes first.
    void expectNoWishOf(const QString &answer, const QString &signature = u"a{sa{sv}}"_s) {
        startPortal(answer, signature);
        follow();
        ASSERT_TRUE(m_portal->waitForCalls(u"ReadAll"_s, 1));
        change(common, u"contrast"_s, 1U);
        ASSERT_TRUE(waitForTold(1));
        EXPECT_THAT(m_told, ElementsAre(DesktopWishes{.contrastMore = true}));
    }

    PrivateBus m_bus;
    std::unique_ptr<MockService> m_portal;
    double m_drawnScale = 1.0;
    std::vector<DesktopWishes> m_told;
    std::unique_ptr<PortalWishes> m_wishes;
};

constexpr DesktopWishes still{.reducedMotion = true};
constexpr DesktopWishes contrast{.contrastMore = true};

TEST_F(DesktopsWishes, ReducedMotionIsHeardOfTheCommonSetting) {
    EXPECT_EQ(wishesOf(common, u"reduced-motion"_s, u"dbus.UInt32(1)"_s), still);
}
TEST_F(DesktopsWishes, ReducedMotionIsHeardOfGnomesAnimations) {
    EXPECT_EQ(wishesOf(gnome, u"enable-animations"_s, u"False"_s), still);
}
TEST_F(DesktopsWishes, ReducedMotionIsHeardOfKdesDurations) {
    EXPECT_EQ(wishesOf(kde, u"AnimationDurationFactor"_s, u"'0'"_s), still);
}
TEST_F(DesktopsWishes, MoreContrastIsHeardOfTheCommonSetting) {
    EXPECT_EQ(wishesOf(common, u"contrast"_s, u"dbus.UInt32(1)"_s), contrast);
}
TEST_F(DesktopsWishes, MoreContrastIsHeardOfGnomesHighContrast) {
    EXPECT_EQ(wishesOf(gnomeAccessibility, u"high-contrast"_s, u"True"_s), contrast);
}
TEST_F(DesktopsWishes, TheTextScaleIsHeard) {
    EXPECT_EQ(wishesOf(gnome, u"text-scaling-factor"_s, u"1.25"_s),
              DesktopWishes{.textScale = 1.25});
}
TEST_F(DesktopsWishes, TheTextScaleIsKeptToWhatScreensHold) {
    EXPECT_EQ(wishesOf(gnome, u"text-scaling-factor"_s, u"3.0"_s), DesktopWishes{.textScale = 1.5});
}
TEST_F(DesktopsWishes, ATextScaleThatIsDrawnAlreadyIsNotAppliedAgain) {
    m_drawnScale = 1.25;
    expectNoWishOf(holding(gnome, u"text-scaling-factor"_s, u"1.25"_s));
}
TEST_F(DesktopsWishes, AValueThatIsWrappedTwiceIsReadAllTheSame) {
    EXPECT_EQ(wishesOf(common, u"contrast"_s, u"dbus.UInt32(1, variant_level=2)"_s), contrast);
}

TEST_F(DesktopsWishes, SettingsAtTheirDefaultsAreNoWish) {
    expectNoWishOf(u"ret = dbus.Dictionary({"
                   u"'org.freedesktop.appearance': dbus.Dictionary({'contrast': dbus.UInt32(0), "
                   u"'reduced-motion': dbus.UInt32(0), 'color-scheme': dbus.UInt32(1)}, "
                   u"signature='sv'), "
                   u"'org.gnome.desktop.interface': dbus.Dictionary({'enable-animations': True, "
                   u"'text-scaling-factor': 1.0}, signature='sv'), "
                   u"'org.gnome.desktop.a11y.interface': dbus.Dictionary({'high-contrast': False}, "
                   u"signature='sv'), "
                   u"'org.kde.kdeglobals.KDE': dbus.Dictionary({'AnimationDurationFactor': '1'}, "
                   u"signature='sv')}, signature='sa{sv}')"_s);
}
TEST_F(DesktopsWishes, SettingsOfOtherTypesAreNoWish) {
    expectNoWishOf(u"ret = dbus.Dictionary({"
                   u"'org.freedesktop.appearance': dbus.Dictionary({'contrast': '1', "
                   u"'reduced-motion': True}, signature='sv'), "
                   u"'org.gnome.desktop.interface': dbus.Dictionary({'enable-animations': 'no', "
                   u"'text-scaling-factor': 'large'}, signature='sv'), "
                   u"'org.gnome.desktop.a11y.interface': dbus.Dictionary({'high-contrast': 'yes'}, "
                   u"signature='sv'), "
                   u"'org.kde.kdeglobals.KDE': dbus.Dictionary({'AnimationDurationFactor': ''}, "
                   u"signature='sv')}, signature='sa{sv}')"_s);
}
TEST_F(DesktopsWishes, AnAnswerOfAnotherFormIsNoWish) {
    expectNoWishOf(u"ret = 'nothing'"_s, u"s"_s);
}
TEST_F(DesktopsWishes, APortalThatRefusesMakesNoWish) {
    expectNoWishOf(u"raise dbus.exceptions.DBusException('no', name='org.example.No')"_s);
}

TEST_F(DesktopsWishes, ChangesAreFollowed) {
    startPortal(nothing);
    follow();
    ASSERT_TRUE(m_portal->waitForCalls(u"ReadAll"_s, 1));
    change(common, u"reduced-motion"_s, 1U);
    ASSERT_TRUE(waitForTold(1));
    change(gnome, u"text-scaling-factor"_s, 1.5);
    ASSERT_TRUE(waitForTold(2));
    change(common, u"reduced-motion"_s, 0U);
    ASSERT_TRUE(waitForTold(3));
    EXPECT_THAT(m_told, ElementsAre(still, DesktopWishes{.reducedMotion = true, .textScale = 1.5},
                                    DesktopWishes{.textScale = 1.5}));
}

TEST_F(DesktopsWishes, AChangeIsNotTakenBackByAnOlderAnswer) {
    startPortal(u"self.EmitSignal('org.freedesktop.portal.Settings', 'SettingChanged', 'ssv', "
                u"['org.freedesktop.appearance', 'reduced-motion', dbus.UInt32(1)])\n"_s +
                nothing);
    follow();
    ASSERT_TRUE(m_portal->waitForCalls(u"ReadAll"_s, 1));
    change(gnome, u"text-scaling-factor"_s, 1.5);
    ASSERT_TRUE(waitForTold(2));
    EXPECT_THAT(m_told, ElementsAre(still, DesktopWishes{.reducedMotion = true, .textScale = 1.5}));
}

TEST_F(DesktopsWishes, ASettingOfNoConcernIsNotTold) {
    startPortal(nothing);
    follow();
    ASSERT_TRUE(m_portal->waitForCalls(u"ReadAll"_s, 1));
    change(common, u"color-scheme"_s, 1U);
    change(gnome, u"cursor-size"_s, 48);
    change(common, u"contrast"_s, 1U);
    ASSERT_TRUE(waitForTold(1));
    EXPECT_THAT(m_told, ElementsAre(contrast));
}

TEST_F(DesktopsWishes, APortalThatComesLaterIsHeard) {
    follow();
    startPortal(nothing);
    change(common, u"contrast"_s, 1U);
    ASSERT_TRUE(waitForTold(1));
    EXPECT_THAT(m_told, ElementsAre(contrast));
}

TEST_F(DesktopsWishes, AHangingPortalHoldsNobodyUp) {
    startPortal(nothing);
    m_portal->hang();
    EXPECT_LT(timeOf([&] { follow(); }), 100ms);
    EXPECT_THAT(m_told, IsEmpty());
    m_portal->resume();
}

TEST_F(DesktopsWishes, AreHeardFromAPortalThatAnswersLate) {
    startPortal(holding(gnome, u"text-scaling-factor"_s, u"1.25"_s));
    m_portal->hang();
    follow();
    EXPECT_FALSE(serveUntil([] { return false; }, 2500ms));
    m_portal->resume();
    ASSERT_TRUE(waitForTold(1));
    EXPECT_THAT(m_told, ElementsAre(DesktopWishes{.textScale = 1.25}));
}

TEST(DesktopsWishesWithoutABus, AreNone) {
    bool told = false;
    PortalWishes wishes(
        noBus(), [] { return 1.0; }, [&](const DesktopWishes &) { told = true; });
    EXPECT_FALSE(serveUntil([&] { return told; }, 200ms));
}

struct Scales {
    const char *name;
    double text, drawn, left;
};

class ATextScale : public testing::TestWithParam<Scales> {};

TEST_P(ATextScale, IsAppliedOnce) {
    EXPECT_DOUBLE_EQ(textScaleLeft(GetParam().text, GetParam().drawn), GetParam().left);
}

INSTANTIATE_TEST_SUITE_P(
    Drawn, ATextScale,
    testing::Values(
        Scales{"NoWish", 1.0, 1.0, 1.0}, Scales{"NoWishOnALargeScreen", 1.0, 2.0, 1.0},
        Scales{"OnPlainScreen", 1.25, 1.0, 1.25}, Scales{"InTheResolution", 1.25, 1.25, 1.0},
        // 96 times 1.15 is 110.4 dots, of which 110 are told.
        Scales{"InTheResolutionRoundedDown", 1.15, 110.0 / 96, 1.0},
        Scales{"InTheResolutionOfALargeScreen", 1.25, 2.5, 1.0},
        Scales{"BesideTheScaleOfALargeScreen", 1.25, 2.0, 1.25}, Scales{"Smaller", 0.8, 1.0, 1.0},
        Scales{"SmallerInTheResolution", 0.8, 0.8, 1.0}, Scales{"BeyondTheLargest", 2.5, 1.0, 1.5}),
    [](const auto &scales) { return std::string(scales.param.name); });

} // namespace
} // namespace tarne::test
