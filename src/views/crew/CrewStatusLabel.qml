import QtQuick
import QtQuick.Controls
import Ostrel.Components
import Ostrel.Crew

// How the crew link stands, in one coloured line.
Label {
    id: root

    required property CrewLink crew
    readonly property CrewStatusModel status: statusModel

    text: statusModel.text
    color: Theme.colors[statusModel.colorRole]

    CrewStatusModel {
        id: statusModel
        crew: root.crew
    }
}
