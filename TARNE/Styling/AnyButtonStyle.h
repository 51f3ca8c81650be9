#pragma once

#include <QColor>
#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <functional>

namespace tarne {

/// What a button style is told about the button that it renders.
struct ButtonConfiguration {
    bool isPressed = false;
};

/// How a button is to look: a style's rendering of one configuration.
class ButtonLook {
    Q_GADGET
    QML_VALUE_TYPE(buttonLook)
    Q_PROPERTY(QColor textColor MEMBER textColor FINAL)
    Q_PROPERTY(QColor background MEMBER background FINAL)
    Q_PROPERTY(QColor outlineColor MEMBER outlineColor FINAL)
    Q_PROPERTY(double outlineWidth MEMBER outlineWidth FINAL)
    Q_PROPERTY(double cornerRadius MEMBER cornerRadius FINAL)
    Q_PROPERTY(double horizontalPadding MEMBER horizontalPadding FINAL)
    Q_PROPERTY(double verticalPadding MEMBER verticalPadding FINAL)
    Q_PROPERTY(double opacity MEMBER opacity FINAL)

public:
    QColor textColor;
    QColor background;
    QColor outlineColor = Qt::transparent;
    double outlineWidth = 0;
    double cornerRadius = 0;
    double horizontalPadding = 0;
    double verticalPadding = 0;
    double opacity = 1;

    bool operator==(const ButtonLook &) const = default;
};

/// White on the accent colour.
struct PrimaryButtonStyle {
    [[nodiscard]] ButtonLook operator()(const ButtonConfiguration &configuration) const;
};

/// The accent colour on the background, with an outline in the accent colour.
struct SecondaryButtonStyle {
    [[nodiscard]] ButtonLook operator()(const ButtonConfiguration &configuration) const;
};

/// Holds any button style, so that a screen can choose one at run time. It keeps a copy of the
/// style it was made from and renders as that style does.
class AnyButtonStyle {
    Q_GADGET
    QML_VALUE_TYPE(anyButtonStyle)

public:
    /// Renders as PrimaryButtonStyle.
    AnyButtonStyle() : AnyButtonStyle(PrimaryButtonStyle{}) {}

    template <typename Style>
    requires std::is_invocable_r_v<ButtonLook, const Style &, const ButtonConfiguration &>
    explicit AnyButtonStyle(Style style) : m_render(std::move(style)) {}

    [[nodiscard]] Q_INVOKABLE tarne::ButtonLook render(bool isPressed) const {
        return m_render(ButtonConfiguration{.isPressed = isPressed});
    }

private:
    std::function<ButtonLook(const ButtonConfiguration &)> m_render;
};

/// The two styles for QML: `ButtonStyles.primary` and `ButtonStyles.secondary`.
class ButtonStyles : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(tarne::AnyButtonStyle primary READ primary CONSTANT FINAL)
    Q_PROPERTY(tarne::AnyButtonStyle secondary READ secondary CONSTANT FINAL)

public:
    static AnyButtonStyle primary() { return AnyButtonStyle(PrimaryButtonStyle{}); }
    static AnyButtonStyle secondary() { return AnyButtonStyle(SecondaryButtonStyle{}); }
};

} // namespace tarne
