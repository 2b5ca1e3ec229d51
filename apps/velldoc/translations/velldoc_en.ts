<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>velldoc</name>
    <message numerus="yes">
        <source>%1 of %n file(s)</source>
        <translation>
            <numerusform>%1 of %n file</numerusform>
            <numerusform>%1 of %n files</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 has %n version(s), so there is no version %2.</source>
        <translation>
            <numerusform>%1 has %n version, so there is no version %2.</numerusform>
            <numerusform>%1 has %n versions, so there is no version %2.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n file(s) fetched, %1.</source>
        <translation>
            <numerusform>%n file fetched, %1.</numerusform>
            <numerusform>%n files fetched, %1.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n file(s) skipped.</source>
        <translation>
            <numerusform>%n file skipped.</numerusform>
            <numerusform>%n files skipped.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n file(s) stored, %1.</source>
        <translation>
            <numerusform>%n file stored, %1.</numerusform>
            <numerusform>%n files stored, %1.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 of %n file(s) are stored.</source>
        <translation>
            <numerusform>%1 of %n file are stored.</numerusform>
            <numerusform>%1 of %n files are stored.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n file(s) could not be stored.</source>
        <translation>
            <numerusform>%n file could not be stored.</numerusform>
            <numerusform>%n files could not be stored.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n document(s) restored.</source>
        <translation>
            <numerusform>%n document restored.</numerusform>
            <numerusform>%n documents restored.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Delete %n document(s) for good?</source>
        <translation>
            <numerusform>Delete %n document for good?</numerusform>
            <numerusform>Delete %n documents for good?</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n document(s) deleted for good.</source>
        <translation>
            <numerusform>%n document deleted for good.</numerusform>
            <numerusform>%n documents deleted for good.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n folder(s)</source>
        <translation>
            <numerusform>%n folder</numerusform>
            <numerusform>%n folders</numerusform>
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
        <source>%n document(s) moved to the recycle bin; &quot;velldoc trash&quot; brings them back.</source>
        <translation>
            <numerusform>%n document moved to the recycle bin; &quot;velldoc trash&quot; brings them back.</numerusform>
            <numerusform>%n documents moved to the recycle bin; &quot;velldoc trash&quot; brings them back.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 of %n file(s) are fetched.</source>
        <translation>
            <numerusform>%1 of %n file are fetched.</numerusform>
            <numerusform>%1 of %n files are fetched.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n share(s) ended.</source>
        <translation>
            <numerusform>%n share ended.</numerusform>
            <numerusform>%n shares ended.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n file(s) could not be fetched.</source>
        <translation>
            <numerusform>%n file could not be fetched.</numerusform>
            <numerusform>%n files could not be fetched.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n file(s) transferred, %1;</source>
        <translation>
            <numerusform>%n file transferred, %1;</numerusform>
            <numerusform>%n files transferred, %1;</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n removed;</source>
        <translation>
            <numerusform>%n removed;</numerusform>
            <numerusform>%n removed;</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n left as they are.</source>
        <translation>
            <numerusform>%n left as it is.</numerusform>
            <numerusform>%n left as they are.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n file(s) could not be synchronized.</source>
        <translation>
            <numerusform>%n file could not be synchronized.</numerusform>
            <numerusform>%n files could not be synchronized.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n file(s) copied.</source>
        <translation>
            <numerusform>%n file copied.</numerusform>
            <numerusform>%n files copied.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n file(s) could not be compared.</source>
        <translation>
            <numerusform>%n file could not be compared.</numerusform>
            <numerusform>%n files could not be compared.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>The folders differ in %n place(s).</source>
        <translation>
            <numerusform>The folders differ in %n place.</numerusform>
            <numerusform>The folders differ in %n places.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>The folders are equal: %n file(s) and folder(s).</source>
        <translation>
            <numerusform>The folders are equal: %n file and folder.</numerusform>
            <numerusform>The folders are equal: %n files and folders.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n file(s) would be fetched, %1.</source>
        <translation>
            <numerusform>%n file would be fetched, %1.</numerusform>
            <numerusform>%n files would be fetched, %1.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n file(s) were there already.</source>
        <translation>
            <numerusform>%n file was there already.</numerusform>
            <numerusform>%n files were there already.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n file(s) would be stored, %1.</source>
        <translation>
            <numerusform>%n file would be stored, %1.</numerusform>
            <numerusform>%n files would be stored, %1.</numerusform>
        </translation>
    </message>
</context>
</TS>
