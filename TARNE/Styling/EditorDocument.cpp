#include "EditorDocument.h"

#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>

#include <limits>

namespace tarne {

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
        });
        connect(text, &QTextDocument::contentsChanged, this, &EditorDocument::apply);
    }
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
