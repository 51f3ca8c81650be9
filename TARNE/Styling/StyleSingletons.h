#pragma once

#include "TARNEStyle.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace tarne {

/// `Colors` of QML: the tokens of TARNEStyle::Colors and the system's colours by name and role.
class ColorsSingleton : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(Colors)
    QML_SINGLETON

    Q_PROPERTY(QColor background MEMBER m_background CONSTANT FINAL)
    Q_PROPERTY(QColor primaryText MEMBER m_primaryText CONSTANT FINAL)
    Q_PROPERTY(QColor secondaryText MEMBER m_secondaryText CONSTANT FINAL)
    Q_PROPERTY(QColor accent MEMBER m_accent CONSTANT FINAL)
    Q_PROPERTY(QColor success MEMBER m_success CONSTANT FINAL)
    Q_PROPERTY(QColor warning MEMBER m_warning CONSTANT FINAL)
    Q_PROPERTY(QColor border MEMBER m_border CONSTANT FINAL)
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
    Q_PROPERTY(QColor secondaryLabel MEMBER m_secondaryLabel CONSTANT FINAL)
    Q_PROPERTY(QColor tertiaryLabel MEMBER m_tertiaryLabel CONSTANT FINAL)
    Q_PROPERTY(QColor quaternaryLabel MEMBER m_quaternaryLabel CONSTANT FINAL)
    Q_PROPERTY(QColor separator MEMBER m_separator CONSTANT FINAL)
    Q_PROPERTY(QColor textBackground MEMBER m_textBackground CONSTANT FINAL)
    Q_PROPERTY(QColor controlBackground MEMBER m_controlBackground CONSTANT FINAL)
    Q_PROPERTY(QColor secondaryFill MEMBER m_secondaryFill CONSTANT FINAL)
    Q_PROPERTY(QColor regularMaterial MEMBER m_regularMaterial CONSTANT FINAL)

public:
    /// `Color(hex:)`.
    Q_INVOKABLE static QColor hex(const QString &text);
    /// `color` with its own opacity multiplied by `opacity`.
    Q_INVOKABLE static QColor withOpacity(const QColor &color, double opacity);

private:
    QColor m_background = TARNEStyle::Colors::background;
    QColor m_primaryText = TARNEStyle::Colors::primaryText;
    QColor m_secondaryText = TARNEStyle::Colors::secondaryText;
    QColor m_accent = TARNEStyle::Colors::accent;
    QColor m_success = TARNEStyle::Colors::success;
    QColor m_warning = TARNEStyle::Colors::warning;
    QColor m_border = TARNEStyle::Colors::border;
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
    QColor m_secondaryLabel = SystemColors::secondaryLabel;
    QColor m_tertiaryLabel = SystemColors::tertiaryLabel;
    QColor m_quaternaryLabel = SystemColors::quaternaryLabel;
    QColor m_separator = SystemColors::separator;
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

/// `Typography` of QML: the font tokens, the platform's own text styles and fonts of any size.
class TypographySingleton : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(Typography)
    QML_SINGLETON

    Q_PROPERTY(tarne::FontSizes fontSize READ fontSize CONSTANT FINAL)
    Q_PROPERTY(QFont heading1 READ heading1 CONSTANT FINAL)
    Q_PROPERTY(QFont heading2 READ heading2 CONSTANT FINAL)
    Q_PROPERTY(QFont heading3 READ heading3 CONSTANT FINAL)
    Q_PROPERTY(QFont body READ body CONSTANT FINAL)
    Q_PROPERTY(QFont bodyLarge READ bodyLarge CONSTANT FINAL)
    Q_PROPERTY(QFont caption READ caption CONSTANT FINAL)
    Q_PROPERTY(QFont emphasis READ emphasis CONSTANT FINAL)
    Q_PROPERTY(QFont sessionBody READ sessionBody CONSTANT FINAL)
    Q_PROPERTY(QFont sessionBodyLarge READ sessionBodyLarge CONSTANT FINAL)
    Q_PROPERTY(QFont sessionCaption READ sessionCaption CONSTANT FINAL)
    Q_PROPERTY(QFont sessionEmphasis READ sessionEmphasis CONSTANT FINAL)
    Q_PROPERTY(QFont timerDisplay READ timerDisplay CONSTANT FINAL)
    Q_PROPERTY(QFont button READ button CONSTANT FINAL)
    Q_PROPERTY(QFont form READ form CONSTANT FINAL)

    // The platform's text styles, which some screens name instead of a token.
    Q_PROPERTY(QFont systemTitle2 READ systemTitle2 CONSTANT FINAL)
    Q_PROPERTY(QFont systemTitle3 READ systemTitle3 CONSTANT FINAL)
    Q_PROPERTY(QFont systemHeadline READ systemHeadline CONSTANT FINAL)
    Q_PROPERTY(QFont systemBody READ systemBody CONSTANT FINAL)
    Q_PROPERTY(QFont systemCaption READ systemCaption CONSTANT FINAL)

public:
    using Tokens = TARNEStyle::Typography;

    static FontSizes fontSize() { return {}; }
    static QFont heading1() { return Tokens::heading1(); }
    static QFont heading2() { return Tokens::heading2(); }
    static QFont heading3() { return Tokens::heading3(); }
    static QFont body() { return Tokens::body(); }
    static QFont bodyLarge() { return Tokens::bodyLarge(); }
    static QFont caption() { return Tokens::caption(); }
    static QFont emphasis() { return Tokens::emphasis(); }
    static QFont sessionBody() { return Tokens::sessionBody(); }
    static QFont sessionBodyLarge() { return Tokens::sessionBodyLarge(); }
    static QFont sessionCaption() { return Tokens::sessionCaption(); }
    static QFont sessionEmphasis() { return Tokens::sessionEmphasis(); }
    static QFont timerDisplay() { return Tokens::timerDisplay(); }
    static QFont button() { return Tokens::button(); }
    static QFont form() { return Tokens::form(); }

    static QFont systemTitle2() { return Tokens::system(17); }
    static QFont systemTitle3() { return Tokens::system(15); }
    static QFont systemHeadline() { return Tokens::system(13, QFont::Bold); }
    static QFont systemBody() { return Tokens::system(13); }
    static QFont systemCaption() { return Tokens::system(10); }

    /// The system's font at `size` points and a weight such as `Font.Medium`.
    Q_INVOKABLE static QFont system(double size, int weight = QFont::Normal);
    /// The headings' font at `size` points.
    Q_INVOKABLE static QFont heading(double size);
    /// The emoji family alone, for a text that is a single emoji: some of them, such as the sun,
    /// have a plain glyph in the text family as well.
    Q_INVOKABLE static QFont emoji(double size);
    /// `font` in another weight.
    Q_INVOKABLE static QFont weighted(QFont font, int weight);
    /// `font` with a line through its text, or without.
    Q_INVOKABLE static QFont struckOut(QFont font, bool isStruckOut);
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
