pragma Singleton
import QtQuick
import TARNE.Styling

// The fonts at the text scale that the user has asked for. The functions are QML's own: a binding that
// calls one follows the scale, which it would not through a function of C++ alone.
TypographyTokens {
    id: typography

    textScale: Wishes.textScale

    // The system's font at `size` points and a weight such as `Font.Medium`.
    function system(size: real, weight = Font.Normal): font {
        return typography.systemFont(size * typography.textScale, weight);
    }
    // The headings' font at `size` points.
    function heading(size: real): font {
        return typography.headingFont(size * typography.textScale);
    }
    // The emoji family alone, for a text that is a single emoji: some of them, such as the sun, have a
    // plain glyph in the text family as well.
    function emoji(size: real): font {
        return typography.emojiFont(size * typography.textScale);
    }
    // What a measure becomes that holds text.
    function grown(measure: real): real {
        return Math.round(measure * typography.textScale);
    }
}
