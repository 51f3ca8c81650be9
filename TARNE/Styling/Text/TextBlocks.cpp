#include "TextBlocks.h"

#include "LineBreaks.h"

#include <QQuickWindow>
#include <QTextLayout>
#include <QTextOption>

#include <algorithm>
#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;

namespace tarne {
namespace {

/// Whether a line ends at `c` though it is no line feed.
bool isOtherBreak(QChar c) {
    return c != u'\n' && isLineBreak(c);
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

void TextBlocks::setLineHeight(double lineHeight) {
    if (m_lineHeight == lineHeight)
        return;
    m_lineHeight = lineHeight;
    restart();
}

void TextBlocks::setArea(QQuickItem *area) {
    if (m_area == area)
        return;
    if (m_area)
        disconnect(m_area, nullptr, this, nullptr);
    m_area = area;
    if (m_area)
        connect(m_area, &QQuickItem::windowChanged, this, &TextBlocks::watchWindow);
    watchWindow();
    Q_EMIT areaChanged();
}

void TextBlocks::watchWindow() {
    disconnect(m_frames);
    // Whatever moves the area in its window is followed by a frame.
    if (QQuickWindow *const window = m_area ? m_area->window() : nullptr)
        m_frames =
            connect(window, &QQuickWindow::afterAnimating, this, &TextBlocks::showBlocksInSight);
    showBlocksInSight();
}

void TextBlocks::restart() {
    beginResetModel();
    m_places.clear();
    m_end = 0;
    m_bottom = 0;
    m_first = 0;
    m_last = 0;
    ++m_run;
    endResetModel();
    Q_EMIT sourceChanged();
    if (m_width > 0 && !m_text.isEmpty())
        addBlock();
    else
        Q_EMIT heightChanged();
}

void TextBlocks::addBlock() {
    measureNext();
    showBlocksInSight();
    Q_EMIT heightChanged();
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

void TextBlocks::measureNext() {
    const qsizetype rest = m_text.size() - m_end;
    const bool isLast = rest <= longestBlock;
    QString slice = m_text.sliced(m_end, isLast ? rest : blockLength);
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

    m_places.push_back({.start = m_end, .top = m_bottom});
    // Where the slice was cut, its last line may go on.
    const int lines = isLast ? layout.lineCount() : std::max(1, layout.lineCount() - 1);
    for (int i = 0; i < lines; ++i)
        m_bottom += layout.lineAt(i).height() * m_lineHeight;
    m_end += lines < layout.lineCount() ? layout.lineAt(lines).textStart() : slice.size();
}

double TextBlocks::height() const {
    if (m_end == 0)
        return 0;
    return std::ceil(m_bottom * static_cast<double>(m_text.size()) / static_cast<double>(m_end));
}

std::pair<int, int> TextBlocks::blocksInSight() const {
    const int count = static_cast<int>(m_places.size());
    if (!m_area)
        return {0, count};
    const QQuickWindow *const window = m_area->window();
    if (!window)
        return {0, std::min(count, 1)};
    // As much again on both sides: what comes into sight by a little scrolling is there already.
    const QRectF frame(QPointF(0, -window->height()),
                       QSizeF(window->width(), 3 * window->height()));
    const QRectF seen = m_area->mapRectFromScene(frame);
    const auto firstBelow = std::ranges::lower_bound(m_places, seen.bottom(), {}, &Place::top);
    const auto firstInside = std::ranges::upper_bound(m_places, seen.top(), {}, &Place::top);
    const auto indexOf = [this](auto place) { return static_cast<int>(place - m_places.begin()); };
    return {std::max(0, indexOf(firstInside) - 1), indexOf(firstBelow)};
}

void TextBlocks::showBlocksInSight() {
    const auto [first, last] = blocksInSight();
    if (first == m_first && last == m_last)
        return;
    if (last <= m_first || first >= m_last) {
        beginResetModel();
        m_first = first;
        m_last = std::max(first, last);
        endResetModel();
        return;
    }
    if (m_first < first) {
        beginRemoveRows({}, 0, first - m_first - 1);
        m_first = first;
        endRemoveRows();
    }
    if (last < m_last) {
        beginRemoveRows({}, last - m_first, m_last - m_first - 1);
        m_last = last;
        endRemoveRows();
    }
    if (first < m_first) {
        beginInsertRows({}, 0, m_first - first - 1);
        m_first = first;
        endInsertRows();
    }
    if (m_last < last) {
        beginInsertRows({}, m_last - m_first, last - m_first - 1);
        m_last = last;
        endInsertRows();
    }
}

QString TextBlocks::block(int index) const {
    const qsizetype start = m_places[index].start;
    const bool isLast = index + 1 == static_cast<int>(m_places.size());
    const qsizetype end = isLast ? m_end : m_places[index + 1].start;
    QString block = m_text.sliced(start, end - start);
    // The break between this block and the next is theirs already.
    if (end < m_text.size() && block.endsWith(u'\n'))
        block.chop(1);
    return block;
}

int TextBlocks::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : m_last - m_first;
}

QVariant TextBlocks::data(const QModelIndex &index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    if (role == Block)
        return block(m_first + index.row());
    if (role == Top)
        return std::round(m_places[m_first + index.row()].top);
    return {};
}

QHash<int, QByteArray> TextBlocks::roleNames() const {
    return {{Block, "block"}, {Top, "blockTop"}};
}

} // namespace tarne
