<?xml version='1.0' encoding='utf-8'?>
<TS version="2.1" language="en_US">
<context>
    <name>ChangeNotice</name>
    <message numerus="yes">
        <source>and %n more</source>
        <translation><numerusform>and %n more</numerusform><numerusform>and %n more</numerusform></translation>
    </message>
</context>
<context>
    <name>DisplaySummary</name>
    <message numerus="yes">
        <source>%n down</source>
        <translation><numerusform>%n down</numerusform><numerusform>%n down</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n degraded</source>
        <translation><numerusform>%n degraded</numerusform><numerusform>%n degraded</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n unknown</source>
        <translation><numerusform>%n unknown</numerusform><numerusform>%n unknown</numerusform></translation>
    </message>
</context>
<context>
    <name>DisplayText</name>
    <message numerus="yes">
        <source>Updated %ns ago</source>
        <translation><numerusform>Updated %ns ago</numerusform><numerusform>Updated %ns ago</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>Updated %nm ago</source>
        <translation><numerusform>Updated %nm ago</numerusform><numerusform>Updated %nm ago</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>Updated %nd ago</source>
        <translation><numerusform>Updated %nd ago</numerusform><numerusform>Updated %nd ago</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>Updated %nh ago</source>
        <translation><numerusform>Updated %nh ago</numerusform><numerusform>Updated %nh ago</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n min ago</source>
        <translation><numerusform>%n min ago</numerusform><numerusform>%n min ago</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n h ago</source>
        <translation><numerusform>%n h ago</numerusform><numerusform>%n h ago</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n d ago</source>
        <translation><numerusform>%n d ago</numerusform><numerusform>%n d ago</numerusform></translation>
    </message>
</context>
<context>
    <name>PaneText</name>
    <message numerus="yes">
        <source>… (and %n other(s))</source>
        <translation><numerusform>… (and %n other)</numerusform><numerusform>… (and %n others)</numerusform></translation>
    </message>
</context>
<context>
    <name>SourceResult</name>
    <message numerus="yes">
        <source>%n components affected</source>
        <translation><numerusform>%n components affected</numerusform><numerusform>%n components affected</numerusform></translation>
    </message>
</context>
<context>
    <name>lanternic::GeneralSettingsView</name>
    <message numerus="yes">
        <source>%n minute(s)</source>
        <translation><numerusform>%n minute</numerusform><numerusform>%n minutes</numerusform></translation>
    </message>
</context>
<context>
    <name>lanternic::StatusRowView</name>
    <message numerus="yes">
        <source>%n open incident(s)</source>
        <translation><numerusform>%n open incident</numerusform><numerusform>%n open incidents</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>and %n more</source>
        <translation><numerusform>and %n more</numerusform><numerusform>and %n more</numerusform></translation>
    </message>
</context>
<context>
    <name>lanternic::TimelineBar</name>
    <message numerus="yes">
        <source>Last 7 days: %1 operational, %n stretch(es) of trouble</source>
        <translation><numerusform>Last 7 days: %1 operational, %n stretch of trouble</numerusform><numerusform>Last 7 days: %1 operational, %n stretches of trouble</numerusform></translation>
    </message>
</context>
</TS>