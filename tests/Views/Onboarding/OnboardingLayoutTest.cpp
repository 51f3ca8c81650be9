#include "LayoutProbe.h"
#include "OnboardingFixture.h"
#include "TARNEStyle.h"
#include "TestMain.h"
#include "TextLook.h"

#include <gmock/gmock.h>

#include <cmath>

using namespace Qt::StringLiterals;
using testing::DoubleNear;

namespace tarne::test {
namespace {

using Fonts = TARNEStyle::Typography;
using Colors = TARNEStyle::Colors;

class OnboardingLayout : public OnboardingScreenTest {
protected:
    LayoutProbe probe() { return LayoutProbe(ui()); }

    static QRectF above(const QQuickItem &item) { return placeOf(*item.parentItem()); }

    /// The card that a text lies on.
    QQuickItem &cardAround(const QString &text) {
        QQuickItem *item = &probe().item(text);
        while (item->parentItem() && !item->property("shadowRadius").isValid())
            item = item->parentItem();
        return *item;
    }

    /// The symbol beside a text.
    QQuickItem &symbolBeside(const QString &text) {
        for (QQuickItem *const sibling : probe().item(text).parentItem()->childItems()) {
            if (sibling->property("symbol").isValid())
                return *sibling;
        }
        ADD_FAILURE() << "no symbol beside " << qPrintable(text);
        return probe().item(text);
    }

    void expectCardHead(const QString &title, const QString &symbol, const QColor &color) {
        const QRectF card = placeOf(cardAround(title));
        const QQuickItem &icon = symbolBeside(title);
        EXPECT_EQ(icon.property("symbol"), symbol);
        EXPECT_EQ(LayoutProbe::color(icon), color);
        EXPECT_EQ(icon.property("size"), 16);
        EXPECT_EQ(placeOf(icon).left(), card.left() + 16);
        EXPECT_EQ(above(icon).top(), card.top() + 16);
        EXPECT_EQ(probe().place(title).left(), placeOf(icon).right() + 8);
        expectLook(ui(), title, Fonts::heading3(), Colors::primaryText);
    }
};

// The welcome page.

TEST_F(OnboardingLayout, WithoutAnIconTheNameStandsOnTheAccentColourInItsPlace) {
    const QQuickItem &name = probe().text(u"TARNE"_s);
    const QQuickItem &ground = *name.parentItem();
    EXPECT_EQ(ground.size(), QSizeF(120, 120));
    EXPECT_EQ(ground.property("radius"), 16);
    EXPECT_EQ(LayoutProbe::color(ground), Colors::accent);
    EXPECT_EQ(LayoutProbe::font(name), Fonts::heading2());
    EXPECT_EQ(LayoutProbe::color(name), QColor(Qt::white));
    EXPECT_THAT(placeOf(name).center().x(), DoubleNear(placeOf(ground).center().x(), 1));
    EXPECT_THAT(placeOf(name).center().y(), DoubleNear(placeOf(ground).center().y(), 1));
    EXPECT_FALSE(ui().has(u"AppIcon"_s));
}

TEST_F(OnboardingLayout, TheWelcomePageIsAColumnInTheMiddle) {
    const QQuickItem &icon = *probe().text(u"TARNE"_s).parentItem()->parentItem();
    const QQuickItem &column = *icon.parentItem();
    const QQuickItem &title = *column.childItems().at(1);
    const QQuickItem &first = probe().item(u"Set a goal, block what's distracting,"_s);
    const QQuickItem &second = probe().item(u"and stay focused on the work that matters most"_s);
    for (const QQuickItem *const item : {&icon, &title, &first, &second})
        EXPECT_THAT(placeOf(*item).center().x(), DoubleNear(500, 1));
    EXPECT_EQ(placeOf(icon).top(), placeOf(column).top() + 16);
    EXPECT_EQ(column.property("padding"), 16);
    EXPECT_EQ(placeOf(title).top(), placeOf(icon).bottom());
    EXPECT_EQ(title.property("topPadding"), 16);
    EXPECT_EQ(placeOf(first).top(), placeOf(title).bottom() + 4);
    EXPECT_EQ(placeOf(second).top(), placeOf(first).bottom() + 2);
    EXPECT_EQ(first.parentItem()->property("leftPadding"), 16);
    EXPECT_EQ(first.parentItem()->property("rightPadding"), 16);
    const double top = 16 + 8 + 8; // Below the dots.
    const double bottom = probe().place(u"Next"_s).top() - 8;
    EXPECT_THAT(placeOf(column).center().y(), DoubleNear((top + bottom) / 2, 1));
}

TEST_F(OnboardingLayout, TheWelcomePageWritesInItsFontsAndColours) {
    const QQuickItem &icon = *probe().text(u"TARNE"_s).parentItem()->parentItem();
    const QQuickItem &title = *icon.parentItem()->childItems().at(1);
    EXPECT_EQ(title.property("text"), u"TARNE"_s);
    EXPECT_EQ(LayoutProbe::font(title), Fonts::system(24, QFont::DemiBold));
    EXPECT_EQ(LayoutProbe::color(title), Colors::primaryText);
    for (const QString &line : {u"Set a goal, block what's distracting,"_s,
                                u"and stay focused on the work that matters most"_s})
        expectLook(ui(), line, Fonts::body(), Colors::secondaryText);
}

class OnboardingWithIcon : public OnboardingScreenTest {
protected:
    QQuickItem &icon() {
        QQuickItem *const found = window.find(u"AppIcon"_s, QAccessible::Graphic);
        EXPECT_NE(found, nullptr);
        return found ? *found : *window.root();
    }

