#include "EditorDocument.h"

#include <QQuickItem>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>

#include <limits>
#include <utility>

namespace tarne {
namespace {

/// In characters. What is shorter is laid out within a frame or two, whatever it is.
constexpr int longText = 20'000;
constexpr int endlessWord = 5'000;
/// In points. A document without a page of its own gets one of 8,388,607 points from Qt, and one
/// line below its end is laid out for ever. Qt's positions end at 33,554,431.
constexpr double tallestPage = 33'000'000;

bool holdsEndlessWord(const QString &text) {
    qsizetype length = 0;
    for (const QChar c : text) {
        length = c.isSpace() ? 0 : length + 1;
        if (length > endlessWord)
            return true;
    }
    return false;
}

} // namespace

void EditorDocument::setDocument(QQuickTextDocument *document) {
    if (m_document == document)
        return;
    if (m_document)
        disconnect(m_document->textDocument(), nullptr, this, nullptr);
    m_document = document;
    if (document) {
        const QTextDocument *const text = document->textDocument();
        connect(text, &QTextDocument::contentsChange, this, [this](int from, int, int added) {
            m_dirtyFrom = from;
            m_dirtyTo = from + added;
            prepareLayout(added);
        });
        connect(text, &QTextDocument::contentsChanged, this, &EditorDocument::contentsChanged);
    }
    setPage();
    applyToAll();
    Q_EMIT documentChanged();
}

void EditorDocument::setSpacing(double spacing) {
    if (m_spacing == spacing)
        return;
    m_spacing = spacing;
    applyToAll();
    Q_EMIT spacingChanged();
}

void EditorDocument::setTextWidth(double width) {
    if (m_textWidth == width)
        return;
    m_textWidth = width;
    setPage();
    Q_EMIT textWidthChanged();
}

void EditorDocument::setPage() {
    if (m_document && m_textWidth > 0)
        m_document->textDocument()->setPageSize({m_textWidth, tallestPage});
}

void EditorDocument::prepareLayout(int added) {
    QTextDocument *const text = m_document->textDocument();
    const bool isLong = text->characterCount() > longText;
    // A long text is looked through when much of it is new.
    const bool hasEndlessWord =
        isLong && (m_hasEndlessWord || (added > endlessWord && holdsEndlessWord(this->text())));
    if (std::exchange(m_hasEndlessWord, hasEndlessWord) != hasEndlessWord)
        Q_EMIT hasEndlessWordChanged();
    if (std::exchange(m_isLong, isLong) != isLong) {
        if (auto *const editor = qobject_cast<QQuickItem *>(m_document->parent()))
            editor->setFlag(QQuickItem::ItemObservesViewport, isLong);
        QFont font = text->defaultFont();
        font.setStyleStrategy(isLong ? QFont::PreferNoShaping : QFont::PreferDefault);
        text->setDefaultFont(font);
    }
}

QString EditorDocument::text() const {
    if (!m_document)
        return {};
    QString text = m_document->textDocument()->toRawText();
    for (QChar &c : text) {
        if (c == QChar::ParagraphSeparator || c == QChar::LineSeparator)
            c = u'\n';
    }
    return text;
}

void EditorDocument::contentsChanged() {
    if (m_isApplying)
        return;
    apply();
    if (!m_isFilling)
        Q_EMIT edited();
}

void EditorDocument::applyToAll() {
    m_dirtyFrom = 0;
    m_dirtyTo = std::numeric_limits<int>::max();
    apply();
}

void EditorDocument::apply() {
    if (!m_document || m_isApplying)
        return;
    m_isApplying = true;
    // Only the lines that changed, and all of them in one edit: a document of a million lines is
    // edited as lightly as one of ten, and laid out once when it comes.
    QTextCursor lines;
    for (QTextBlock block = m_document->textDocument()->findBlock(m_dirtyFrom);
         block.isValid() && block.position() <= m_dirtyTo; block = block.next()) {
        if (block.blockFormat().lineHeight() == m_spacing)
            continue;
        if (lines.isNull())
            lines = QTextCursor(block);
        lines.setPosition(block.position(), QTextCursor::KeepAnchor);
    }
    if (!lines.isNull()) {
        QTextBlockFormat format;
        format.setLineHeight(m_spacing, QTextBlockFormat::LineDistanceHeight);
        // One step of undoing with the edit that made the lines.
        lines.joinPreviousEditBlock();
        lines.mergeBlockFormat(format);
        lines.endEditBlock();
    }
    m_isApplying = false;
}

} // namespace tarne
