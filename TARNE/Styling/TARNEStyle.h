#pragma once

#include <QColor>
#include <QFont>
#include <QMarginsF>

namespace tarne {

/// The design tokens: constants of one light look. What the user asks the desktop for changes some
/// of them on their way to the screens; see StyleSingletons.h.
///
/// Screens reach the same values through the QML singletons Colors, Typography and Layout. Sizes
/// are in points, one point being one logical pixel.
struct TARNEStyle {
    TARNEStyle() = delete;

    struct Typography {
        Typography() = delete;

        struct FontSize {
            FontSize() = delete;
            static constexpr double small = 12;
            static constexpr double body = 14;
            static constexpr double bodyLarge = 16;
            static constexpr double title = 20;
            static constexpr double largeTitle = 24;
            static constexpr double timer = 48;
        };

        // Made afresh on each read.
        [[nodiscard]] static QFont heading1();
        [[nodiscard]] static QFont heading2();
        [[nodiscard]] static QFont heading3();
        [[nodiscard]] static QFont body();
        [[nodiscard]] static QFont bodyLarge();
        [[nodiscard]] static QFont caption();
        [[nodiscard]] static QFont emphasis();
        [[nodiscard]] static QFont sessionBody();
        [[nodiscard]] static QFont sessionBodyLarge();
        [[nodiscard]] static QFont sessionCaption();
        [[nodiscard]] static QFont sessionEmphasis();
        [[nodiscard]] static QFont timerDisplay();
        [[nodiscard]] static QFont button();
        [[nodiscard]] static QFont form();

        /// The system's family at `size` points, emoji included.
        [[nodiscard]] static QFont system(double size, QFont::Weight weight = QFont::Normal);
        /// The family of the headings at `size` points.
        [[nodiscard]] static QFont heading(double size);
        /// The emoji family alone at `size` points.
        [[nodiscard]] static QFont emoji(double size);
    };

    struct Colors {
        Colors() = delete;
        static const QColor background;
        static const QColor primaryText;
        static const QColor secondaryText;
        static const QColor accent;
        static const QColor success;
        static const QColor warning;
        static const QColor border;
        static const QColor shadow;
    };

    struct Layout {
        Layout() = delete;
        static constexpr double spacingSmall = 8;
        static constexpr double spacingMedium = 16;
        static constexpr double spacingLarge = 24;
        static constexpr double cornerRadius = 8;
        static constexpr QMarginsF padding{spacingMedium, spacingMedium, spacingMedium,
                                           spacingMedium};
    };
};

/// The platform's standard colours in their light variant, by name and by role.
struct SystemColors {
    SystemColors() = delete;
    static constexpr QColor white{255, 255, 255};
    static constexpr QColor black{0, 0, 0};
    static constexpr QColor blue{0x00, 0x7A, 0xFF};
    static constexpr QColor green{0x34, 0xC7, 0x59};
    static constexpr QColor orange{0xFF, 0x95, 0x00};
    static constexpr QColor red{0xFF, 0x3B, 0x30};
    static constexpr QColor yellow{0xFF, 0xCC, 0x00};
    static constexpr QColor gray{0x8E, 0x8E, 0x93};
    static constexpr QColor purple{0xAF, 0x52, 0xDE};
    static constexpr QColor cyan{0x32, 0xAD, 0xE6};

    static constexpr QColor label{0, 0, 0, 217};
    static constexpr QColor secondaryLabel{0, 0, 0, 140};
    static constexpr QColor tertiaryLabel{0, 0, 0, 77};
    static constexpr QColor quaternaryLabel{0, 0, 0, 38};
    static constexpr QColor separator{0, 0, 0, 46};
    static constexpr QColor textBackground{255, 255, 255};
    static constexpr QColor controlBackground{255, 255, 255};
    static constexpr QColor secondaryFill{0, 0, 0, 20};
    /// In place of the regular translucent material, which needs what lies behind it.
    static constexpr QColor regularMaterial{0xF6, 0xF6, 0xF7};
};

} // namespace tarne
