// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Varda
import Logbook

/** What all the dives of the list come to. */
Item {
    id: root

    required property LogbookModel dives
    property bool filtered: false
    property bool closable: false

    // The bars come last; while the figures are made they would be made again and again.
    property bool complete: false
    readonly property var yearBars: !complete ? [] : Array.from(statistics.years, each => ({
        name: String(each.year),
        value: each.dives,
        text: qsTr("%n dive(s), %1", "", each.dives).arg(Units.hours(each.seconds))
    }))
    readonly property var depthBars: !complete ? [] : Array.from(statistics.depths, (count, index) => ({
        name: qsTr("%1 to %2 %3", "a range of depths and its unit")
                  .arg(Units.count(Units.depthValue(index * statistics.step)))
                  .arg(Units.count(Units.depthValue((index + 1) * statistics.step))).arg(Units.depthUnit),
        value: count,
        text: count ? qsTr("%n dive(s)", "", count) : "–"
    }))

    signal back
    signal importRequested

    Component.onCompleted: complete = true

    Statistics {
        id: statistics

        dives: root.dives
        // Five metres, or twenty feet
        step: Units.metric ? 5 : 20 * 0.3048
    }
    EmptyState {
        // A list beside it says already that the filter finds none.
        visible: !statistics.count && AppStore.open && !root.dives.loading && (root.closable || !root.filtered)
        icon: "statistics"
        title: root.filtered ? qsTr("No dive found") : qsTr("Your dives will be here")
        text: root.filtered ? qsTr("Change the search or the filter.")
                            : qsTr("As soon as there are some, this page shows what they come to.")
        width: Math.min(root.width - 4 * Theme.unit, Theme.textWidth)
        anchors.centerIn: parent
    }
    PageScroll {
        anchors.fill: parent
        visible: statistics.count || root.closable

        PaneHeader {
            title: qsTr("Statistics")
            subtitle: root.filtered ? qsTr("Of the dives that the filter shows") : ""
            closable: root.closable
            onBack: root.back()
        }
        Card {
            visible: statistics.count
            Layout.fillWidth: true

            GridLayout {
                columns: Math.max(2, Math.min(4, Math.floor(root.width / (20 * Theme.unit))))
                columnSpacing: 2 * Theme.unit
                rowSpacing: 2 * Theme.unit
                Layout.fillWidth: true

                Figure {
                    objectName: "statisticsCount"
                    name: qsTr("Dives")
                    value: Units.count(statistics.count)
                    Layout.fillWidth: true
                    Layout.preferredWidth: 1
                    Layout.alignment: Qt.AlignTop
                }
                Figure {
                    name: qsTr("Under water")
                    value: Units.hours(statistics.seconds)
                    Layout.fillWidth: true
                    Layout.preferredWidth: 1
                    Layout.alignment: Qt.AlignTop
                }
                Figure {
                    name: qsTr("Deepest")
                    value: Units.depth(statistics.deepest)
                    Layout.fillWidth: true
                    Layout.preferredWidth: 1
                    Layout.alignment: Qt.AlignTop
                }
                Figure {
                    name: qsTr("Longest")
                    value: Units.duration(statistics.longest)
                    spoken: Units.spokenDuration(statistics.longest)
                    Layout.fillWidth: true
                    Layout.preferredWidth: 1
                    Layout.alignment: Qt.AlignTop
                }
            }
        }
        Card {
            visible: statistics.count
            title: qsTr("By year")
            Layout.fillWidth: true

            BarChart {
                bars: root.yearBars
                Layout.fillWidth: true
            }
        }
        Card {
            visible: statistics.count
            title: qsTr("By greatest depth")
            Layout.fillWidth: true

            BarChart {
                bars: root.depthBars
                Layout.fillWidth: true
            }
        }
    }
}
