#include "EditReflectionSheet.h"
#include "ExportSheet.h"

#include "RecordingPasteboard.h"

#include <QProperty>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace tarne;
using namespace Qt::StringLiterals;

namespace {

/// The sheet of a presenter that has a text and a flag.
struct Edited {
    Calendar calendar{QTimeZone::utc(), QLocale(u"en_US"_s)};
    QProperty<QString> reflection{u"before"_s};
    QProperty<bool> isPresented{true};
    QStringList saved;
    EditReflectionSheet sheet{
        {.sessionDate = *calendar.date({2026, 3, 2, 15, 30}), .goals = {}, .duration = 0},
        &reflection,
        &isPresented,
        calendar,
        [this](const QString &text) { saved += text; }};
};

} // namespace

TEST(EditReflectionSheet, ItShowsTheFullDateAndTheReflection) {
    const Edited edited;
    EXPECT_EQ(edited.sheet.dateText(), u"Monday, March 2, 2026 at 3:30 PM"_s);
    EXPECT_EQ(edited.sheet.reflection(), u"before"_s);
    EXPECT_TRUE(edited.isPresented);
}

TEST(EditReflectionSheet, ItsTextIsThePresentersInBothDirections) {
    Edited edited;
    int changes = 0;
    QObject::connect(&edited.sheet, &EditReflectionSheet::reflectionChanged, &edited.sheet,
                     [&] { ++changes; });
    edited.reflection = u"by the presenter"_s;
    EXPECT_EQ(edited.sheet.reflection(), u"by the presenter"_s);
    EXPECT_EQ(changes, 1);
    edited.sheet.setReflection(u"by the user"_s);
    EXPECT_EQ(edited.reflection.value(), u"by the user"_s);
    EXPECT_EQ(changes, 2);
}

TEST(EditReflectionSheet, DateAndTimeAreJoinedAsTheLanguageDoes) {
    const Date date = *Edited().calendar.date({2026, 3, 2, 15, 30});
    QProperty<QString> reflection;
    QProperty<bool> isPresented{true};
    const auto text = [&](const QString &locale) {
        const Calendar calendar(QTimeZone::utc(), QLocale(locale));
        return EditReflectionSheet({.sessionDate = date, .goals = {}, .duration = 0}, &reflection,
                                   &isPresented, calendar, {})
            .dateText();
    };
    EXPECT_EQ(text(u"en_GB"_s), u"Monday, 2 March 2026 at 15:30"_s);
    EXPECT_EQ(text(u"de_DE"_s), u"Montag, 2. März 2026 um 15:30"_s);
    EXPECT_EQ(text(u"ja_JP"_s), u"2026年3月2日月曜日 15:30"_s);
}

TEST(EditReflectionSheet, CancelLowersThePresentersFlagAndNothingElse) {
    Edited edited;
    edited.sheet.setReflection(u"after"_s);
    edited.sheet.cancel();
    EXPECT_FALSE(edited.isPresented);
    EXPECT_EQ(edited.saved, QStringList());
    EXPECT_EQ(edited.reflection.value(), u"after"_s);
}

TEST(EditReflectionSheet, SaveHandsTheTextOverAndLowersThePresentersFlag) {
    Edited edited;
    edited.sheet.setReflection(u"after"_s);
    edited.sheet.save();
    EXPECT_FALSE(edited.isPresented);
    EXPECT_EQ(edited.saved, QStringList{u"after"_s});
}

TEST(EditReflectionSheet, AnEmptyReflectionIsSavedToo) {
    Edited edited;
    edited.sheet.setReflection(QString());
    edited.sheet.save();
    EXPECT_EQ(edited.saved, QStringList{QString()});
}

TEST(ExportSheet, CopyingClearsTheClipboardAndPutsTheTextThere) {
    test::RecordingPasteboard pasteboard;
    QProperty<bool> isPresented{true};
    ExportSheet sheet(u"# History"_s, &isPresented, pasteboard);
    sheet.copyToClipboard();
    EXPECT_EQ(pasteboard.calls, (QStringList{u"clear"_s, u"set"_s}));
    EXPECT_EQ(pasteboard.text, u"# History"_s);
    EXPECT_TRUE(isPresented);
}

TEST(ExportSheet, DoneLowersThePresentersFlag) {
    test::RecordingPasteboard pasteboard;
    QProperty<bool> isPresented{true};
    ExportSheet sheet(u"text"_s, &isPresented, pasteboard);
    sheet.done();
    EXPECT_FALSE(isPresented);
    EXPECT_EQ(pasteboard.calls, QStringList());
}
