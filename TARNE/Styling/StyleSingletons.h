#pragma once

#include "StyleWishes.h"
#include "TARNEStyle.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

class QJSEngine;
class QQmlEngine;

namespace tarne {

/// `Colors` of QML: the tokens of TARNEStyle::Colors and the system's colours by name and role.
/// Where the user asks for more contrast, secondary texts and outlines are darker.
class ColorsSingleton : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(Colors)
    QML_SINGLETON

    Q_PROPERTY(QColor background MEMBER m_background CONSTANT FINAL)
    Q_PROPERTY(QColor primaryText MEMBER m_primaryText CONSTANT FINAL)
    Q_PROPERTY(QColor secondaryText READ secondaryText NOTIFY contrastChanged FINAL)
    Q_PROPERTY(QColor accent MEMBER m_accent CONSTANT FINAL)
    Q_PROPERTY(QColor success MEMBER m_success CONSTANT FINAL)
    Q_PROPERTY(QColor warning MEMBER m_warning CONSTANT FINAL)
    Q_PROPERTY(QColor border READ border NOTIFY contrastChanged FINAL)
    Q_PROPERTY(QColor shadow MEMBER m_shadow CONSTANT FINAL)

    Q_PROPERTY(QColor white MEMBER m_white CONSTANT FINAL)
    Q_PROPERTY(QColor black MEMBER m_black CONSTANT FINAL)
    Q_PROPERTY(QColor blue MEMBER m_blue CONSTANT FINAL)
    Q_PROPERTY(QColor green MEMBER m_green CONSTANT FINAL)
    Q_PROPERTY(QColor orange MEMBER m_orange CONSTANT FINAL)
    Q_PROPERTY(QColor red MEMBER m_red CONSTANT FINAL)
    Q_PROPERTY(QColor yellow MEMBER m_yellow CONSTANT FINAL)
    Q_PROPERTY(QColor gray MEMBER m_gray CONSTANT FINAL)
    Q_PROPERTY(QColor purple MEMBER m_purple CONSTANT FINAL)
    Q_PROPERTY(QColor cyan MEMBER m_cyan CONSTANT FINAL)

    Q_PROPERTY(QColor label MEMBER m_label CONSTANT FINAL)
    Q_PROPERTY(QColor secondaryLabel READ secondaryLabel NOTIFY contrastChanged FINAL)
    Q_PROPERTY(QColor tertiaryLabel READ tertiaryLabel NOTIFY contrastChanged FINAL)
    Q_PROPERTY(QColor quaternaryLabel READ quaternaryLabel NOTIFY contrastChanged FINAL)
    Q_PROPERTY(QColor separator READ separator NOTIFY contrastChanged FINAL)
    Q_PROPERTY(QColor textBackground MEMBER m_textBackground CONSTANT FINAL)
    Q_PROPERTY(QColor controlBackground MEMBER m_controlBackground CONSTANT FINAL)
    Q_PROPERTY(QColor secondaryFill MEMBER m_secondaryFill CONSTANT FINAL)
    Q_PROPERTY(QColor regularMaterial MEMBER m_regularMaterial CONSTANT FINAL)

public:
    /// `wishes` must outlive the colours.
    explicit ColorsSingleton(const StyleWishes &wishes);
    static ColorsSingleton *create(QQmlEngine *engine, QJSEngine *);

    [[nodiscard]] QColor secondaryText() const;
    [[nodiscard]] QColor border() const;
    [[nodiscard]] QColor secondaryLabel() const;
    [[nodiscard]] QColor tertiaryLabel() const;
    [[nodiscard]] QColor quaternaryLabel() const;
    [[nodiscard]] QColor separator() const;

    /// `Color(hex:)`.
    Q_INVOKABLE static QColor hex(const QString &text);
    /// `color` with its own opacity multiplied by `opacity`.
    Q_INVOKABLE static QColor withOpacity(const QColor &color, double opacity);

Q_SIGNALS:
    void contrastChanged();

private:
    const StyleWishes &m_wishes;

    QColor m_background = TARNEStyle::Colors::background;
    QColor m_primaryText = TARNEStyle::Colors::primaryText;
    QColor m_accent = TARNEStyle::Colors::accent;
    QColor m_success = TARNEStyle::Colors::success;
    QColor m_warning = TARNEStyle::Colors::warning;
    QColor m_shadow = TARNEStyle::Colors::shadow;

