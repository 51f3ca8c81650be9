import QtQuick
import TARNE.Styling

// A button in PrimaryButtonStyle.
StyledButton {
    buttonStyle: ButtonStyles.primary
}
