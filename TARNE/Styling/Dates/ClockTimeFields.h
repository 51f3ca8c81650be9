#pragma once

#include "DateStyles.h"

#include <QAbstractListModel>
#include <QLocale>
#include <QTime>
#include <QtQml/qqmlregistration.h>

#include <memory>
#include <optional>
#include <vector>

namespace tarne {

/// The fields of a clock time as a locale writes it: hour, minute and, with a clock of twelve
/// hours, the half of the day, each with the text that stands before it. One row a field, from left
/// to right.
class ClockTimeFields : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the view object that holds the time.")

    /// The whole time as the locale writes it, for assistive tools.
    Q_PROPERTY(QString timeText READ timeText NOTIFY timeChanged FINAL)

public:
    enum Role {
        Text = Qt::UserRole + 1, ///< In the locale's digits, or its word for the half of the day.
        Separator,               ///< What stands before the field, ":" or a blank.
        Name,                    ///< "Hour", "Minute" or "Half of the day".
        Value,                   ///< The number; 0 and 1 for the halves of the day.
        Minimum,
        Maximum,
    };

    explicit ClockTimeFields(const QLocale &locale);

    /// Of which only hour and minute count.
    [[nodiscard]] QTime time() const { return m_time; }
    void setTime(QTime time);
    [[nodiscard]] QString timeText() const;

    // What the user does with a field. Values go round within the field and move no other one.
    Q_INVOKABLE void step(int row, int delta);
    Q_INVOKABLE void toMinimum(int row);
    Q_INVOKABLE void toMaximum(int row);
    /// A character that was typed: a digit of any script, or a letter of a half of the day. Digits
    /// join into a number for as long as it fits; true when no further one can.
    Q_INVOKABLE bool type(int row, const QString &text);
    /// The next digit begins a new number.
    Q_INVOKABLE void endTyping() { m_typed = 0; }

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    /// The user has changed the time.
    void picked(QTime time);
    void timeChanged();

private:
    enum class Kind { Hour24, Hour12, Minute, HalfOfDay };
    struct Field {
        Kind kind;
        bool isPadded = false;
        QString separator;
    };

    void readPattern();
    [[nodiscard]] static std::optional<Kind> kindOf(QChar letter);
    [[nodiscard]] bool isField(int row) const;
    [[nodiscard]] int value(Kind kind) const;
    [[nodiscard]] QString text(const Field &field) const;
    void setValue(Kind kind, int value);

    QLocale m_locale;
    std::shared_ptr<const DateStyles> m_styles;
    QTime m_time{0, 0};
    std::vector<Field> m_fields;
    int m_typed = 0; ///< The number that the digits so far have made.
};

} // namespace tarne