    QColor m_white = SystemColors::white;
    QColor m_black = SystemColors::black;
    QColor m_blue = SystemColors::blue;
    QColor m_green = SystemColors::green;
    QColor m_orange = SystemColors::orange;
    QColor m_red = SystemColors::red;
    QColor m_yellow = SystemColors::yellow;
    QColor m_gray = SystemColors::gray;
    QColor m_purple = SystemColors::purple;
    QColor m_cyan = SystemColors::cyan;

    QColor m_label = SystemColors::label;
    QColor m_textBackground = SystemColors::textBackground;
    QColor m_controlBackground = SystemColors::controlBackground;
    QColor m_secondaryFill = SystemColors::secondaryFill;
    QColor m_regularMaterial = SystemColors::regularMaterial;
};

/// `Typography.fontSize` of QML: TARNEStyle::Typography::FontSize.
class FontSizes {
    Q_GADGET
    QML_ANONYMOUS
    Q_PROPERTY(double small MEMBER m_small CONSTANT FINAL)
    Q_PROPERTY(double body MEMBER m_body CONSTANT FINAL)
    Q_PROPERTY(double bodyLarge MEMBER m_bodyLarge CONSTANT FINAL)
    Q_PROPERTY(double title MEMBER m_title CONSTANT FINAL)
    Q_PROPERTY(double largeTitle MEMBER m_largeTitle CONSTANT FINAL)
    Q_PROPERTY(double timer MEMBER m_timer CONSTANT FINAL)

    double m_small = TARNEStyle::Typography::FontSize::small;
    double m_body = TARNEStyle::Typography::FontSize::body;
    double m_bodyLarge = TARNEStyle::Typography::FontSize::bodyLarge;
    double m_title = TARNEStyle::Typography::FontSize::title;
    double m_largeTitle = TARNEStyle::Typography::FontSize::largeTitle;
    double m_timer = TARNEStyle::Typography::FontSize::timer;
};

/// What `Typography` of QML is made of: the font tokens, the platform's own text styles and fonts
/// of any size, all larger by the text scale.
class TypographyTokens : public QObject {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(double textScale MEMBER m_textScale NOTIFY textScaleChanged FINAL)
    Q_PROPERTY(tarne::FontSizes fontSize READ fontSize CONSTANT FINAL)
    Q_PROPERTY(QFont heading1 READ heading1 NOTIFY textScaleChanged FINAL)
    Q_PROPERTY(QFont heading2 READ heading2 NOTIFY textScaleChanged FINAL)
    Q_PROPERTY(QFont heading3 READ heading3 NOTIFY textScaleChanged FINAL)
    Q_PROPERTY(QFont body READ body NOTIFY textScaleChanged FINAL)
    Q_PROPERTY(QFont bodyLarge READ bodyLarge NOTIFY textScaleChanged FINAL)
    Q_PROPERTY(QFont caption READ caption NOTIFY textScaleChanged FINAL)
    Q_PROPERTY(QFont emphasis READ emphasis NOTIFY textScaleChanged FINAL)
    Q_PROPERTY(QFont sessionBody READ sessionBody NOTIFY textScaleChanged FINAL)
    Q_PROPERTY(QFont sessionBodyLarge READ sessionBodyLarge NOTIFY textScaleChanged FINAL)
    Q_PROPERTY(QFont sessionCaption READ sessionCaption NOTIFY textScaleChanged FINAL)
    Q_PROPERTY(QFont sessionEmphasis READ sessionEmphasis NOTIFY textScaleChanged FINAL)
    Q_PROPERTY(QFont timerDisplay READ timerDisplay NOTIFY textScaleChanged FINAL)
    Q_PROPERTY(QFont button READ button NOTIFY textScaleChanged FINAL)
    Q_PROPERTY(QFont form READ form NOTIFY textScaleChanged FINAL)

