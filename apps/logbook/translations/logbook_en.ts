<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name>DiveList</name>
    <message numerus="yes">
        <source>Go on with %n dive(s)</source>
        <translation>
            <numerusform>Go on with %n dive</numerusform>
            <numerusform>Go on with %n dives</numerusform>
        </translation>
    </message>
    </context>
<context>
    <name>DiveListHeader</name>
    <message numerus="yes">
        <source>%n chosen</source>
        <translation>
            <numerusform>%n chosen</numerusform>
            <numerusform>%n chosen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n dive(s) found</source>
        <translation>
            <numerusform>%n dive found</numerusform>
            <numerusform>%n dives found</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n dive(s)</source>
        <translation>
            <numerusform>%n dive</numerusform>
            <numerusform>%n dives</numerusform>
        </translation>
    </message>
    </context>
<context>
    <name>DivesPage</name>
    <message numerus="yes">
        <source>%n dive(s) hidden</source>
        <translation>
            <numerusform>%n dive hidden</numerusform>
            <numerusform>%n dives hidden</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n dive(s) restored</source>
        <translation>
            <numerusform>%n dive restored</numerusform>
            <numerusform>%n dives restored</numerusform>
        </translation>
    </message>
    </context>
<context>
    <name>ExportDialog</name>
    <message numerus="yes">
        <source>Export %n dive(s)</source>
        <translation>
            <numerusform>Export %n dive</numerusform>
            <numerusform>Export %n dives</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n dive(s) written to %1</source>
        <translation>
            <numerusform>%n dive written to %1</numerusform>
            <numerusform>%n dives written to %1</numerusform>
        </translation>
    </message>
    </context>
<context>
    <name>ImportDialog</name>
    <message numerus="yes">
        <source>%n dive(s) added</source>
        <translation>
            <numerusform>%n dive added</numerusform>
            <numerusform>%n dives added</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n dive(s) here already</source>
        <translation>
            <numerusform>%n dive here already</numerusform>
            <numerusform>%n dives here already</numerusform>
        </translation>
    </message>
    </context>
<context>
    <name>SeveralPane</name>
    <message numerus="yes">
        <source>%n dive(s)</source>
        <translation>
            <numerusform>%n dive</numerusform>
            <numerusform>%n dives</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>The first %n of them</source>
        <translation>
            <numerusform>The first %n of them</numerusform>
            <numerusform>The first %n of them</numerusform>
        </translation>
    </message>
    </context>
<context>
    <name>StatisticsPane</name>
    <message numerus="yes">
        <source>%n dive(s), %1</source>
        <translation>
            <numerusform>%n dive, %1</numerusform>
            <numerusform>%n dives, %1</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n dive(s)</source>
        <translation>
            <numerusform>%n dive</numerusform>
            <numerusform>%n dives</numerusform>
        </translation>
    </message>
    </context>
<context>
    <name>Units</name>
    <message numerus="yes">
        <source>%n minute(s)</source>
        <translation>
            <numerusform>%n minute</numerusform>
            <numerusform>%n minutes</numerusform>
        </translation>
    </message>
    </context>
</TS>
