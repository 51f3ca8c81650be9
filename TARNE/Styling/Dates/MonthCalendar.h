#pragma once

#include "DateStyles.h"

#include <QAbstractListModel>
#include <QDate>
#include <QLocale>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <memory>

namespace tarne {

/// What a month calendar shows and selects: six weeks of days, one row of the model a day, with the
/// locale's first weekday, names and digits. Rows outside the month are blank.
///
/// Selecting from outside shows the day's month and is not limited; what the user picks is within
/// the range and is told by `picked`. The rows stay, only their contents change, so that a control
/// keeps its focus when the month changes.
class MonthCalendar : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the view object that holds the day.")

    Q_PROPERTY(QString monthTitle READ monthTitle NOTIFY monthChanged FINAL)
    Q_PROPERTY(QStringList weekdayNames READ weekdayNames CONSTANT FINAL)
    Q_PROPERTY(bool isRightToLeft READ isRightToLeft CONSTANT FINAL)
    Q_PROPERTY(bool canShowPreviousMonth READ canShowPreviousMonth NOTIFY monthChanged FINAL)
    Q_PROPERTY(bool canShowNextMonth READ canShowNextMonth NOTIFY monthChanged FINAL)
    /// The row that the Tab key reaches: the selected day, else the month's first that can be
    /// picked, or -1.
    Q_PROPERTY(int tabStop READ tabStop NOTIFY tabStopChanged FINAL)

public:
    enum Role {
        Text = Qt::UserRole + 1, ///< The day's number in the locale's digits; empty when blank.
        FullName,                ///< The whole date in words, for assistive tools.
        IsSelected,
        IsToday,
        IsEnabled, ///< Within the month and the range.
    };
    enum class Range { Unlimited, FromToday };

    static constexpr int rows = 42;

    /// `today` is asked anew whenever something is shown or picked.
    MonthCalendar(const QLocale &locale, Range range, std::function<QDate()> today);

    [[nodiscard]] QDate selectedDay() const { return m_selected; }
    void setSelectedDay(QDate day);
    /// Shows the selected day's month, or the first one in the range.
    void showSelection();
    /// Shows the mark of today, and the range, where they are now if midnight has passed.
    void followToday();

    [[nodiscard]] QString monthTitle() const;
    [[nodiscard]] QStringList weekdayNames() const;
    [[nodiscard]] bool isRightToLeft() const;
    [[nodiscard]] bool canShowPreviousMonth() const;
    [[nodiscard]] bool canShowNextMonth() const;
    [[nodiscard]] int tabStop() const;

    /// Shows another month and leaves the selection.
    Q_INVOKABLE void showMonth(int offset);
    /// Picks the day of a row; a row that is not enabled is ignored.
    Q_INVOKABLE void pick(int row);

    // The keyboard's ways, from the row that the Tab key reaches. They stop at the range's end.
    Q_INVOKABLE void moveByDays(int days);
    Q_INVOKABLE void moveByMonths(int months);
    Q_INVOKABLE void moveToStartOfWeek();
    Q_INVOKABLE void moveToEndOfWeek();

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    /// The user has picked a day.
    void picked(QDate day);
    /// The keyboard has moved: the focus belongs to the row `tabStop`.
    void moved();
    void monthChanged();
    void tabStopChanged();

private:
    [[nodiscard]] QDate dayOfRow(int row) const;
    [[nodiscard]] bool isEnabled(QDate day) const;
    [[nodiscard]] QDate cursor() const;
    void moveTo(QDate day);
    [[nodiscard]] QDate firstDay() const;
    void refresh();

    QLocale m_locale;
    std::shared_ptr<const DateStyles> m_styles;
    Range m_range;
    std::function<QDate()> m_today;
    QDate m_selected;
    QDate m_month; ///< The first day of what is shown.
    QDate m_shownToday;
};

} // namespace tarne
