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
        <source>%n file(s) downloaded, %1.</source>
        <translation>
            <numerusform>%n file downloaded, %1.</numerusform>
            <numerusform>%n files downloaded, %1.</numerusform>
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
        <source>%1 of %n file(s) have been stored.</source>
        <translation>
            <numerusform>%1 of %n file has been stored.</numerusform>
            <numerusform>%1 of %n files have been stored.</numerusform>
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
        <source>Delete %n document(s) permanently?</source>
        <translation>
            <numerusform>Delete %n document permanently?</numerusform>
            <numerusform>Delete %n documents permanently?</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n document(s) deleted permanently.</source>
        <translation>
            <numerusform>%n document deleted permanently.</numerusform>
            <numerusform>%n documents deleted permanently.</numerusform>
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
        <source>%n document(s) moved to the recycle bin; &quot;velldoc trash&quot; restores them.</source>
        <translation>
            <numerusform>%n document moved to the recycle bin; &quot;velldoc trash&quot; restores it.</numerusform>
            <numerusform>%n documents moved to the recycle bin; &quot;velldoc trash&quot; restores them.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 of %n file(s) have been downloaded.</source>
        <translation>
            <numerusform>%1 of %n file has been downloaded.</numerusform>
            <numerusform>%1 of %n files have been downloaded.</numerusform>
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
        <source>%n file(s) could not be downloaded.</source>
        <translation>
            <numerusform>%n file could not be downloaded.</numerusform>
            <numerusform>%n files could not be downloaded.</numerusform>
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
        <source>%n unchanged.</source>
        <translation>
            <numerusform>%n unchanged.</numerusform>
            <numerusform>%n unchanged.</numerusform>
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
        <source>The folders have %n difference(s).</source>
        <translation>
            <numerusform>The folders have %n difference.</numerusform>
            <numerusform>The folders have %n differences.</numerusform>
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
        <source>%n file(s) would be downloaded, %1.</source>
        <translation>
            <numerusform>%n file would be downloaded, %1.</numerusform>
            <numerusform>%n files would be downloaded, %1.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n file(s) already existed.</source>
        <translation>
            <numerusform>%n file already existed.</numerusform>
            <numerusform>%n files already existed.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n file(s) would be stored, %1.</source>
        <translation>
            <numerusform>%n file would be stored, %1.</numerusform>
            <numerusform>%n files would be stored, %1.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n file(s) to transfer, %1;</source>
        <translation>
            <numerusform>%n file to transfer, %1;</numerusform>
            <numerusform>%n files to transfer, %1;</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n to move;</source>
        <translation>
            <numerusform>%n to move;</numerusform>
            <numerusform>%n to move;</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n moved;</source>
        <translation>
            <numerusform>%n moved;</numerusform>
            <numerusform>%n moved;</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n to remove;</source>
        <translation>
            <numerusform>%n to remove;</numerusform>
            <numerusform>%n to remove;</numerusform>
        </translation>
    </message>
</context>
</TS>
