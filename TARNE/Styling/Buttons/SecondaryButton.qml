import QtQuick
import TARNE.Styling

// A button in SecondaryButtonStyle.
StyledButton {
    buttonStyle: ButtonStyles.secondary
}
