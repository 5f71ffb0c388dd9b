<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en_US">
<context>
    <name>BpmWindow</name>
    <message numerus="yes">
        <source>%Ln tempo(s) came with the files. Replace them?</source>
        <translation>
            <numerusform>%Ln tempo came with the files. Replace it?</numerusform>
            <numerusform>%Ln tempos came with the files. Replace them?</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>hiding %Ln file(s)</source>
        <translation>
            <numerusform>hiding %Ln file</numerusform>
            <numerusform>hiding %Ln files</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>CExportDialog</name>
    <message numerus="yes">
        <source>%Ln selected row(s)</source>
        <translation>
            <numerusform>%Ln selected row</numerusform>
            <numerusform>%Ln selected rows</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>All %Ln row(s)</source>
        <translation>
            <numerusform>%Ln row</numerusform>
            <numerusform>All %Ln rows</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln row(s) exported to “%1”.</source>
        <translation>
            <numerusform>%Ln row exported to “%1”.</numerusform>
            <numerusform>%Ln rows exported to “%1”.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln of %1 row(s) can&apos;t be heard and will be missing.</source>
        <translation>
            <numerusform>%Ln of %1 rows can&apos;t be heard and will be missing.</numerusform>
            <numerusform>%Ln of %1 rows can&apos;t be heard and will be missing.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln of %1 row(s) have no beat grid yet and will be missing.</source>
        <translation>
            <numerusform>%Ln of %1 rows has no beat grid yet and will be missing.</numerusform>
            <numerusform>%Ln of %1 rows have no beat grid yet and will be missing.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln song(s) exported to “%1”.</source>
        <translation>
            <numerusform>%Ln song exported to “%1”.</numerusform>
            <numerusform>%Ln songs exported to “%1”.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln row(s) left out.</source>
        <translation>
            <numerusform>%Ln row left out.</numerusform>
            <numerusform>%Ln rows left out.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>CSoundControls</name>
    <message numerus="yes">
        <source>Loop of %Ln</source>
        <translation>
            <numerusform>Loop of %Ln</numerusform>
            <numerusform>Loop of %Ln</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>CTempoLine</name>
    <message numerus="yes">
        <source>%Ln tap(s) …</source>
        <translation>
            <numerusform>%Ln tap …</numerusform>
            <numerusform>%Ln taps …</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln tap(s): %1 ± %2, Enter takes %3</source>
        <translation>
            <numerusform>%Ln tap: %1 ± %2, Enter takes %3</numerusform>
            <numerusform>%Ln taps: %1 ± %2, Enter takes %3</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>CorrectionTexts</name>
    <message numerus="yes">
        <source>%Ln stored tempo(s)</source>
        <translation>
            <numerusform>%Ln stored tempo</numerusform>
            <numerusform>%Ln stored tempos</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 on %Ln file(s)</source>
        <translation>
            <numerusform>%1 on %Ln file</numerusform>
            <numerusform>%1 on %Ln files</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>tempo of %Ln file(s)</source>
        <translation>
            <numerusform>tempo of %Ln file</numerusform>
            <numerusform>tempo of %Ln files</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln file(s) were left as they are, the first of them “%1”: %2.</source>
        <translation>
            <numerusform>%Ln file was left as it is, “%1”: %2.</numerusform>
            <numerusform>%Ln files were left as they are, the first of them “%1”: %2.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>PaneTexts</name>
    <message numerus="yes">
        <source>%Ln measure(s)</source>
        <translation>
            <numerusform>%Ln measure</numerusform>
            <numerusform>%Ln measures</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln mix point(s) into the song: %1.</source>
        <translation>
            <numerusform>%Ln mix point into the song: %1.</numerusform>
            <numerusform>%Ln mix points into the song: %1.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln mix point(s) out of it: %1.</source>
        <translation>
            <numerusform>%Ln mix point out of it: %1.</numerusform>
            <numerusform>%Ln mix points out of it: %1.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>StatusTexts</name>
    <message numerus="yes">
        <source>Adding files … %Ln so far</source>
        <translation>
            <numerusform>Adding files … %Ln so far</numerusform>
            <numerusform>Adding files … %Ln so far</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln file(s)</source>
        <translation>
            <numerusform>%Ln file</numerusform>
            <numerusform>%Ln files</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln to do</source>
        <translation>
            <numerusform>%Ln to do</numerusform>
            <numerusform>%Ln to do</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln problem(s)</source>
        <translation>
            <numerusform>%Ln problem</numerusform>
            <numerusform>%Ln problems</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln already in the list</source>
        <translation>
            <numerusform>%Ln already in the list</numerusform>
            <numerusform>%Ln already in the list</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln added, %1.</source>
        <translation>
            <numerusform>%Ln added, %1.</numerusform>
            <numerusform>%Ln added, %1.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Still working on %Ln file(s).</source>
        <translation>
            <numerusform>Still working on %Ln file.</numerusform>
            <numerusform>Still working on %Ln files.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln folder(s) could not be read, the last of them “%1”.</source>
        <translation>
            <numerusform>%Ln folder could not be read, the last of them “%1”.</numerusform>
            <numerusform>%Ln folders could not be read, the last of them “%1”.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln file(s) hidden and left out. Nothing was deleted.</source>
        <translation>
            <numerusform>%Ln file hidden and left out. Nothing was deleted.</numerusform>
            <numerusform>%Ln files hidden and left out. Nothing was deleted.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln file(s) of other kinds were left out (%1).</source>
        <translation>
            <numerusform>%Ln file of another kind was left out (%1).</numerusform>
            <numerusform>%Ln files of other kinds were left out (%1).</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln analyzed in %1</source>
        <translation>
            <numerusform>%Ln analyzed in %1</numerusform>
            <numerusform>%Ln analyzed in %1</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln stored</source>
        <translation>
            <numerusform>%Ln stored</numerusform>
            <numerusform>%Ln stored</numerusform>
        </translation>
    </message>
</context>
</TS>
