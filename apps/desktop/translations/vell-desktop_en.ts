<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>desktop::BatchWatch</name>
    <message numerus="yes">
        <source>%n files uploaded</source>
        <translation>
            <numerusform>%n file uploaded</numerusform>
            <numerusform>%n files uploaded</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n files downloaded</source>
        <translation>
            <numerusform>%n file downloaded</numerusform>
            <numerusform>%n files downloaded</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n skipped</source>
        <translation>
            <numerusform>%n skipped</numerusform>
            <numerusform>%n skipped</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n failed</source>
        <translation>
            <numerusform>%n failed</numerusform>
            <numerusform>%n failed</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>desktop::Commands</name>
    <message numerus="yes">
        <source>Permanently delete %n entries of the recycle bin with all their contents?</source>
        <translation>
            <numerusform>Permanently delete %n entry of the recycle bin with all its contents?</numerusform>
            <numerusform>Permanently delete %n entries of the recycle bin with all their contents?</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>desktop::DocumentChanges</name>
    <message numerus="yes">
        <source>%1 and %n other(s)</source>
        <translation>
            <numerusform>%1 and %n other</numerusform>
            <numerusform>%1 and %n others</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Move %n entries</source>
        <translation>
            <numerusform>Move %n entry</numerusform>
            <numerusform>Move %n entries</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n entries have been moved.</source>
        <translation>
            <numerusform>%n entry has been moved.</numerusform>
            <numerusform>%n entries have been moved.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n entries have been moved back.</source>
        <translation>
            <numerusform>%n entry has been moved back.</numerusform>
            <numerusform>%n entries have been moved back.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Delete %n entries</source>
        <translation>
            <numerusform>Delete %n entry</numerusform>
            <numerusform>Delete %n entries</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n entries have been moved into the recycle bin.</source>
        <translation>
            <numerusform>%n entry has been moved into the recycle bin.</numerusform>
            <numerusform>%n entries have been moved into the recycle bin.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n entries have been restored.</source>
        <translation>
            <numerusform>%n entry has been restored.</numerusform>
            <numerusform>%n entries have been restored.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n of them are in a folder with another entry of the same name.</source>
        <translation>
            <numerusform>%n of them is in a folder with another entry of the same name.</numerusform>
            <numerusform>%n of them are in a folder with another entry of the same name.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>desktop::DragFetch</name>
    <message numerus="yes">
        <source>Downloading %n entries for the other program…</source>
        <translation>
            <numerusform>Downloading %n entry for the other program…</numerusform>
            <numerusform>Downloading %n entries for the other program…</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>desktop::EditDesk</name>
    <message numerus="yes">
        <source>You have changed %n opened files on this computer.</source>
        <translation>
            <numerusform>You have changed %n opened file on this computer.</numerusform>
            <numerusform>You have changed %n opened files on this computer.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>desktop::InformationPanel</name>
    <message numerus="yes">
        <source>%n entries are selected.</source>
        <translation>
            <numerusform>%n entry is selected.</numerusform>
            <numerusform>%n entries are selected.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n links</source>
        <translation>
            <numerusform>%n link</numerusform>
            <numerusform>%n links</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>desktop::MainWindow</name>
    <message numerus="yes">
        <source>%n entries</source>
        <translation>
            <numerusform>%n entry</numerusform>
            <numerusform>%n entries</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n selected</source>
        <translation>
            <numerusform>%n selected</numerusform>
            <numerusform>%n selected</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>desktop::ShareDialog</name>
    <message numerus="yes">
        <source>%n documents</source>
        <translation>
            <numerusform>%n document</numerusform>
            <numerusform>%n documents</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>desktop::TransferPanel</name>
    <message numerus="yes">
        <source>%n seconds left</source>
        <translation>
            <numerusform>%n second left</numerusform>
            <numerusform>%n seconds left</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n minutes left</source>
        <translation>
            <numerusform>%n minute left</numerusform>
            <numerusform>%n minutes left</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n hours left</source>
        <translation>
            <numerusform>%n hour left</numerusform>
            <numerusform>%n hours left</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n transfers</source>
        <translation>
            <numerusform>%n transfer</numerusform>
            <numerusform>%n transfers</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n need your answer</source>
        <translation>
            <numerusform>%n needs your answer</numerusform>
            <numerusform>%n need your answer</numerusform>
        </translation>
    </message>
</context>
</TS>
