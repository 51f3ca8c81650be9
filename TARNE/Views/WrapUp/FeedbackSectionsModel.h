#pragma once

#include "ParsedFeedback.h"

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

namespace tarne {

/// The four sections of the coaching, in the order in which they are read. All four are always
/// there, an empty one with its title alone.
class FeedbackSectionsModel : public QAbstractListModel {
    Q_OBJECT
    QML_ANONYMOUS

public:
    enum Role {
        Icon = Qt::UserRole + 1, ///< The name of a symbol.
        Title,
        Content, ///< Possibly empty.
    };

    using QAbstractListModel::QAbstractListModel;

    void show(ParsedFeedback feedback);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    ParsedFeedback m_feedback;
};

} // namespace tarne
