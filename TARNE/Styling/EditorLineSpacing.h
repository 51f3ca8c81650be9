#pragma once

#include <QObject>
#include <QPointer>
#include <QQuickTextDocument>
#include <QtQml/qqmlregistration.h>

namespace tarne {

/// Gives every line of an editor's document `spacing` points beyond the font's own height, which an
/// editor has no property for.
class EditorLineSpacing : public QObject {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(QQuickTextDocument *document MEMBER m_document WRITE setDocument NOTIFY
                   documentChanged FINAL)
    Q_PROPERTY(double spacing MEMBER m_spacing WRITE setSpacing NOTIFY spacingChanged FINAL)

public:
    using QObject::QObject;

    void setDocument(QQuickTextDocument *document);
    void setSpacing(double spacing);

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
