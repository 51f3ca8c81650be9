#pragma once

#include <QObject>
#include <QPointer>
#include <QQuickTextDocument>
#include <QtQml/qqmlregistration.h>

namespace tarne {

/// What an editor has no property for: every line of its document stands `spacing` points further
/// apart than the font's own height, and its text can be had as it was typed.
class EditorDocument : public QObject {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(QQuickTextDocument *document MEMBER m_document WRITE setDocument NOTIFY
                   documentChanged FINAL)
    Q_PROPERTY(double spacing MEMBER m_spacing WRITE setSpacing NOTIFY spacingChanged FINAL)

public:
    using QObject::QObject;

    void setDocument(QQuickTextDocument *document);
    void setSpacing(double spacing);
    /// The text with its no-break spaces, which the editor's own text has as blanks. Lines end with
    /// a line feed each.
    Q_INVOKABLE QString text() const;

Q_SIGNALS:
    void documentChanged();
    void spacingChanged();

private:
    /// Formats the lines that hold the characters from `m_dirtyFrom` to `m_dirtyTo`.
    void apply();
    void applyToAll();

    QPointer<QQuickTextDocument> m_document;
    double m_spacing = 0;
    int m_dirtyFrom = 0;
    int m_dirtyTo = 0;
    bool m_isApplying = false;
};

} // namespace tarne
