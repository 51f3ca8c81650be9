#pragma once

#include <QAbstractListModel>
#include <QFont>
#include <QPointer>
#include <QQuickItem>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <vector>

namespace tarne {

/// A wrapped text as consecutive blocks of whole lines, for a view that lays out each by itself and
/// has an item for those in sight only.
///
/// One item with a text of a megabyte takes seconds to lay out. Here the first block is there at
/// once. Where the others stand is worked out behind it, one in each turn of the event loop, of
/// which several fit into a frame; what is not worked out yet is taken to be like the rest. A text
/// of ordinary length is one block. The blocks look as the text in one piece would. A line ends at
/// every line break of Unicode's.
class TextBlocks : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(QString text MEMBER m_text WRITE setText NOTIFY sourceChanged FINAL)
    Q_PROPERTY(QFont font MEMBER m_font WRITE setFont NOTIFY sourceChanged FINAL)
    /// Of the lines, in points.
    Q_PROPERTY(double width MEMBER m_width WRITE setWidth NOTIFY sourceChanged FINAL)
    /// The height of a line, as a multiple of the font's own.
    Q_PROPERTY(double lineHeight MEMBER m_lineHeight WRITE setLineHeight NOTIFY sourceChanged FINAL)
    /// The item that the blocks fill from its top on; without one all blocks are in sight.
    Q_PROPERTY(QQuickItem *area MEMBER m_area WRITE setArea NOTIFY areaChanged FINAL)
    /// Of the whole text, in points.
    Q_PROPERTY(double height READ height NOTIFY heightChanged FINAL)

public:
    enum Role {
        Block = Qt::UserRole + 1,
        Top ///< Where the block begins, in points.
    };

    /// The length of the blocks of a long text, in characters: what is laid out within a
    /// millisecond. A frame has to hold the blocks of all texts of a screen.
    static constexpr qsizetype blockLength = 1000;
    /// A text, or the rest of one, that is no longer than this stays in one piece.
    static constexpr qsizetype longestBlock = 3000;

    using QAbstractListModel::QAbstractListModel;

    void setText(const QString &text);
    void setFont(const QFont &font);
    void setWidth(double width);
    void setLineHeight(double lineHeight);
    void setArea(QQuickItem *area);

    /// Whether the place of the last block is known.
    [[nodiscard]] bool isComplete() const { return m_end == m_text.size(); }
    [[nodiscard]] double height() const;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void sourceChanged();
    void areaChanged();
    void heightChanged();

private:
    struct Place {
        qsizetype start = 0; ///< In the text.
        double top = 0;
    };

    void restart();
    void addBlock();
    void addBlockLater();
    /// Works out which characters from `m_end` on are the next block, and how high they are.
    void measureNext();
    void watchWindow();
    /// Makes the rows those of the blocks in sight.
    void showBlocksInSight();
    [[nodiscard]] std::pair<int, int> blocksInSight() const;
    [[nodiscard]] QString block(int index) const;

    QString m_text;
    QFont m_font;
    double m_width = 0;
    double m_lineHeight = 1;
    QPointer<QQuickItem> m_area;
    QMetaObject::Connection m_frames;
    std::vector<Place> m_places; ///< Of the blocks.
    qsizetype m_end = 0;         ///< What of the text the blocks hold.
    double m_bottom = 0;         ///< Where they end.
    int m_first = 0;             ///< The blocks that have rows.
    int m_last = 0;              ///< The one behind them.
    int m_run = 0; ///< Counts restarts: a block that is due from an earlier run does nothing.
};

} // namespace tarne
