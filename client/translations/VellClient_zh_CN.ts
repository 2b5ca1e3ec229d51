<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>VellConnection</name>
    <message>
        <source>The address of the service is missing.</source>
        <translation>缺少服务地址。</translation>
    </message>
    <message>
        <source>The address &quot;%1&quot; does not begin with http:// or https://.</source>
        <translation>地址“%1”不是以 http:// 或 https:// 开头。</translation>
    </message>
    <message>
        <source>The address &quot;%1&quot; has no scheme: write https://%1 or http://%1.</source>
        <translation>地址“%1”缺少协议：请写成 https://%1 或 http://%1。</translation>
    </message>
    <message>
        <source>The address &quot;%1&quot; has no host.</source>
        <translation>地址“%1”没有主机名。</translation>
    </message>
</context>
<context>
    <name>VellDocumentModel</name>
    <message>
        <source>Folder</source>
        <translation>文件夹</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>名称</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>大小</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>类型</translation>
    </message>
    <message>
        <source>Changed</source>
        <translation>修改时间</translation>
    </message>
    <message>
        <source>Changed by</source>
        <translation>修改者</translation>
    </message>
    <message>
        <source>Remark</source>
        <translation>备注</translation>
    </message>
</context>
<context>
    <name>VellError</name>
    <message>
        <source>The service cannot be reached.</source>
        <translation>无法连接服务。</translation>
    </message>
    <message>
        <source>The service did not respond in time.</source>
        <translation>服务没有及时响应。</translation>
    </message>
    <message>
        <source>The connection to the service is not secure.</source>
        <translation>与服务的连接不安全。</translation>
    </message>
    <message>
        <source>The proxy refused the request.</source>
        <translation>代理拒绝了该请求。</translation>
    </message>
    <message>
        <source>There is no document service at this address.</source>
        <translation>此地址没有文档服务。</translation>
    </message>
    <message>
        <source>The service does not accept the token: sign in again.</source>
        <translation>服务不接受令牌：请重新登录。</translation>
    </message>
    <message>
        <source>You do not have the right to do this.</source>
        <translation>您没有执行此操作的权限。</translation>
    </message>
    <message>
        <source>It no longer exists.</source>
        <translation>它已不存在。</translation>
    </message>
    <message>
        <source>An entry with this name already exists.</source>
        <translation>已存在同名项目。</translation>
    </message>
    <message>
        <source>This name is not valid.</source>
        <translation>该名称无效。</translation>
    </message>
    <message>
        <source>The disk is full.</source>
        <translation>磁盘空间不足。</translation>
    </message>
    <message>
        <source>This is larger than the service allows.</source>
        <translation>超出服务接受的大小。</translation>
    </message>
    <message>
        <source>It has been changed meanwhile.</source>
        <translation>它在此期间已被更改。</translation>
    </message>
    <message>
        <source>The local file cannot be read or written.</source>
        <translation>无法读取或写入本地文件。</translation>
    </message>
    <message>
        <source>The service is busy: try again later.</source>
        <translation>服务繁忙：请稍后再试。</translation>
    </message>
    <message>
        <source>The service refused the request.</source>
        <translation>服务不接受该请求。</translation>
    </message>
    <message>
        <source>The service reported an internal error.</source>
        <translation>服务报告内部错误。</translation>
    </message>
    <message>
        <source>Cancelled.</source>
        <translation>已取消。</translation>
    </message>
    <message>
        <source>The service did not confirm the request.</source>
        <translation>服务没有确认该请求。</translation>
    </message>
</context>
<context>
    <name>VellFolderModel</name>
    <message>
        <source>Folders</source>
        <translation>文件夹</translation>
    </message>
</context>
<context>
    <name>VellSession</name>
    <message>
        <source>There is no document service at %1.</source>
        <translation>%1 处没有文档服务。</translation>
    </message>
</context>
<context>
    <name>VellSyncPlan</name>
    <message>
        <source>It is a link, which is not followed.</source>
        <translation>它是链接，不会跟随。</translation>
    </message>
    <message>
        <source>It cannot be read.</source>
        <translation>无法读取。</translation>
    </message>
    <message>
        <source>%1 is not a folder.</source>
        <translation>%1 不是文件夹。</translation>
    </message>
    <message>
        <source>The service has several entries with this name.</source>
        <translation>服务上有多个同名项目。</translation>
    </message>
    <message>
        <source>It is a file on one side and a folder on the other.</source>
        <translation>一侧是文件，另一侧是文件夹。</translation>
    </message>
    <message>
        <source>It differs from %1 only in case, which the local disk ignores.</source>
        <translation>它与 %1 仅大小写不同，而本地磁盘不区分大小写。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not valid as the name of a local file.</source>
        <translation>“%1”不能用作本地文件名。</translation>
    </message>
</context>
<context>
    <name>VellTransferQueue</name>
    <message>
        <source>The file no longer exists.</source>
        <translation>文件已不存在。</translation>
    </message>
    <message>
        <source>It cannot be read.</source>
        <translation>无法读取。</translation>
    </message>
    <message>
        <source>It is neither a file nor a folder.</source>
        <translation>它既不是文件也不是文件夹。</translation>
    </message>
    <message>
        <source>It is a link to a folder, which is not followed.</source>
        <translation>它是指向文件夹的链接，不会跟随。</translation>
    </message>
    <message>
        <source>It is a broken link.</source>
        <translation>它是失效的链接。</translation>
    </message>
    <message>
        <source>The service does not accept the name &quot;%1&quot;.</source>
        <translation>服务不接受名称“%1”。</translation>
    </message>
    <message>
        <source>The name &quot;%1&quot; is not valid UTF-8.</source>
        <translation>名称“%1”不是 UTF-8 文本。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not valid as the name of a local file.</source>
        <translation>“%1”不能用作本地文件名。</translation>
    </message>
    <message>
        <source>The file is changing while it is sent.</source>
        <translation>文件在发送过程中被更改。</translation>
    </message>
    <message>
        <source>A folder with this name already exists.</source>
        <translation>已存在同名文件夹。</translation>
    </message>
    <message>
        <source>A file with this name already exists.</source>
        <translation>已存在同名文件。</translation>
    </message>
    <message>
        <source>The document has been deleted meanwhile.</source>
        <translation>文档在此期间已被删除。</translation>
    </message>
    <message>
        <source>The upload ended without a result.</source>
        <translation>上传结束但没有结果。</translation>
    </message>
    <message>
        <source>%1 bytes were received instead of %2.</source>
        <translation>收到 %1 字节，应为 %2 字节。</translation>
    </message>
    <message>
        <source>The received content differs from the one on the service.</source>
        <translation>收到的内容与服务上的不一致。</translation>
    </message>
    <message>
        <source>A file with the name of the folder already exists.</source>
        <translation>已存在与文件夹同名的文件。</translation>
    </message>
    <message>
        <source>%1 is not a regular file and is not replaced.</source>
        <translation>%1 不是普通文件，不会被替换。</translation>
    </message>
    <message>
        <source>The folder %1 cannot be created.</source>
        <translation>无法创建文件夹 %1。</translation>
    </message>
    <message>
        <source>%1 cannot be written: %2.</source>
        <translation>无法写入 %1：%2。</translation>
    </message>
    <message>
        <source>No project is open.</source>
        <translation>没有打开的项目。</translation>
    </message>
    <message>
        <source>%1 is not a list of transfers.</source>
        <translation>%1 不是传输列表。</translation>
    </message>
    <message>
        <source>The list of transfers is in use by another program.</source>
        <translation>传输列表正被另一个程序使用。</translation>
    </message>
</context>
</TS>
