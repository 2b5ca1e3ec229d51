<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="zh_CN">
<context>
    <name>QMessageBox</name>
    <message>
        <source>此位置已存在同名文件：</source>
        <translation>A file of this name already exists here:</translation>
    </message>
    <message>
        <source>新文件替换已存在的同名文件</source>
        <translation>Replace the existing file with the new one</translation>
    </message>
    <message>
        <source>或</source>
        <translation>or</translation>
    </message>
    <message>
        <source>保留原有文件并将其新文件重命名为</source>
        <extracomment>Stands directly before the new name: end it with a blank where words are separated.</extracomment>
        <translation>keep the existing file and name the new one </translation>
    </message>
    <message>
        <source>？</source>
        <translation>?</translation>
    </message>
    <message>
        <source>为之后同名文件执行此操作</source>
        <translation>Do this for all further name conflicts</translation>
    </message>
    <message>
        <source>替换</source>
        <translation>Replace</translation>
    </message>
    <message>
        <source>新增</source>
        <translation>Add</translation>
    </message>
    <message>
        <source>跳过</source>
        <translation>Skip</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>Cancel</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>图纸</source>
        <translation>Drawings</translation>
    </message>
    <message>
        <source>图片</source>
        <translation>Pictures</translation>
    </message>
    <message>
        <source>文档</source>
        <translation>Documents</translation>
    </message>
    <message>
        <source>音/视频</source>
        <translation>Audio/Video</translation>
    </message>
    <message>
        <source>其他</source>
        <translation>Other</translation>
    </message>
    <message>
        <source>所有类型 (*.*)</source>
        <translation>All types (*.*)</translation>
    </message>
</context>
</TS>
