<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>ExportResults</name>
    <message numerus="yes">
        <source>%n file(s) are compared with layers of %1.</source>
        <translation>
            <numerusform>%n file is compared with a layer of %1.</numerusform>
            <numerusform>%n files are compared with layers of %1.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>GraphicView</name>
    <message numerus="yes">
        <source>%1 and %n more</source>
        <translation>
            <numerusform>%1 and %n more</numerusform>
            <numerusform>%1 and %n more</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>The first %n places are marked.</source>
        <translation>
            <numerusform>The first place is marked.</numerusform>
            <numerusform>The first %n places are marked.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n place(s) marked.</source>
        <translation>
            <numerusform>%n place marked.</numerusform>
            <numerusform>%n places marked.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>HistoryPane</name>
    <message numerus="yes">
        <source>%n export(s), the newest first.</source>
        <translation>
            <numerusform>%n export.</numerusform>
            <numerusform>%n exports, the newest first.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message numerus="yes">
        <source>Exporting %n layer(s) to %1</source>
        <translation>
            <numerusform>Exporting %n layer to %1</numerusform>
            <numerusform>Exporting %n layers to %1</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>ResultsPane</name>
    <message numerus="yes">
        <source>not proven, %n place(s) differ</source>
        <translation>
            <numerusform>not proven, %n place differs</numerusform>
            <numerusform>not proven, %n places differ</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>and %n more place(s)</source>
        <translation>
            <numerusform>and %n more place</numerusform>
            <numerusform>and %n more places</numerusform>
        </translation>
    </message>
</context>
</TS>
