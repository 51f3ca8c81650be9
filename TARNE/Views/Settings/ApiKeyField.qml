import QtQuick
import TARNE.Styling

// The field for the API key, as wide as its column.
SecureField {
    width: parent ? parent.width : implicitWidth
    placeholderText: "Enter your Gemini API key"
}
