#include "TextBlocks.h"

#include <QTextLayout>
#include <QTextOption>

#include <utility>

using namespace Qt::StringLiterals;

namespace tarne {
namespace {

/// Whether a line ends at `c`, a line feed aside.
bool isOtherBreak(QChar c) {
    return (c >= u'\v' && c <= u'\r') || c == u'\u0085' || c == u'\u2028' || c == u'\u2029';
}

/// `text` with a line feed for every line break, of which a view knows but one or two.
QString withLineFeeds(QString text) {
    // A megabyte is looked through in much less time than it is copied.
    bool hasOthers = false;
    for (const QChar c : std::as_const(text))
        hasOthers |= isOtherBreak(c);
    if (!hasOthers)
        return text;
    text.replace("\r\n"_L1, "\n"_L1);
    for (QChar &c : text) {
        if (isOtherBreak(c))
            c = u'\n';
    }
    return text;
}

} // namespace

void TextBlocks::setText(const QString &text) {
    const QString lines = withLineFeeds(text);
    if (m_text == lines)
        return;
    m_text = lines;
    restart();
}

void TextBlocks::setFont(const QFont &font) {
    if (m_font == font)
        return;
    m_font = font;
    restart();
}

void TextBlocks::setWidth(double width) {
    if (m_width == width)
        return;
    m_width = width;
    restart();
}

void TextBlocks::restart() {
    beginResetModel();
    m_blocks.clear();
    m_end = 0;
    ++m_run;
    endResetModel();
    Q_EMIT sourceChanged();
    if (m_width > 0 && !m_text.isEmpty())
        addBlock();
}

void TextBlocks::addBlock() {
    const qsizetype length = nextLength();
    QString block = m_text.sliced(m_end, length);
    m_end += length;
    // The break between this block and the next is theirs already.
    if (!isComplete() && block.endsWith(u'\n'))
        block.chop(1);
    const int row = rowCount();
    beginInsertRows({}, row, row);
    m_blocks += block;
    endInsertRows();
    if (!isComplete())
        addBlockLater();
}

void TextBlocks::addBlockLater() {
    QMetaObject::invokeMethod(
        this,
        [this, run = m_run] {
            if (run == m_run)
                addBlock();
        },
        Qt::QueuedConnection);
}

qsizetype TextBlocks::nextLength() const {
    const qsizetype rest = m_text.size() - m_end;
    if (rest <= longestBlock)
        return rest;

    QString slice = m_text.sliced(m_end, blockLength);
    slice.replace(u'\n', QChar::LineSeparator);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setUseDesignMetrics(true);
    QTextLayout layout(slice, m_font);
    layout.setTextOption(option);
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine())
        line.setLineWidth(m_width);
    layout.endLayout();
    // Where the slice was cut, its last line may go on.
    const int lastLine = layout.lineCount() - 1;
    return lastLine > 0 ? layout.lineAt(lastLine).textStart() : slice.size();
}

int TextBlocks::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_blocks.size());
}

QVariant TextBlocks::data(const QModelIndex &index, int role) const {
    if (role != Block ||
        !checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    return m_blocks[index.row()];
}

QHash<int, QByteArray> TextBlocks::roleNames() const {
    return {{Block, "block"}};
}

} // namespace tarne
