#pragma once

#include "Calendar.h"
#include "SessionHistoryEntry.h"

#include <QColor>
#include <QObject>
#include <QString>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace tarne {

/// A goal's row on a card.
struct HistoryGoalRow {
    Q_GADGET
    QML_VALUE_TYPE(historyGoalRow)
    Q_PROPERTY(QString symbol MEMBER symbol CONSTANT FINAL)
    Q_PROPERTY(QColor color MEMBER color CONSTANT FINAL)
    Q_PROPERTY(QString text MEMBER text CONSTANT FINAL)

public:
    QString symbol;
    QColor color;
    QString text;
};

/// A coaching text on a card, shown when its row is opened.
struct HistoryFeedbackRow {
    Q_GADGET
    QML_VALUE_TYPE(historyFeedbackRow)
    Q_PROPERTY(QString icon MEMBER icon CONSTANT FINAL)
    Q_PROPERTY(QString title MEMBER title CONSTANT FINAL)
    Q_PROPERTY(QString content MEMBER content CONSTANT FINAL)

public:
    QString icon;
    QString title;
    QString content;
};

/// What the card of one finished session shows, worded for the user's calendar.
struct HistoryEntryCard {
    Q_GADGET
    QML_VALUE_TYPE(historyEntryCard)
    Q_PROPERTY(QString name MEMBER name CONSTANT FINAL)
    Q_PROPERTY(QString time MEMBER time CONSTANT FINAL)
    Q_PROPERTY(QString duration MEMBER duration CONSTANT FINAL)
    Q_PROPERTY(bool hasSummary MEMBER hasSummary CONSTANT FINAL)
    Q_PROPERTY(QString summarySymbol MEMBER summarySymbol CONSTANT FINAL)
    Q_PROPERTY(QColor summaryColor MEMBER summaryColor CONSTANT FINAL)
    Q_PROPERTY(QString summaryText MEMBER summaryText CONSTANT FINAL)
    Q_PROPERTY(QVariantList goals MEMBER goals CONSTANT FINAL)
    Q_PROPERTY(QVariantList feedback MEMBER feedback CONSTANT FINAL)
    Q_PROPERTY(QString reflection MEMBER reflection CONSTANT FINAL)
    Q_PROPERTY(bool hasReflection MEMBER hasReflection CONSTANT FINAL)

public:
    HistoryEntryCard() = default;
    HistoryEntryCard(const SessionHistoryEntry &entry, const Calendar &calendar);

    /// The locale's short time.
    [[nodiscard]] static QString formatTime(Date date, const Calendar &calendar);
    /// Whole minutes, the rest dropped towards zero, "25 min". A length that is not finite or whose
    /// minutes 64 bits do not hold ends the process.
    [[nodiscard]] static QString formatDuration(double seconds);
    [[nodiscard]] static QString statusIcon(std::optional<GoalStatus> status);
    [[nodiscard]] static QColor statusColor(std::optional<GoalStatus> status);

    /// What assistive tools call it: its time and the beginning of its first goal, "3:30 PM, Read".
    QString name;
    QString time;
    QString duration;
    bool hasSummary = false; ///< Whether the entry has goals.
    QString summarySymbol;
    QColor summaryColor;
    QString summaryText;   ///< Completed goals out of all, "1/3".
    QVariantList goals;    ///< HistoryGoalRow, in the entry's order.
    QVariantList feedback; ///< HistoryFeedbackRow, only those with a text.
    QString reflection;    ///< Or the words that stand for none.
    bool hasReflection = false;
};

} // namespace tarne