    OnboardingView withIcon{*manager, defaults, workspace, QUrl(u"qrc:/icons/com.tarne.app.svg"_s)};
    UiDriver window{QUrl(u"qrc:/qt/qml/TARNE/Views/OnboardingScreen.qml"_s),
                    {{u"view"_s, QVariant::fromValue(&withIcon)}}};
};

TEST_F(OnboardingWithIcon, ShowsItInPlaceOfTheName) {
    EXPECT_EQ(icon().size(), QSizeF(120, 120));
    EXPECT_EQ(icon().property("source"), withIcon.appIcon());
    EXPECT_EQ(icon().property("fillMode").toInt(), 1); // Image.PreserveAspectFit
    EXPECT_EQ(window.texts().count(u"TARNE"_s), 1);
}

TEST_F(OnboardingWithIcon, DrawsItInTheMiddleAndNothingInItsCorners) {
    const QImage picture = window.picture();
    const QRectF place = placeOf(icon());
    const auto drawn = [&](double x, double y) {
        return picture.pixelColor((place.topLeft() + QPointF(x, y)).toPoint());
    };
    EXPECT_GT(drawn(60, 90).blue(), 200);
    EXPECT_LT(drawn(60, 90).red(), 100);
    // A corner of radius 16 leaves what is nearer than 16 - 16 / sqrt(2) on both axes.
    for (const double x : {1.0, 4.0, 115.0, 118.0}) {
        for (const double y : {1.0, 4.0, 115.0, 118.0})
            EXPECT_EQ(drawn(x, y), Colors::background) << x << ' ' << y;
    }
}

TEST_F(OnboardingScreenTest, AnIconThatCannotBeReadCountsAsNone) {
    const ExpectedWarning warning(u"Cannot open: qrc:/icons/other.svg"_s);
    OnboardingView broken(*manager, defaults, workspace, QUrl(u"qrc:/icons/other.svg"_s));
    const UiDriver window(QUrl(u"qrc:/qt/qml/TARNE/Views/OnboardingScreen.qml"_s),
                          {{u"view"_s, QVariant::fromValue(&broken)}});
    EXPECT_FALSE(window.has(u"AppIcon"_s));
    EXPECT_EQ(window.texts().count(u"TARNE"_s), 2);
}

// Around the pages.

TEST_F(OnboardingLayout, TheDotsAreTwoOfEightByEightInTheMiddleOfTheTop) {
    ui();
    const QQuickItem &row = *ui().root()->childItems().constFirst();
    const auto dots = row.childItems().first(2);
    EXPECT_EQ(placeOf(*dots[0]), QRectF(488, 16, 8, 8));
    EXPECT_EQ(placeOf(*dots[1]), QRectF(504, 16, 8, 8));
    for (const QQuickItem *const dot : dots)
        EXPECT_EQ(dot->property("radius"), 4);
    EXPECT_EQ(LayoutProbe::color(*ui().root()), Colors::background);
}

TEST_F(OnboardingLayout, TheButtonsStandInTheCornersInTheirStyles) {
    EXPECT_EQ(probe().look(u"Next"_s), PrimaryButtonStyle{}({}));
    EXPECT_EQ(probe().place(u"Next"_s).bottomRight(), QPointF(1000 - 16, 700 - 16));
    openSetup();
    ASSERT_TRUE(ui().waitUntil([&] {
        return probe().place(u"Start Focusing"_s).width() ==
               std::ceil(LayoutProbe::place(probe().text(u"Start Focusing"_s)).width()) + 2 * 16;
    }));
    EXPECT_EQ(probe().look(u"Start Focusing"_s), PrimaryButtonStyle{}({}));
    EXPECT_EQ(probe().place(u"Start Focusing"_s).bottomRight(), QPointF(1000 - 16, 700 - 16));
    EXPECT_EQ(probe().look(u"Back"_s), SecondaryButtonStyle{}({}));
    EXPECT_EQ(probe().place(u"Back"_s).bottomLeft(), QPointF(16, 700 - 16));
}

TEST_F(OnboardingLayout, InTheSmallestWindowThePageEndsAboveTheButtonsAndScrolls) {
    ui(QSize(800, 600));
    openSetup();
    QQuickItem *page = &probe().item(u"Complete Setup"_s);
    while (!page->property("contentY").isValid())
        page = page->parentItem();
    EXPECT_EQ(placeOf(*page).top(), 16 + 8 + 8);
    EXPECT_EQ(placeOf(*page).bottom(), probe().place(u"Back"_s).top() - 8);
    EXPECT_GT(page->property("contentHeight").toDouble(), page->height());
    page->setProperty("contentY", page->property("contentHeight").toDouble() - page->height());
    const QRectF card = placeOf(cardAround(u"Gemini AI Configuration"_s));
    EXPECT_EQ(card.bottom(), placeOf(*page).bottom() - 16);
}

// The setup page.

TEST_F(OnboardingLayout, TheSetupPageSetsItsPartsApartAsTold) {
    openSetup();
    const QRectF title = probe().place(u"Complete Setup"_s, QAccessible::Heading);
    const QRectF line = probe().place(u"Configure Safari extension and AI to start focusing"_s);
    const QRectF first = placeOf(cardAround(u"Safari Extension Setup"_s));
    const QRectF second = placeOf(cardAround(u"Gemini AI Configuration"_s));
    EXPECT_EQ(title.top(), 16 + 8 + 8 + 16);
    EXPECT_THAT(title.center().x(), DoubleNear(500, 1));
    EXPECT_EQ(line.top(), title.bottom() + 8);
    EXPECT_THAT(line.center().x(), DoubleNear(500, 1));
    EXPECT_EQ(first.top(), line.bottom() + 24);
    EXPECT_EQ(second.top(), first.bottom() + 24);
    for (const QRectF &card : {first, second}) {
        EXPECT_EQ(card.left(), 16);
        EXPECT_EQ(card.right(), 1000 - 16);
    }
    expectLook(ui(), u"Complete Setup"_s, Fonts::heading1(), Colors::primaryText);
    expectLook(ui(), u"Configure Safari extension and AI to start focusing"_s, Fonts::body(),
               Colors::secondaryText);
}

TEST_F(OnboardingLayout, ItsCardsAreWhiteWithASoftShadow) {
    openSetup();
    QColor shadow(Qt::black);
    shadow.setAlphaF(0.05F);
    for (const QString &title : {u"Safari Extension Setup"_s, u"Gemini AI Configuration"_s}) {
        const QQuickItem &card = cardAround(title);
        EXPECT_EQ(LayoutProbe::color(card), QColor(Qt::white));
        EXPECT_EQ(card.property("padding"), 16);
        EXPECT_EQ(card.property("cornerRadius"), 8);
        EXPECT_EQ(card.property("shadowColor").value<QColor>(), shadow);
        EXPECT_EQ(card.property("shadowRadius"), 8);
        EXPECT_EQ(card.property("shadowOffset"), 2);
    }
}

TEST_F(OnboardingLayout, TheFirstCardNumbersItsSteps) {
    openSetup();
    expectCardHead(u"Safari Extension Setup"_s, u"safari"_s, SystemColors::blue);
    const QRectF card = placeOf(cardAround(u"Safari Extension Setup"_s));
    double top = above(probe().item(u"Safari Extension Setup"_s)).bottom() + 16;
    const std::pair<QString, QString> steps[] = {
        {u"1."_s, u"Open Safari so it's the active app"_s},
        {u"2."_s, u"In the top menu bar, click Safari → Settings (⌘,)"_s},
        {u"3."_s, u"Go to the Extensions tab"_s},
        {u"4."_s, u"Check (✓) TARNEExtension to enable it"_s}};
    for (const auto &[number, text] : steps) {
        EXPECT_EQ(probe().place(number).topLeft(), QPointF(card.left() + 16, top));
        EXPECT_EQ(probe().place(number).width(), 20);
        EXPECT_EQ(probe().place(text).topLeft(), QPointF(card.left() + 16 + 20 + 8, top));
        expectLook(ui(), number, Fonts::emphasis(), Colors::accent);
        expectLook(ui(), text, Fonts::body(), Colors::primaryText);
        top = above(probe().item(text)).bottom() + 8;
    }
    EXPECT_EQ(card.bottom(), top - 8 + 16);
}

TEST_F(OnboardingLayout, TheSecondCardAsksForTheKey) {
    openSetup();
    expectCardHead(u"Gemini AI Configuration"_s, u"brain.head.profile"_s, SystemColors::purple);
    const QRectF card = placeOf(cardAround(u"Gemini AI Configuration"_s));
    const QRectF label = probe().place(u"API Key"_s);
    const QRectF row = above(probe().item(u"Enter your Gemini API key"_s));
    const QRectF link = probe().place(u"Get Free API Key"_s);
    const QQuickItem &help = *probe().item(u"Get Free API Key"_s).parentItem()->childItems().at(3);
    EXPECT_EQ(
        label.topLeft(),
        QPointF(card.left() + 16, above(probe().item(u"Gemini AI Configuration"_s)).bottom() + 16));
    EXPECT_EQ(row.top(), label.bottom() + 12);
    EXPECT_EQ(row.right(), card.right() - 16);
    EXPECT_EQ(link.topLeft(), QPointF(card.left() + 16, row.bottom() + 12));
    EXPECT_EQ(placeOf(help).top(), link.bottom() + 12);
    EXPECT_EQ(card.bottom(), placeOf(help).bottom() + 16);
    EXPECT_EQ(LayoutProbe::font(help), Fonts::caption());
    EXPECT_EQ(LayoutProbe::color(help), Colors::secondaryText);
    expectLook(ui(), u"API Key"_s, Fonts::system(14, QFont::Medium), Colors::primaryText);
}

TEST_F(OnboardingLayout, TheKeysFieldIsOutlinedAndTheEyeStandsBehindIt) {
    openSetup();
    const QQuickItem &field = probe().item(u"Enter your Gemini API key"_s);
    EXPECT_EQ(field.property("cornerRadius"), 6);
    EXPECT_EQ(field.property("outlineWidth"), 1);
    EXPECT_EQ(LayoutProbe::color(probe().item(u"Show key"_s)), Colors::secondaryText);
    EXPECT_EQ(probe().item(u"Show key"_s).property("symbol"), u"eye"_s);
    EXPECT_EQ(probe().place(u"Show key"_s).left(), placeOf(field).right() + 8);
    EXPECT_EQ(probe().look(u"Get Free API Key"_s), SecondaryButtonStyle{}({}));
    EXPECT_EQ(probe().item(u"Get Free API Key"_s).property("symbol"), u"link"_s);
    EXPECT_EQ(probe().gapIn(u"Get Free API Key"_s), 8);
    EXPECT_EQ(probe().item(u"Get Free API Key"_s).property("minimumWidth"), 130);
    ASSERT_TRUE(ui().click(u"Show key"_s));
    EXPECT_EQ(probe().item(u"Hide key"_s).property("symbol"), u"eye.slash"_s);
}

} // namespace
} // namespace tarne::test
