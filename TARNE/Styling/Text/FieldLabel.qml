import QtQuick
import TARNE.Styling

// What stands above a field and names it.
PlainText {
    font: Typography.weighted(Typography.body, Font.Medium)
}
