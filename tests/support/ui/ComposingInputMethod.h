#pragma once

#include <QGuiApplication>
#include <QInputMethod>
#include <QInputMethodEvent>
#include <private/qinputmethod_p.h>
#include <qpa/qplatforminputcontext.h>

#include <utility>

namespace tarne::test {

/// An input method with which the user composes a text: what is composed stands underlined in the
/// field that has the focus, and belongs to its text only when it is committed.
class ComposingInputMethod final : public QPlatformInputContext {
public:
    ComposingInputMethod() {
        QInputMethodPrivate::get(QGuiApplication::inputMethod())->testContext = this;
    }
    ~ComposingInputMethod() override {
        QInputMethodPrivate::get(QGuiApplication::inputMethod())->testContext = nullptr;
    }

    void compose(const QString &text) {
        m_composed = text;
        QInputMethodEvent event(text, {});
        QCoreApplication::sendEvent(QGuiApplication::focusObject(), &event);
    }

    void commit() override {
        if (m_composed.isEmpty() || !QGuiApplication::focusObject())
            return;
        QInputMethodEvent event;
        event.setCommitString(std::exchange(m_composed, {}));
        QCoreApplication::sendEvent(QGuiApplication::focusObject(), &event);
    }
    void reset() override { m_composed.clear(); }

private:
    QString m_composed;
};

} // namespace tarne::test
