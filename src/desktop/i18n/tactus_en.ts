<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en_US">
<context>
    <name>Texts</name>
    <message numerus="yes">
        <source>Adding files … %n so far</source>
        <translation>
            <numerusform>Adding files … %n so far</numerusform>
            <numerusform>Adding files … %n so far</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n file(s)</source>
        <translation>
            <numerusform>%n file</numerusform>
            <numerusform>%n files</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>, %n not analyzed</source>
        <translation>
            <numerusform>, %n not analyzed</numerusform>
            <numerusform>, %n not analyzed</numerusform>
        </translation>
    </message>
</context>
</TS>
