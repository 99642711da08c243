<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="en_US">
<context>
    <name>KivoraWidget</name>
    <message numerus="yes">
        <source>Messages of the MIDI keyboard were lost %n time(s), and its held keys were released.</source>
        <translation>
            <numerusform>Messages of the MIDI keyboard were lost once, and its held keys were released.</numerusform>
            <numerusform>Messages of the MIDI keyboard were lost %n times, and its held keys were released.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Its file is damaged: %n event(s) of it are missing.</source>
        <translation>
            <numerusform>Its file is damaged: one event of it is missing.</numerusform>
            <numerusform>Its file is damaged: %n events of it are missing.</numerusform>
        </translation>
    </message>
</context>
</TS>
