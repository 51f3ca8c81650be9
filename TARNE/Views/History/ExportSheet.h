#pragma once

#include <QBindable>
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace tarne {

class Pasteboard;

/// A sheet that shows a text and copies it. Nothing in the system presents it or makes its text.
class ExportSheet final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by what presents it.")
    Q_PROPERTY(QString text READ text CONSTANT FINAL)

public:
    /// The presenter's flag and the clipboard outlive the sheet.
    ExportSheet(QString text, QBindable<bool> isPresented, Pasteboard &pasteboard);

    [[nodiscard]] QString text() const { return m_text; }

    /// Closes the sheet.
    Q_INVOKABLE void done();
    /// Replaces what the clipboard holds by the text.
    Q_INVOKABLE void copyToClipboard();

private:
    QString m_text;
    QBindable<bool> m_isPresented;
    Pasteboard &m_pasteboard;
};

} // namespace tarne
