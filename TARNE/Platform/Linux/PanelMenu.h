#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>

#include <functional>
#include <optional>
#include <vector>

namespace tarne {

/// An entry of a menu that a panel draws.
struct PanelMenuEntry {
    int id = 0; ///< Above 0; the same entry keeps its number as long as the program runs.
    QString label;
    std::optional<bool> isChecked = {}; ///< None: the entry is no choice of yes or no.

    friend bool operator==(const PanelMenuEntry &, const PanelMenuEntry &) = default;
};

/// A flat menu on the bus, as com.canonical.dbusmenu has it. Main thread only.
class PanelMenu final : public QObject {
    Q_OBJECT

public:
    /// Called with the entry's number when the user has chosen it.
    using Chosen = std::function<void(int id)>;

    PanelMenu(QDBusConnection bus, QString path, Chosen chosen);

    /// Puts the menu on the bus, and takes it away.
    void appear();
    void disappear();

    /// Those who show the menu are told where it differs from the one before.
    void setEntries(std::vector<PanelMenuEntry> entries);

    [[nodiscard]] const std::vector<PanelMenuEntry> &entries() const { return m_entries; }
    /// Counts the changes.
    [[nodiscard]] uint revision() const { return m_revision; }
    /// Tells of a choice, if there still is such an entry.
    void choose(int id);

Q_SIGNALS:
    void entriesChanged();

private:
    QDBusConnection m_bus;
    QString m_path;
    Chosen m_chosen;
    std::vector<PanelMenuEntry> m_entries;
    uint m_revision = 1;
};

} // namespace tarne
