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
</context>
<context>
    <name>Reasons</name>
    <message>
        <source>is a folder, not a file</source>
        <translation>it is a folder, not a file</translation>
    </message>
    <message>
        <source>is not a regular file</source>
        <translation>it is not a regular file</translation>
    </message>
    <message>
        <source>the file is empty</source>
        <translation>the file is empty</translation>
    </message>
    <message>
        <source>vanished while it was read</source>
        <translation>the file vanished while it was read</translation>
    </message>
    <message>
        <source>changed while it was read</source>
        <translation>the file changed while it was read</translation>
    </message>
    <message>
        <source>is not an audio file that can be read</source>
        <translation>it is not an audio file that can be read</translation>
    </message>
    <message>
        <source>holds no audio</source>
        <translation>the file holds no audio</translation>
    </message>
    <message>
        <source>holds audio of a kind that can&apos;t be decoded</source>
        <translation>its kind of audio can&apos;t be decoded</translation>
    </message>
    <message>
        <source>holds audio that can&apos;t be decoded</source>
        <translation>its audio can&apos;t be decoded</translation>
    </message>
    <message>
        <source>holds audio that can&apos;t be mixed down</source>
        <translation>its audio can&apos;t be mixed down</translation>
    </message>
    <message>
        <source>has a sample rate that can&apos;t be worked with</source>
        <translation>its sample rate can&apos;t be worked with</translation>
    </message>
    <message>
        <source>is too long</source>
        <translation>the file is too long</translation>
    </message>
    <message>
        <source>is too long for the memory at hand</source>
        <translation>the file is too long for the memory at hand</translation>
    </message>
    <message>
        <source>there is not enough memory for it</source>
        <translation>there is not enough memory for it</translation>
    </message>
    <message>
        <source>gave no audio for too long</source>
        <translation>the file gave no audio for too long</translation>
    </message>
    <message>
        <source>no beat was found in it</source>
        <translation>no beat was found in it</translation>
    </message>
    <message>
        <source>no thread could be started</source>
        <translation>no thread could be started</translation>
    </message>
    <message>
        <source>is damaged: %1 of %2 packets can&apos;t be decoded</source>
        <translation>the file is damaged, %1 of %2 packets can&apos;t be decoded</translation>
    </message>
    <message>
        <source>is damaged: %1 of %2 packets can&apos;t be decoded, and it breaks off</source>
        <translation>the file is damaged, %1 of %2 packets can&apos;t be decoded, and it breaks off</translation>
    </message>
    <message>
        <source>breaks off in the middle of a frame</source>
        <translation>the file breaks off in the middle of a frame</translation>
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
</context>
</TS>