    // The platform's text styles, which some screens name instead of a token.
    Q_PROPERTY(QFont systemTitle2 READ systemTitle2 NOTIFY textScaleChanged FINAL)
    Q_PROPERTY(QFont systemTitle3 READ systemTitle3 NOTIFY textScaleChanged FINAL)
    Q_PROPERTY(QFont systemHeadline READ systemHeadline NOTIFY textScaleChanged FINAL)
    Q_PROPERTY(QFont systemBody READ systemBody NOTIFY textScaleChanged FINAL)
    Q_PROPERTY(QFont systemCaption READ systemCaption NOTIFY textScaleChanged FINAL)

public:
    using Tokens = TARNEStyle::Typography;

    static FontSizes fontSize() { return {}; }
    [[nodiscard]] QFont heading1() const { return scaled(Tokens::heading1()); }
    [[nodiscard]] QFont heading2() const { return scaled(Tokens::heading2()); }
    [[nodiscard]] QFont heading3() const { return scaled(Tokens::heading3()); }
    [[nodiscard]] QFont body() const { return scaled(Tokens::body()); }
    [[nodiscard]] QFont bodyLarge() const { return scaled(Tokens::bodyLarge()); }
    [[nodiscard]] QFont caption() const { return scaled(Tokens::caption()); }
    [[nodiscard]] QFont emphasis() const { return scaled(Tokens::emphasis()); }
    [[nodiscard]] QFont sessionBody() const { return scaled(Tokens::sessionBody()); }
    [[nodiscard]] QFont sessionBodyLarge() const { return scaled(Tokens::sessionBodyLarge()); }
    [[nodiscard]] QFont sessionCaption() const { return scaled(Tokens::sessionCaption()); }
    [[nodiscard]] QFont sessionEmphasis() const { return scaled(Tokens::sessionEmphasis()); }
    [[nodiscard]] QFont timerDisplay() const { return scaled(Tokens::timerDisplay()); }
    [[nodiscard]] QFont button() const { return scaled(Tokens::button()); }
    [[nodiscard]] QFont form() const { return scaled(Tokens::form()); }

    [[nodiscard]] QFont systemTitle2() const { return scaled(Tokens::system(17)); }
    [[nodiscard]] QFont systemTitle3() const { return scaled(Tokens::system(15)); }
    [[nodiscard]] QFont systemHeadline() const { return scaled(Tokens::system(13, QFont::Bold)); }
    [[nodiscard]] QFont systemBody() const { return scaled(Tokens::system(13)); }
    [[nodiscard]] QFont systemCaption() const { return scaled(Tokens::system(10)); }

    // The fonts of TARNEStyle, at `size` points whatever the text scale is.
    Q_INVOKABLE static QFont systemFont(double size, int weight);
    Q_INVOKABLE static QFont headingFont(double size);
    Q_INVOKABLE static QFont emojiFont(double size);
    /// `font` in another weight.
    Q_INVOKABLE static QFont weighted(QFont font, int weight);
    /// `font` with a line through its text, or without.
    Q_INVOKABLE static QFont struckOut(QFont font, bool isStruckOut);

Q_SIGNALS:
    void textScaleChanged();

private:
    [[nodiscard]] QFont scaled(QFont font) const;

    double m_textScale = 1.0;
};

/// `Layout` of QML: TARNEStyle::Layout. `padding` stands for all four sides.
class LayoutSingleton : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(Layout)
    QML_SINGLETON

    Q_PROPERTY(double spacingSmall MEMBER m_spacingSmall CONSTANT FINAL)
    Q_PROPERTY(double spacingMedium MEMBER m_spacingMedium CONSTANT FINAL)
    Q_PROPERTY(double spacingLarge MEMBER m_spacingLarge CONSTANT FINAL)
    Q_PROPERTY(double cornerRadius MEMBER m_cornerRadius CONSTANT FINAL)
    Q_PROPERTY(double padding MEMBER m_padding CONSTANT FINAL)
    /// The platform's spacing where a row or column names none.
    Q_PROPERTY(double defaultSpacing MEMBER m_defaultSpacing CONSTANT FINAL)

private:
    double m_spacingSmall = TARNEStyle::Layout::spacingSmall;
    double m_spacingMedium = TARNEStyle::Layout::spacingMedium;
    double m_spacingLarge = TARNEStyle::Layout::spacingLarge;
    double m_cornerRadius = TARNEStyle::Layout::cornerRadius;
    double m_padding = TARNEStyle::Layout::padding.left();
    double m_defaultSpacing = 8;
};

} // namespace tarne
