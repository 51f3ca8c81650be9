#pragma once

#include <QObject>
#include <QPointer>
#include <QQuickTextDocument>
#include <QtQml/qqmlregistration.h>

namespace tarne {

/// What an editor has no property for: every line of its document stands `spacing` points further
/// apart than the font's own height, its text can be had as it was typed, and what its user has
/// done to it is told from what it was given.
///
/// A text of a megabyte is laid out in a second. So a long one does without kerning, which takes
/// most of the time, and shows no more than what is in sight.
class EditorDocument : public QObject {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(QQuickTextDocument *document MEMBER m_document WRITE setDocument NOTIFY
                   documentChanged FINAL)
    /// Whether a text is being put into the document that no user has written there.
    Q_PROPERTY(bool isFilling MEMBER m_isFilling FINAL)
    Q_PROPERTY(double spacing MEMBER m_spacing WRITE setSpacing NOTIFY spacingChanged FINAL)
    /// The width at which lines are broken, in points. The editor has to take its own width from
    /// here: then the document has that width already, and the editor does not set it a second
    /// time, with no height for the page.
    Q_PROPERTY(double textWidth MEMBER m_textWidth WRITE setTextWidth NOTIFY textWidthChanged FINAL)
    /// Whether there is a word of very many lines. An editor that looks for the end of each word
    /// first takes seconds for such a one, so it is to break its lines anywhere.
    Q_PROPERTY(bool hasEndlessWord READ hasEndlessWord NOTIFY hasEndlessWordChanged FINAL)

public:
    using QObject::QObject;

    void setDocument(QQuickTextDocument *document);
    void setSpacing(double spacing);
    void setTextWidth(double width);
    [[nodiscard]] bool hasEndlessWord() const { return m_hasEndlessWord; }
    /// The text with its no-break spaces, which the editor's own text has as blanks. Lines end with
    /// a line feed each.
    Q_INVOKABLE QString text() const;

Q_SIGNALS:
    void documentChanged();
    void spacingChanged();
    void textWidthChanged();
    void hasEndlessWordChanged();
    /// The text was changed by the user: typed, composed, or written by an assistive tool, wherever
    /// the focus is.
    void edited();

private:
    /// Before the change is laid out.
    void prepareLayout(int added);
    void contentsChanged();
    /// Formats the lines that hold the characters from `m_dirtyFrom` to `m_dirtyTo`.
    void apply();
    void applyToAll();
    void setPage();

    QPointer<QQuickTextDocument> m_document;
    double m_spacing = 0;
    double m_textWidth = 0;
    int m_dirtyFrom = 0;
    int m_dirtyTo = 0;
    bool m_isFilling = false;
    bool m_isApplying = false;
    bool m_isLong = false;
    bool m_hasEndlessWord = false;
};

} // namespace tarne
