#pragma once

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
    Q_PROPERTY(bool isPresented READ isPresented NOTIFY isPresentedChanged FINAL)

public:
    /// The clipboard outlives the sheet.
    ExportSheet(QString text, Pasteboard &pasteboard);

    [[nodiscard]] QString text() const { return m_text; }
    [[nodiscard]] bool isPresented() const { return m_isPresented; }

    Q_INVOKABLE void done();
    /// Replaces what the clipboard holds by the text.
    Q_INVOKABLE void copyToClipboard();

Q_SIGNALS:
    void isPresentedChanged();

private:
    QString m_text;
    Pasteboard &m_pasteboard;
    bool m_isPresented = true;
};

} // namespace tarne
