#pragma once

#include <QAbstractListModel>
#include <QFont>
#include <QString>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

namespace tarne {

/// A wrapped text as consecutive blocks of whole lines, for a view that lays out each by itself.
///
/// One item with a text of a megabyte takes longer than a frame to lay out. Here the first block is
/// there at once and the others follow, one in each turn of the event loop, of which several fit
/// into the frame. A text of ordinary length is one block. Below each other, with no space between,
/// the blocks look as the text in one piece would. A line ends at every line break of Unicode's.
class TextBlocks : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(QString text MEMBER m_text WRITE setText NOTIFY sourceChanged FINAL)
    Q_PROPERTY(QFont font MEMBER m_font WRITE setFont NOTIFY sourceChanged FINAL)
    /// Of the lines, in points.
    Q_PROPERTY(double width MEMBER m_width WRITE setWidth NOTIFY sourceChanged FINAL)

public:
    enum Role { Block = Qt::UserRole + 1 };

    /// The length of the blocks of a long text, in characters: what is laid out within a
    /// millisecond. A frame has to hold the blocks of all texts of a screen.
    static constexpr qsizetype blockLength = 1000;
    /// A text, or the rest of one, that is no longer than this stays in one piece.
    static constexpr qsizetype longestBlock = 3000;

    using QAbstractListModel::QAbstractListModel;

    void setText(const QString &text);
    void setFont(const QFont &font);
    void setWidth(double width);

    /// Whether the last block is there.
    [[nodiscard]] bool isComplete() const { return m_end == m_text.size(); }

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void sourceChanged();

private:
    void restart();
    void addBlock();
    void addBlockLater();
    /// How many characters from `m_end` on belong to the next block.
    [[nodiscard]] qsizetype nextLength() const;

    QString m_text;
    QFont m_font;
    double m_width = 0;
    QStringList m_blocks;
    qsizetype m_end = 0; ///< What of the text the blocks hold.
    int m_run = 0; ///< Counts restarts, so that a block that is due of an earlier run is none.
};

} // namespace tarne
