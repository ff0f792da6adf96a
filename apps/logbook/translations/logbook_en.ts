<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name>BatteryCard</name>
    <message numerus="yes">
        <source>History: %n record(s)</source>
        <translation>
            <numerusform>History: %n record</numerusform>
            <numerusform>History: %n records</numerusform>
        </translation>
    </message>
</context>
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
    <name>LocalTime</name>
    <message numerus="yes">
        <source>%n second(s)</source>
        <translation>
            <numerusform>%n second</numerusform>
            <numerusform>%n seconds</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n minute(s)</source>
        <translation>
            <numerusform>%n minute</numerusform>
            <numerusform>%n minutes</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n hour(s)</source>
        <translation>
            <numerusform>%n hour</numerusform>
            <numerusform>%n hours</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n day(s)</source>
        <translation>
            <numerusform>%n day</numerusform>
            <numerusform>%n days</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>LogCard</name>
    <message numerus="yes">
        <source>%n entry(ies), in English</source>
        <translation>
            <numerusform>%n entry, in English</numerusform>
            <numerusform>%n entries, in English</numerusform>
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
    <name>SyncCard</name>
    <message numerus="yes">
        <source>%n new dive(s) saved.</source>
        <translation>
            <numerusform>%n new dive saved.</numerusform>
            <numerusform>%n new dives saved.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n dive(s) arrived damaged. The next synchronisation asks for them again.</source>
        <translation>
            <numerusform>%n dive arrived damaged. The next synchronisation asks for it again.</numerusform>
            <numerusform>%n dives arrived damaged. The next synchronisation asks for them again.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>TimeLeft</name>
    <message numerus="yes">
        <source>about %n minute(s) left</source>
        <translation>
            <numerusform>about %n minute left</numerusform>
            <numerusform>about %n minutes left</numerusform>
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
