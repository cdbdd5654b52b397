import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Ostrel.Components
import Ostrel.Crew

// Who is in the crew, and how the link stands.
RowLayout {
    id: root

    required property CrewLink crew
    readonly property CrewHeaderModel header: headerModel

    spacing: 8

    CrewHeaderModel {
        id: headerModel
        crew: root.crew
    }

    Label {
        objectName: "crewStations"
        Layout.fillWidth: true
        text: headerModel.stationsText
        wrapMode: Text.WordWrap
        maximumLineCount: headerModel.maximumLines
        elide: Text.ElideRight
        color: Theme.secondary
    }
    CrewStatusLabel {
        objectName: "crewStatus"
        Layout.alignment: Qt.AlignTop
        crew: root.crew
    }
}
