pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// A goal and the verdicts that can be chosen for it.
Column {
    id: row

    required property SessionReflectionView view
    required property string goalText
    // The position of the chosen verdict, or -1.
    required property int selectedStatus

    // The user chose a verdict, told by its position.
    signal statusChange(status: int)

    spacing: 18
    // Else the same three verdicts would stand there for each goal, and nothing would tell them apart.
    Accessible.role: Accessible.Grouping
    Accessible.name: row.goalText.slice(0, 200)

    LongText {
        width: parent.width
        text: row.goalText
        font: Typography.system(14, Font.Medium)
        color: Colors.label
    }
    Row {
        leftPadding: 16
        spacing: 24

        Repeater {
            model: row.view.statusNames

            VerdictOption {
                required property int index
                required property string modelData

                text: modelData
                isSelected: index === row.selectedStatus
                onClicked: row.statusChange(index)
            }
        }
    }
}
