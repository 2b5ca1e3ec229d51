<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>FailureText</name>
    <message>
        <source>%1 requires a client certificate</source>
        <translation>%1 要求客户端证书</translation>
    </message>
    <message>
        <source>The connection was closed before the end of the response</source>
        <translation>连接在应答中途被关闭</translation>
    </message>
    <message>
        <source>The connection was closed before the response arrived</source>
        <translation>连接在收到应答前已关闭</translation>
    </message>
    <message>
        <source>The host %1 was not found</source>
        <translation>找不到主机名 %1</translation>
    </message>
    <message>
        <source>%1 refused the connection: no program is listening there</source>
        <translation>%1 拒绝连接：那里没有程序在监听</translation>
    </message>
    <message>
        <source>%1 cannot be reached: %2</source>
        <translation>无法到达 %1：%2</translation>
    </message>
    <message>
        <source>%1 does not respond with HTTP</source>
        <translation>%1 的应答不是 HTTP</translation>
    </message>
    <message>
        <source>The client certificate or its key cannot be used</source>
        <translation>客户端证书或其密钥无法使用</translation>
    </message>
    <message>
        <source>The file of trusted certificate authorities cannot be read</source>
        <translation>受信任证书颁发机构的文件无法读取</translation>
    </message>
    <message>
        <source>The certificate of %1 has expired or is not valid yet</source>
        <translation>%1 的证书已过期或尚未生效</translation>
    </message>
    <message>
        <source>%1 has a self-signed certificate</source>
        <translation>%1 出示的是自签名证书</translation>
    </message>
    <message>
        <source>The certificate of the server is not valid for %1</source>
        <translation>服务器的证书不是为 %1 签发的</translation>
    </message>
    <message>
        <source>The certificate of %1 is signed by an authority that is not trusted here</source>
        <translation>%1 的证书由本机不信任的机构签发</translation>
    </message>
    <message>
        <source>A TLS connection to %1 could not be established</source>
        <translation>%1 无法与本程序建立 TLS 连接</translation>
    </message>
    <message>
        <source>The proxy refused the request (status %1)</source>
        <translation>代理拒绝了该请求（状态 %1）</translation>
    </message>
    <message>
        <source>The host of the proxy was not found</source>
        <translation>找不到代理的主机名</translation>
    </message>
    <message>
        <source>The proxy requires a user name and a password, or does not accept them</source>
        <translation>代理要求用户名和密码，或拒绝了所给的用户名和密码</translation>
    </message>
    <message>
        <source>The proxy cannot be reached</source>
        <translation>无法连接代理</translation>
    </message>
    <message>
        <source>The proxy refused the request</source>
        <translation>代理拒绝了该请求</translation>
    </message>
    <message>
        <source>The service responded with %1</source>
        <translation>服务应答 %1</translation>
    </message>
    <message>
        <source>The server in front of the service does not accept bodies of this size (%1); in nginx the limit is client_max_body_size</source>
        <translation>服务前面的服务器拒绝这么大的请求（%1）；nginx 的上限由 client_max_body_size 设定</translation>
    </message>
    <message>
        <source>The server in front of the service cannot reach it (%1)</source>
        <translation>服务前面的服务器无法连接到服务（%1）</translation>
    </message>
    <message>
        <source>The server requires a client certificate (%1)</source>
        <translation>服务器要求客户端证书（%1）</translation>
    </message>
    <message>
        <source>The server requires https at this port (%1)</source>
        <translation>服务器在此端口要求使用 https（%1）</translation>
    </message>
    <message>
        <source>Nothing was sent or received for too long</source>
        <translation>长时间没有收发任何数据</translation>
    </message>
    <message>
        <source>The request was cancelled</source>
        <translation>请求已取消</translation>
    </message>
    <message>
        <source>The address is not a valid address with http or https</source>
        <translation>该地址不是可以请求的 http 或 https 地址</translation>
    </message>
    <message>
        <source>The file could not be read completely</source>
        <translation>文件无法读到末尾</translation>
    </message>
    <message>
        <source>The response is too large for the memory</source>
        <translation>应答太大，内存放不下</translation>
    </message>
    <message>
        <source>The service redirected too many times</source>
        <translation>服务重定向次数过多</translation>
    </message>
</context>
<context>
    <name>QGnomeTheme</name>
    <message>
        <source>&amp;OK</source>
        <translation>确定(&amp;O)</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>取消(&amp;C)</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>关闭(&amp;C)</translation>
    </message>
</context>
<context>
    <name>QPlatformTheme</name>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
</context>
<context>
    <name>RedirectRule</name>
    <message>
        <source>The service redirected to an address that is not encrypted</source>
        <translation>服务重定向到未加密的地址</translation>
    </message>
    <message>
        <source>The service redirected to another server, which must not receive the access token</source>
        <translation>服务重定向到另一台服务器，访问令牌不能发给它</translation>
    </message>
    <message>
        <source>The service redirected a change, which cannot be repeated at another address</source>
        <translation>服务把修改请求重定向到别处，修改不会在那里执行</translation>
    </message>
</context>
<context>
    <name>desktop::ActionRules</name>
    <message>
        <source>No project is open.</source>
        <translation>没有打开的项目。</translation>
    </message>
    <message>
        <source>The service cannot be reached now.</source>
        <translation>现在无法连接服务。</translation>
    </message>
    <message>
        <source>This is only possible in a folder.</source>
        <translation>只能在文件夹中进行此操作。</translation>
    </message>
    <message>
        <source>You may not add anything to this folder.</source>
        <translation>您无权向此文件夹添加内容。</translation>
    </message>
    <message>
        <source>This is only possible in the recycle bin.</source>
        <translation>只能在回收站中进行此操作。</translation>
    </message>
    <message>
        <source>Restore it from the recycle bin first.</source>
        <translation>请先将其从回收站还原。</translation>
    </message>
    <message>
        <source>Nothing is selected.</source>
        <translation>没有选中任何项。</translation>
    </message>
    <message>
        <source>Some of the selected entries have not been loaded yet. Select fewer entries.</source>
        <translation>部分选中的项尚未取回，请少选一些。</translation>
    </message>
    <message>
        <source>Select one entry.</source>
        <translation>请选择一项。</translation>
    </message>
    <message>
        <source>Select one file.</source>
        <translation>请选择一个文件。</translation>
    </message>
    <message>
        <source>You may not change “%1”.</source>
        <translation>您无权修改“%1”。</translation>
    </message>
    <message>
        <source>You may not delete “%1”.</source>
        <translation>您无权删除“%1”。</translation>
    </message>
    <message>
        <source>You may not download “%1”.</source>
        <translation>您无权下载“%1”。</translation>
    </message>
    <message>
        <source>Only an owner of the project may empty the recycle bin.</source>
        <translation>只有项目所有者可以清空回收站。</translation>
    </message>
    <message>
        <source>You may not share documents of this project.</source>
        <translation>您无权共享此项目的文档。</translation>
    </message>
    <message>
        <source>The clipboard contains neither cut documents nor files.</source>
        <translation>剪贴板中既没有剪切的文档，也没有文件。</translation>
    </message>
    <message>
        <source>There is nothing to undo.</source>
        <translation>没有可撤销的操作。</translation>
    </message>
    <message>
        <source>There is no such place.</source>
        <translation>没有这样的位置。</translation>
    </message>
</context>
<context>
    <name>desktop::Actions</name>
    <message>
        <source>&amp;New Folder</source>
        <translation>新建文件夹(&amp;N)</translation>
    </message>
    <message>
        <source>Creates a folder here</source>
        <translation>在此处新建文件夹</translation>
    </message>
    <message>
        <source>&amp;Upload Files…</source>
        <translation>上传文件(&amp;U)…</translation>
    </message>
    <message>
        <source>Uploads files of this computer into this folder</source>
        <translation>将本机的文件上传到此文件夹</translation>
    </message>
    <message>
        <source>Upload F&amp;older…</source>
        <translation>上传文件夹(&amp;O)…</translation>
    </message>
    <message>
        <source>Uploads a folder of this computer with all its contents</source>
        <translation>上传本机的文件夹及其全部内容</translation>
    </message>
    <message>
        <source>&amp;Open</source>
        <translation>打开(&amp;O)</translation>
    </message>
    <message>
        <source>Opens the folder, or the file in its default program</source>
        <translation>打开文件夹，或用相应程序打开文件</translation>
    </message>
    <message>
        <source>&amp;Download…</source>
        <translation>下载(&amp;D)…</translation>
    </message>
    <message>
        <source>Downloads the selected entries into a local folder</source>
        <translation>将选中的项下载到本机文件夹</translation>
    </message>
    <message>
        <source>&amp;Rename</source>
        <translation>重命名(&amp;R)</translation>
    </message>
    <message>
        <source>Renames the selected entry</source>
        <translation>修改名称</translation>
    </message>
    <message>
        <source>Cu&amp;t</source>
        <translation>剪切(&amp;T)</translation>
    </message>
    <message>
        <source>Cuts the selected entries, to move them with Paste</source>
        <translation>标记选中的项，粘贴时移动</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>粘贴(&amp;P)</translation>
    </message>
    <message>
        <source>Moves the cut entries here, or uploads the files on the clipboard</source>
        <translation>将剪切的项移到此处，或上传剪贴板中的文件</translation>
    </message>
    <message>
        <source>De&amp;lete</source>
        <translation>删除(&amp;L)</translation>
    </message>
    <message>
        <source>Moves the selected entries into the recycle bin</source>
        <translation>将选中的项放入回收站</translation>
    </message>
    <message>
        <source>Re&amp;store</source>
        <translation>还原(&amp;S)</translation>
    </message>
    <message>
        <source>Restores the selected entries to their folders</source>
        <translation>将选中的项放回原处</translation>
    </message>
    <message>
        <source>&amp;Empty Recycle Bin…</source>
        <translation>清空回收站(&amp;E)…</translation>
    </message>
    <message>
        <source>Permanently deletes everything in the recycle bin</source>
        <translation>永久删除回收站中的全部内容</translation>
    </message>
    <message>
        <source>&amp;Undo</source>
        <translation>撤销(&amp;U)</translation>
    </message>
    <message>
        <source>Undoes the last change</source>
        <translation>撤销最近的修改</translation>
    </message>
    <message>
        <source>Select &amp;All</source>
        <translation>全选(&amp;A)</translation>
    </message>
    <message>
        <source>Selects all entries</source>
        <translation>选中所有项</translation>
    </message>
    <message>
        <source>&amp;Favourite</source>
        <translation>收藏(&amp;F)</translation>
    </message>
    <message>
        <source>Adds the document to the favourites, or removes it</source>
        <translation>添加到收藏，或从收藏中移除</translation>
    </message>
    <message>
        <source>Fre&amp;quently Used</source>
        <translation>常用(&amp;Q)</translation>
    </message>
    <message>
        <source>Adds the document to the frequently used documents, or removes it</source>
        <translation>添加到常用，或从常用中移除</translation>
    </message>
    <message>
        <source>&amp;Versions…</source>
        <translation>版本(&amp;V)…</translation>
    </message>
    <message>
        <source>Shows the versions of the file</source>
        <translation>显示文件的各个版本</translation>
    </message>
    <message>
        <source>S&amp;hare…</source>
        <translation>共享(&amp;H)…</translation>
    </message>
    <message>
        <source>Creates an address for people without an account</source>
        <translation>为没有账户的人生成访问地址</translation>
    </message>
    <message>
        <source>Shares of the Pro&amp;ject…</source>
        <translation>项目的共享(&amp;J)…</translation>
    </message>
    <message>
        <source>Lists and revokes shares</source>
        <translation>列出并撤销共享</translation>
    </message>
    <message>
        <source>&amp;Back</source>
        <translation>后退(&amp;B)</translation>
    </message>
    <message>
        <source>Goes back to the previous place</source>
        <translation>返回上一个位置</translation>
    </message>
    <message>
        <source>&amp;Forward</source>
        <translation>前进(&amp;F)</translation>
    </message>
    <message>
        <source>Goes forward to the next place</source>
        <translation>前往下一个位置</translation>
    </message>
    <message>
        <source>&amp;Up</source>
        <translation>上一级(&amp;U)</translation>
    </message>
    <message>
        <source>Opens the folder above</source>
        <translation>打开上一级文件夹</translation>
    </message>
    <message>
        <source>&amp;Reload</source>
        <translation>刷新(&amp;R)</translation>
    </message>
    <message>
        <source>Loads the list again</source>
        <translation>重新载入列表</translation>
    </message>
    <message>
        <source>Enter &amp;Path</source>
        <translation>输入路径(&amp;P)</translation>
    </message>
    <message>
        <source>Opens a folder by its path</source>
        <translation>按路径打开文件夹</translation>
    </message>
    <message>
        <source>&amp;Search</source>
        <translation>搜索(&amp;S)</translation>
    </message>
    <message>
        <source>Searches for documents</source>
        <translation>搜索文档</translation>
    </message>
    <message>
        <source>&amp;Details</source>
        <translation>详细信息(&amp;D)</translation>
    </message>
    <message>
        <source>Shows the entries as a table</source>
        <translation>以表格显示</translation>
    </message>
    <message>
        <source>&amp;Icons</source>
        <translation>图标(&amp;I)</translation>
    </message>
    <message>
        <source>Shows the entries as icons</source>
        <translation>以图标显示</translation>
    </message>
    <message>
        <source>&amp;Connect…</source>
        <translation>连接(&amp;C)…</translation>
    </message>
    <message>
        <source>Opens another project or another service</source>
        <translation>打开其他项目或其他服务</translation>
    </message>
    <message>
        <source>&amp;Settings…</source>
        <translation>设置(&amp;S)…</translation>
    </message>
    <message>
        <source>Language, colours and behaviour</source>
        <translation>语言、颜色和习惯</translation>
    </message>
    <message>
        <source>&amp;First Steps</source>
        <translation>入门(&amp;F)</translation>
    </message>
    <message>
        <source>Shows the first three steps</source>
        <translation>显示首先要做的三件事</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>退出(&amp;Q)</translation>
    </message>
    <message>
        <source>Quits the program; transfers continue the next time</source>
        <translation>结束程序；传输下次继续</translation>
    </message>
</context>
<context>
    <name>desktop::BatchWatch</name>
    <message numerus="yes">
        <source>%n files uploaded</source>
        <translation>
            <numerusform>已上传 %n 个文件</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n files downloaded</source>
        <translation>
            <numerusform>已下载 %n 个文件</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n skipped</source>
        <translation>
            <numerusform>跳过 %n 个</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n failed</source>
        <translation>
            <numerusform>失败 %n 个</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>desktop::CertificateDialog</name>
    <message>
        <source>Certificate of %1</source>
        <translation>%1 的证书</translation>
    </message>
    <message>
        <source>The authority that has signed the certificate is not known on this computer. Trust it only if the administrator of the service has given you the same fingerprint.</source>
        <translation>本机不认识签发此证书的机构。只有在管理员给您的指纹与此相同时才可信任它。</translation>
    </message>
    <message>
        <source>Issued to</source>
        <translation>颁发给</translation>
    </message>
    <message>
        <source>Issued by</source>
        <translation>颁发者</translation>
    </message>
    <message>
        <source>Valid</source>
        <translation>有效期</translation>
    </message>
    <message>
        <source>%1 to %2</source>
        <translation>%1 至 %2</translation>
    </message>
    <message>
        <source>SHA-256</source>
        <translation>SHA-256</translation>
    </message>
    <message>
        <source>Server</source>
        <translation>服务器</translation>
    </message>
    <message>
        <source>Authority</source>
        <translation>证书颁发机构</translation>
    </message>
    <message>
        <source>I have &amp;compared the fingerprint</source>
        <translation>我已核对指纹(&amp;C)</translation>
    </message>
    <message>
        <source>&amp;Trust This Authority</source>
        <translation>信任此机构(&amp;T)</translation>
    </message>
</context>
<context>
    <name>desktop::Commands</name>
    <message>
        <source>Upload Files</source>
        <translation>上传文件</translation>
    </message>
    <message>
        <source>Upload Folder</source>
        <translation>上传文件夹</translation>
    </message>
    <message>
        <source>Download To</source>
        <translation>下载到</translation>
    </message>
    <message>
        <source>Empty Recycle Bin</source>
        <translation>清空回收站</translation>
    </message>
    <message numerus="yes">
        <source>Permanently delete %n entries of the recycle bin with all their contents?</source>
        <translation>
            <numerusform>要永久删除回收站中的 %n 项及其全部内容吗？</numerusform>
        </translation>
    </message>
    <message>
        <source>&amp;Delete Permanently</source>
        <translation>永久删除(&amp;D)</translation>
    </message>
    <message>
        <source>The number of entries in the recycle bin could not be requested.</source>
        <translation>无法查询回收站的条目数。</translation>
    </message>
</context>
<context>
    <name>desktop::ConflictDialog</name>
    <message>
        <source>Also for &amp;later conflicts of these transfers</source>
        <translation>对这些传输中之后的冲突同样处理(&amp;L)</translation>
    </message>
    <message>
        <source>Names Already Taken</source>
        <translation>名称已被占用</translation>
    </message>
    <message>
        <source>The target already has entries with these names. Other transfers continue meanwhile.</source>
        <translation>目标处已有这些名称的项。其他传输会继续进行。</translation>
    </message>
    <message>
        <source>Names already taken</source>
        <translation>已被占用的名称</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>名称</translation>
    </message>
    <message>
        <source>New</source>
        <translation>新的</translation>
    </message>
    <message>
        <source>Existing</source>
        <translation>已有的</translation>
    </message>
    <message>
        <source>Action</source>
        <translation>处理方式</translation>
    </message>
    <message>
        <source>For all:</source>
        <translation>全部：</translation>
    </message>
    <message>
        <source>&amp;Replace</source>
        <translation>替换(&amp;R)</translation>
    </message>
    <message>
        <source>&amp;Keep Both</source>
        <translation>两者都保留(&amp;K)</translation>
    </message>
    <message>
        <source>&amp;Skip</source>
        <translation>跳过(&amp;S)</translation>
    </message>
    <message>
        <source>Replace If &amp;Newer</source>
        <translation>较新则替换(&amp;N)</translation>
    </message>
    <message>
        <source>Decide &amp;Later</source>
        <translation>以后决定(&amp;L)</translation>
    </message>
    <message>
        <source>Action for %1</source>
        <translation>如何处理 %1</translation>
    </message>
    <message>
        <source>New version</source>
        <translation>新版本</translation>
    </message>
    <message>
        <source>Replace</source>
        <translation>替换</translation>
    </message>
    <message>
        <source>Replace if newer</source>
        <translation>较新则替换</translation>
    </message>
    <message>
        <source>Keep both: %1</source>
        <translation>两者都保留：%1</translation>
    </message>
    <message>
        <source>Skip</source>
        <translation>跳过</translation>
    </message>
</context>
<context>
    <name>desktop::Connector</name>
    <message>
        <source>Another program is using the documents of this computer. Try again when it has finished.</source>
        <translation>另一个程序正在使用本机的文档。请在它结束后重试。</translation>
    </message>
    <message>
        <source>This program was built without a service. Enter the address of a service.</source>
        <translation>此程序没有自带服务。请输入服务的地址。</translation>
    </message>
    <message>
        <source>The service of this computer could not be started.</source>
        <translation>本机的服务无法启动。</translation>
    </message>
</context>
<context>
    <name>desktop::DocumentChanges</name>
    <message>
        <source>The folder could not be created.</source>
        <translation>无法新建文件夹。</translation>
    </message>
    <message>
        <source>New folder</source>
        <translation>新建文件夹</translation>
    </message>
    <message>
        <source>“%1” has been created.</source>
        <translation>已新建“%1”。</translation>
    </message>
    <message>
        <source>Rename “%1”</source>
        <translation>重命名“%1”</translation>
    </message>
    <message>
        <source>“%1” has its old name again.</source>
        <translation>“%1”已恢复原名。</translation>
    </message>
    <message>
        <source>“%1” could not be renamed.</source>
        <translation>无法重命名“%1”。</translation>
    </message>
    <message>
        <source>“%1” is now “%2”.</source>
        <translation>“%1”已改名为“%2”。</translation>
    </message>
    <message>
        <source>“%1”</source>
        <translation>“%1”</translation>
    </message>
    <message numerus="yes">
        <source>%1 and %n other(s)</source>
        <translation>
            <numerusform>%1 和其他 %n 项</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Move %n entries</source>
        <translation>
            <numerusform>移动 %n 项</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n entries have been moved.</source>
        <translation>
            <numerusform>已移动 %n 项。</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 could not be moved.</source>
        <translation>无法移动%1。</translation>
    </message>
    <message numerus="yes">
        <source>%n entries have been moved back.</source>
        <translation>
            <numerusform>%n 项已回到原处。</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 could not be moved back.</source>
        <translation>无法将%1移回。</translation>
    </message>
    <message numerus="yes">
        <source>Delete %n entries</source>
        <translation>
            <numerusform>删除 %n 项</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n entries have been moved into the recycle bin.</source>
        <translation>
            <numerusform>%n 项已放入回收站。</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 could not be deleted.</source>
        <translation>无法删除%1。</translation>
    </message>
    <message numerus="yes">
        <source>%n entries have been restored.</source>
        <translation>
            <numerusform>已还原 %n 项。</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n of them are in a folder with another entry of the same name.</source>
        <translation>
            <numerusform>其中 %n 项与同名的项并存。</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 could not be restored.</source>
        <translation>无法还原%1。</translation>
    </message>
    <message>
        <source>The recycle bin is empty.</source>
        <translation>回收站已清空。</translation>
    </message>
    <message>
        <source>The recycle bin could not be emptied.</source>
        <translation>无法清空回收站。</translation>
    </message>
    <message>
        <source>“%1” is a favourite.</source>
        <translation>“%1”已收藏。</translation>
    </message>
    <message>
        <source>“%1” is no longer a favourite.</source>
        <translation>“%1”已取消收藏。</translation>
    </message>
    <message>
        <source>“%1” could not be marked.</source>
        <translation>无法标记“%1”。</translation>
    </message>
    <message>
        <source>“%1” is marked as frequently used.</source>
        <translation>“%1”已添加到常用。</translation>
    </message>
    <message>
        <source>“%1” is no longer marked as frequently used.</source>
        <translation>“%1”已从常用中移除。</translation>
    </message>
    <message>
        <source>The remark of “%1” has been saved.</source>
        <translation>“%1”的备注已保存。</translation>
    </message>
    <message>
        <source>The remark of “%1” could not be saved.</source>
        <translation>无法保存“%1”的备注。</translation>
    </message>
</context>
<context>
    <name>desktop::DocumentPane</name>
    <message>
        <source>Entries</source>
        <translation>条目</translation>
    </message>
    <message>
        <source>The list may be out of date. %1</source>
        <translation>列表可能已过时。%1</translation>
    </message>
    <message>
        <source>&amp;Try Again</source>
        <translation>重试(&amp;T)</translation>
    </message>
    <message>
        <source>The list could not be loaded</source>
        <translation>无法取得列表</translation>
    </message>
    <message>
        <source>No project is open</source>
        <translation>没有打开的项目</translation>
    </message>
    <message>
        <source>Connect to a service to see its documents.</source>
        <translation>请连接到服务以查看其文档。</translation>
    </message>
    <message>
        <source>This folder is empty</source>
        <translation>此文件夹为空</translation>
    </message>
    <message>
        <source>Drop files here or upload them.</source>
        <translation>将文件拖放到此处，或上传文件。</translation>
    </message>
    <message>
        <source>There are no favourites</source>
        <translation>没有收藏</translation>
    </message>
    <message>
        <source>Mark a document as a favourite with Ctrl+B.</source>
        <translation>按 Ctrl+B 收藏文档。</translation>
    </message>
    <message>
        <source>Nothing is marked as frequently used</source>
        <translation>没有标记为常用的项</translation>
    </message>
    <message>
        <source>Mark a document by its context menu.</source>
        <translation>可在文档的右键菜单中标记。</translation>
    </message>
    <message>
        <source>There are no recent files</source>
        <translation>没有最近的文件</translation>
    </message>
    <message>
        <source>Files that you change or open are listed here.</source>
        <translation>您修改或打开的文件会列在这里。</translation>
    </message>
    <message>
        <source>The recycle bin is empty</source>
        <translation>回收站为空</translation>
    </message>
    <message>
        <source>Deleted documents can be restored from here.</source>
        <translation>可以从这里还原您删除的内容。</translation>
    </message>
    <message>
        <source>Nothing was found</source>
        <translation>没有找到</translation>
    </message>
    <message>
        <source>Try fewer letters, or another folder or time.</source>
        <translation>请减少文字，或更换位置或时间。</translation>
    </message>
    <message>
        <source>This folder has been deleted</source>
        <translation>此文件夹已被删除</translation>
    </message>
    <message>
        <source>It can be restored from the recycle bin.</source>
        <translation>可以从回收站恢复。</translation>
    </message>
</context>
<context>
    <name>desktop::DragFetch</name>
    <message numerus="yes">
        <source>Downloading %n entries for the other program…</source>
        <translation>
            <numerusform>正在为另一个程序获取 %n 个条目…</numerusform>
        </translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
</context>
<context>
    <name>desktop::EditDesk</name>
    <message>
        <source>“%1” has been stored.</source>
        <translation>“%1”已保存。</translation>
    </message>
    <message>
        <source>You have changed “%1” on this computer.</source>
        <translation>您在本机修改了“%1”。</translation>
    </message>
    <message numerus="yes">
        <source>You have changed %n opened files on this computer.</source>
        <translation>
            <numerusform>您在本机修改了 %n 个打开的文件。</numerusform>
        </translation>
    </message>
    <message>
        <source>&amp;Make New Version</source>
        <translation>生成新版本(&amp;M)</translation>
    </message>
</context>
<context>
    <name>desktop::EditedFiles</name>
    <message>
        <source>The list of opened files cannot be written. Changes of opened files are only detected while the program is running.</source>
        <translation>无法写入已打开文件的列表。只有在程序运行期间才能发现对已打开文件的修改。</translation>
    </message>
    <message>
        <source>“%1” could not be opened.</source>
        <translation>无法打开“%1”。</translation>
    </message>
    <message>
        <source>There is no program for “%1” on this computer.</source>
        <translation>本机没有可打开“%1”的程序。</translation>
    </message>
    <message>
        <source>The changes of “%1” could not be stored.</source>
        <translation>无法保存对“%1”的修改。</translation>
    </message>
</context>
<context>
    <name>desktop::ErrorAdvice</name>
    <message>
        <source>Check the address.</source>
        <translation>请检查地址。</translation>
    </message>
    <message>
        <source>Check the address, and that the service is running.</source>
        <translation>请检查地址以及服务是否正在运行。</translation>
    </message>
    <message>
        <source>Its certificate is signed by an unknown authority. If it is the authority of your organization, trust it.</source>
        <translation>它的证书由本机不认识的机构签发。如果那是贵公司的机构，请信任它。</translation>
    </message>
    <message>
        <source>Its certificate has expired or is not valid yet: the administrator must renew it. Check the date of this computer, too.</source>
        <translation>它的证书已过期或尚未生效，需要管理员更新。也请检查本机的日期。</translation>
    </message>
    <message>
        <source>Its certificate is for another name. Use that name in the address.</source>
        <translation>它的证书是为另一个名称签发的。请在地址中使用那个名称。</translation>
    </message>
    <message>
        <source>It requires a client certificate, which this program does not support.</source>
        <translation>它要求客户端证书，而此程序不支持。</translation>
    </message>
    <message>
        <source>Check whether the address begins with http or https, and the port.</source>
        <translation>请检查地址以 http 还是 https 开头，以及端口。</translation>
    </message>
    <message>
        <source>Check the proxy. &quot;none&quot; connects directly.</source>
        <translation>请检查代理。填写“none”表示直接连接。</translation>
    </message>
    <message>
        <source>Enter the access token that you have received from the administrator.</source>
        <translation>请输入管理员给您的访问令牌。</translation>
    </message>
</context>
<context>
    <name>desktop::FirstSteps</name>
    <message>
        <source>First steps</source>
        <translation>入门</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>关闭(&amp;C)</translation>
    </message>
    <message>
        <source>Connect to the service of your project, or use the documents of this computer.</source>
        <translation>连接到您项目的服务，或继续使用本机的文档。</translation>
    </message>
    <message>
        <source>Upload files and folders, or drop them onto the list.</source>
        <translation>上传文件和文件夹，或将它们拖放到列表中。</translation>
    </message>
    <message>
        <source>Open a document with a double click. When you save it in its program, you can store it as a new version.</source>
        <translation>双击打开文档。在相应程序中保存后，可以将其存为新版本。</translation>
    </message>
</context>
<context>
    <name>desktop::InformationPanel</name>
    <message>
        <source>download</source>
        <translation>下载</translation>
    </message>
    <message>
        <source>upload</source>
        <translation>上传</translation>
    </message>
    <message>
        <source>change</source>
        <translation>修改</translation>
    </message>
    <message>
        <source>delete</source>
        <translation>删除</translation>
    </message>
    <message>
        <source>none</source>
        <translation>无</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>种类</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>大小</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>文件夹</translation>
    </message>
    <message>
        <source>Changed</source>
        <translation>修改时间</translation>
    </message>
    <message>
        <source>Created</source>
        <translation>创建时间</translation>
    </message>
    <message>
        <source>You may</source>
        <translation>您可以</translation>
    </message>
    <message>
        <source>Links</source>
        <translation>关联</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>密码</translation>
    </message>
    <message>
        <source>R&amp;emark</source>
        <translation>备注(&amp;E)</translation>
    </message>
    <message>
        <source>Save Remar&amp;k</source>
        <translation>保存备注(&amp;K)</translation>
    </message>
    <message>
        <source>&amp;Versions…</source>
        <translation>版本(&amp;V)…</translation>
    </message>
    <message>
        <source>Select a document to see its details.</source>
        <translation>选择一个文档以查看其信息。</translation>
    </message>
    <message numerus="yes">
        <source>%n entries are selected.</source>
        <translation>
            <numerusform>已选中 %n 项。</numerusform>
        </translation>
    </message>
    <message>
        <source>&amp;Show</source>
        <translation>显示(&amp;S)</translation>
    </message>
    <message>
        <source>%1, by %2</source>
        <translation>%1，%2</translation>
    </message>
    <message numerus="yes">
        <source>%n links</source>
        <translation>
            <numerusform>%n 个关联</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>desktop::Location</name>
    <message>
        <source>Favourites</source>
        <translation>收藏</translation>
    </message>
    <message>
        <source>Frequently Used</source>
        <translation>常用</translation>
    </message>
    <message>
        <source>Recent</source>
        <translation>最近</translation>
    </message>
    <message>
        <source>Recycle Bin</source>
        <translation>回收站</translation>
    </message>
    <message>
        <source>Search Results</source>
        <translation>搜索结果</translation>
    </message>
</context>
<context>
    <name>desktop::MainWindow</name>
    <message>
        <source>The folders could not be loaded.</source>
        <translation>无法取得文件夹。</translation>
    </message>
    <message>
        <source>Transfers will be lost when the program ends.</source>
        <translation>程序结束后不会保留传输。</translation>
    </message>
    <message>
        <source>&amp;Undo</source>
        <translation>撤销(&amp;U)</translation>
    </message>
    <message>
        <source>&amp;Undo: %1</source>
        <translation>撤销(&amp;U)：%1</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>撤销</translation>
    </message>
    <message>
        <source>Loading…</source>
        <translation>正在取得…</translation>
    </message>
    <message numerus="yes">
        <source>%n entries</source>
        <translation>
            <numerusform>%n 项</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n selected</source>
        <translation>
            <numerusform>选中 %n 项</numerusform>
        </translation>
    </message>
    <message>
        <source>Documents</source>
        <translation>文档</translation>
    </message>
    <message>
        <source>%1 % – Documents</source>
        <translation>%1 % – 文档</translation>
    </message>
    <message>
        <source>The service cannot be reached. The lists may be out of date; transfers continue when it can be reached again.</source>
        <translation>无法连接服务。您看到的内容可能已过时；连接恢复后传输会继续。</translation>
    </message>
    <message>
        <source>&amp;Try Now</source>
        <translation>立即重试(&amp;T)</translation>
    </message>
    <message>
        <source>Opening “%1”…</source>
        <translation>正在打开“%1”…</translation>
    </message>
    <message>
        <source>&amp;Open</source>
        <translation>打开(&amp;O)</translation>
    </message>
    <message>
        <source>&amp;New Folder</source>
        <translation>新建文件夹(&amp;N)</translation>
    </message>
    <message>
        <source>De&amp;lete</source>
        <translation>删除(&amp;L)</translation>
    </message>
    <message>
        <source>Save Search</source>
        <translation>保存搜索</translation>
    </message>
    <message>
        <source>Name of the search:</source>
        <translation>搜索名称：</translation>
    </message>
    <message>
        <source>&amp;Rename</source>
        <translation>重命名(&amp;R)</translation>
    </message>
</context>
<context>
    <name>desktop::Menus</name>
    <message>
        <source>&amp;File</source>
        <translation>文件(&amp;F)</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>编辑(&amp;E)</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>视图(&amp;V)</translation>
    </message>
    <message>
        <source>&amp;Go</source>
        <translation>转到(&amp;G)</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>帮助(&amp;H)</translation>
    </message>
    <message>
        <source>Navigation</source>
        <translation>导航</translation>
    </message>
    <message>
        <source>Commands</source>
        <translation>命令</translation>
    </message>
</context>
<context>
    <name>desktop::MessageBar</name>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
    <message>
        <source>Close this message</source>
        <translation>关闭此消息</translation>
    </message>
</context>
<context>
    <name>desktop::Panels</name>
    <message>
        <source>Transfers</source>
        <translation>传输</translation>
    </message>
    <message>
        <source>Information</source>
        <translation>信息</translation>
    </message>
    <message>
        <source>%1. See the list of transfers for the reasons.</source>
        <translation>%1。原因见传输列表。</translation>
    </message>
    <message>
        <source>Transfers have ended</source>
        <translation>传输已结束</translation>
    </message>
</context>
<context>
    <name>desktop::PathBar</name>
    <message>
        <source>Path</source>
        <translation>路径</translation>
    </message>
    <message>
        <source>Open folder %1</source>
        <translation>打开文件夹 %1</translation>
    </message>
    <message>
        <source>There is no “%1”.</source>
        <translation>没有“%1”。</translation>
    </message>
    <message>
        <source>“%1” is not a folder.</source>
        <translation>“%1”不是文件夹。</translation>
    </message>
</context>
<context>
    <name>desktop::PlacesPanel</name>
    <message>
        <source>Places</source>
        <translation>位置</translation>
    </message>
    <message>
        <source>All Documents</source>
        <translation>所有文档</translation>
    </message>
    <message>
        <source>Folders</source>
        <translation>文件夹</translation>
    </message>
    <message>
        <source>&amp;Remove from Places</source>
        <translation>从位置中移除(&amp;R)</translation>
    </message>
</context>
<context>
    <name>desktop::Preview</name>
    <message>
        <source>Picture of %1</source>
        <translation>%1 的图片</translation>
    </message>
</context>
<context>
    <name>desktop::ProgressDelegate</name>
    <message>
        <source>%1 %</source>
        <translation>%1 %</translation>
    </message>
</context>
<context>
    <name>desktop::SavedConnection</name>
    <message>
        <source>This computer</source>
        <translation>本机</translation>
    </message>
</context>
<context>
    <name>desktop::SearchBar</name>
    <message>
        <source>Search</source>
        <translation>搜索</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>种类</translation>
    </message>
    <message>
        <source>All types</source>
        <translation>所有种类</translation>
    </message>
    <message>
        <source>Folders</source>
        <translation>文件夹</translation>
    </message>
    <message>
        <source>Pictures</source>
        <translation>图片</translation>
    </message>
    <message>
        <source>Office documents</source>
        <translation>办公文档</translation>
    </message>
    <message>
        <source>Drawings</source>
        <translation>图纸</translation>
    </message>
    <message>
        <source>Video and sound</source>
        <translation>视频和音频</translation>
    </message>
    <message>
        <source>Archives</source>
        <translation>压缩包</translation>
    </message>
    <message>
        <source>Time of the last change</source>
        <translation>修改时间</translation>
    </message>
    <message>
        <source>Any time</source>
        <translation>任何时间</translation>
    </message>
    <message>
        <source>Today</source>
        <translation>今天</translation>
    </message>
    <message>
        <source>Last 7 days</source>
        <translation>最近 7 天</translation>
    </message>
    <message>
        <source>Last 30 days</source>
        <translation>最近 30 天</translation>
    </message>
    <message>
        <source>Last 12 months</source>
        <translation>最近 12 个月</translation>
    </message>
    <message>
        <source>Changed by</source>
        <translation>修改者</translation>
    </message>
    <message>
        <source>Only &amp;in this folder</source>
        <translation>仅此文件夹(&amp;I)</translation>
    </message>
    <message>
        <source>Anybody</source>
        <translation>任何人</translation>
    </message>
    <message>
        <source>Me</source>
        <translation>我</translation>
    </message>
    <message>
        <source>Save Search…</source>
        <translation>保存搜索…</translation>
    </message>
</context>
<context>
    <name>desktop::SettingsDialog</name>
    <message>
        <source>Store changed files as a new &amp;version without asking</source>
        <translation>不询问即为打开的文件生成新版本(&amp;V)</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>设置</translation>
    </message>
    <message>
        <source>Language of the system</source>
        <translation>系统语言</translation>
    </message>
    <message>
        <source>&amp;Language</source>
        <translation>语言(&amp;L)</translation>
    </message>
    <message>
        <source>Colours of the system</source>
        <translation>系统颜色</translation>
    </message>
    <message>
        <source>Light</source>
        <translation>浅色</translation>
    </message>
    <message>
        <source>Dark</source>
        <translation>深色</translation>
    </message>
    <message>
        <source>&amp;Colours</source>
        <translation>颜色(&amp;C)</translation>
    </message>
</context>
<context>
    <name>desktop::ShareDialog</name>
    <message>
        <source>&amp;Expires on</source>
        <translation>截止于(&amp;E)</translation>
    </message>
    <message>
        <source>Allow &amp;downloads, not only viewing</source>
        <translation>允许下载，而不仅是查看(&amp;D)</translation>
    </message>
    <message>
        <source>Share</source>
        <translation>共享</translation>
    </message>
    <message>
        <source>“%1”</source>
        <translation>“%1”</translation>
    </message>
    <message numerus="yes">
        <source>%n documents</source>
        <translation>
            <numerusform>%n 个文档</numerusform>
        </translation>
    </message>
    <message>
        <source>Shared</source>
        <translation>共享内容</translation>
    </message>
    <message>
        <source>Last day on which the share is valid</source>
        <translation>共享的最后一天</translation>
    </message>
    <message>
        <source>Not created yet</source>
        <translation>尚未生成</translation>
    </message>
    <message>
        <source>&amp;Address</source>
        <translation>地址(&amp;A)</translation>
    </message>
    <message>
        <source>C&amp;reate Address</source>
        <translation>生成地址(&amp;M)</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>复制(&amp;C)</translation>
    </message>
    <message>
        <source>The address is shown only once. Everybody who has it can see the documents.</source>
        <translation>地址只显示这一次。持有地址的人可以看到这些文档。</translation>
    </message>
    <message>
        <source>The share could not be created.</source>
        <translation>无法生成共享。</translation>
    </message>
    <message>
        <source>The address has been copied to the clipboard.</source>
        <translation>地址已复制到剪贴板。</translation>
    </message>
</context>
<context>
    <name>desktop::SharesDialog</name>
    <message>
        <source>Shares of the Project</source>
        <translation>项目的共享</translation>
    </message>
    <message>
        <source>Shares</source>
        <translation>共享</translation>
    </message>
    <message>
        <source>Documents</source>
        <translation>文档</translation>
    </message>
    <message>
        <source>Created</source>
        <translation>创建时间</translation>
    </message>
    <message>
        <source>By</source>
        <translation>操作者</translation>
    </message>
    <message>
        <source>Expires</source>
        <translation>截止</translation>
    </message>
    <message>
        <source>Download</source>
        <translation>下载</translation>
    </message>
    <message>
        <source>&amp;Revoke</source>
        <translation>撤销共享(&amp;R)</translation>
    </message>
    <message>
        <source>Loading…</source>
        <translation>正在取得…</translation>
    </message>
    <message>
        <source>There are no shares.</source>
        <translation>没有共享任何内容。</translation>
    </message>
    <message>
        <source>The shares could not be loaded.</source>
        <translation>无法取得共享列表。</translation>
    </message>
    <message>
        <source>Never</source>
        <translation>永不</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>是</translation>
    </message>
    <message>
        <source>No</source>
        <translation>否</translation>
    </message>
    <message>
        <source>The share could not be revoked.</source>
        <translation>无法撤销共享。</translation>
    </message>
</context>
<context>
    <name>desktop::SignInDialog</name>
    <message>
        <source>Connect</source>
        <translation>连接</translation>
    </message>
    <message>
        <source>&amp;Forget</source>
        <translation>忘记(&amp;F)</translation>
    </message>
    <message>
        <source>Removes the connection and its token from this computer</source>
        <translation>从本机删除此连接及其令牌</translation>
    </message>
    <message>
        <source>C&amp;onnection</source>
        <translation>连接(&amp;O)</translation>
    </message>
    <message>
        <source>&amp;Address</source>
        <translation>地址(&amp;A)</translation>
    </message>
    <message>
        <source>Empty for a service without users</source>
        <translation>没有用户的服务可留空</translation>
    </message>
    <message>
        <source>Access &amp;token</source>
        <translation>访问令牌(&amp;T)</translation>
    </message>
    <message>
        <source>The proxy of the system</source>
        <translation>系统的代理</translation>
    </message>
    <message>
        <source>Pro&amp;xy</source>
        <translation>代理(&amp;X)</translation>
    </message>
    <message>
        <source>&amp;Project</source>
        <translation>项目(&amp;P)</translation>
    </message>
    <message>
        <source>&amp;Remember this connection on this computer</source>
        <translation>在本机记住此连接(&amp;R)</translation>
    </message>
    <message>
        <source>&amp;Show Certificate…</source>
        <translation>显示证书(&amp;S)…</translation>
    </message>
    <message>
        <source>Co&amp;nnect</source>
        <translation>连接(&amp;N)</translation>
    </message>
    <message>
        <source>Only the authorities of the system</source>
        <translation>仅系统信任的机构</translation>
    </message>
    <message>
        <source>&amp;Browse…</source>
        <translation>浏览(&amp;B)…</translation>
    </message>
    <message>
        <source>Additional aut&amp;hority</source>
        <translation>其他证书机构(&amp;H)</translation>
    </message>
    <message>
        <source>Certificate of the Authority</source>
        <translation>机构的证书</translation>
    </message>
    <message>
        <source>Certificates (*.pem *.crt *.cer);;All files (*)</source>
        <translation>证书 (*.pem *.crt *.cer);;所有文件 (*)</translation>
    </message>
    <message>
        <source>New connection</source>
        <translation>新连接</translation>
    </message>
    <message>
        <source>The file with the connections cannot be written.</source>
        <translation>无法写入连接文件。</translation>
    </message>
    <message>
        <source>You are connected, but the connection cannot be saved: the file with the connections cannot be written. Clear the check box to continue without saving.</source>
        <translation>已连接，但无法保存此连接：无法写入连接文件。取消勾选即可继续而不保存。</translation>
    </message>
    <message>
        <source>The server no longer sends its certificate.</source>
        <translation>服务器不再出示证书。</translation>
    </message>
    <message>
        <source>The certificate cannot be saved on this computer.</source>
        <translation>无法在本机保存证书。</translation>
    </message>
    <message>
        <source>Connecting…</source>
        <translation>正在连接…</translation>
    </message>
    <message>
        <source>&amp;Open Project</source>
        <translation>打开项目(&amp;O)</translation>
    </message>
</context>
<context>
    <name>desktop::StartOptions</name>
    <message>
        <source>The documents of a project, on this computer or on a service.</source>
        <translation>项目文档，位于本机和各服务上。</translation>
    </message>
    <message>
        <source>The address of the service. The token is taken from the variable VELLDOC_TOKEN.</source>
        <translation>服务的地址。令牌取自变量 VELLDOC_TOKEN。</translation>
    </message>
    <message>
        <source>The project to open there.</source>
        <translation>要打开的项目。</translation>
    </message>
    <message>
        <source>Store all data of the program in this folder.</source>
        <translation>将程序的所有文件保存在此文件夹中。</translation>
    </message>
    <message>
        <source>Ask for an address instead of starting a service on this computer.</source>
        <translation>询问地址，而不启动服务。</translation>
    </message>
</context>
<context>
    <name>desktop::TransferModel</name>
    <message>
        <source>Trying again. %1</source>
        <translation>正在重试。%1</translation>
    </message>
    <message>
        <source>Waiting</source>
        <translation>等待中</translation>
    </message>
    <message>
        <source>Reading</source>
        <translation>读取中</translation>
    </message>
    <message>
        <source>Sending</source>
        <translation>发送中</translation>
    </message>
    <message>
        <source>Receiving</source>
        <translation>接收中</translation>
    </message>
    <message>
        <source>Saving</source>
        <translation>保存中</translation>
    </message>
    <message>
        <source>Waiting for your answer</source>
        <translation>需要您决定</translation>
    </message>
    <message>
        <source>Paused</source>
        <translation>已暂停</translation>
    </message>
    <message>
        <source>Skipped</source>
        <translation>已跳过</translation>
    </message>
    <message>
        <source>Uploaded</source>
        <translation>已上传</translation>
    </message>
    <message>
        <source>Downloaded</source>
        <translation>已下载</translation>
    </message>
    <message>
        <source>Failed. %1</source>
        <translation>失败。%1</translation>
    </message>
    <message>
        <source>Cancelled</source>
        <translation>已取消</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>名称</translation>
    </message>
    <message>
        <source>State</source>
        <translation>状态</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>进度</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>大小</translation>
    </message>
    <message>
        <source>Local path</source>
        <translation>本机位置</translation>
    </message>
</context>
<context>
    <name>desktop::TransferPanel</name>
    <message numerus="yes">
        <source>%n seconds left</source>
        <translation>
            <numerusform>剩余 %n 秒</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n minutes left</source>
        <translation>
            <numerusform>剩余 %n 分钟</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n hours left</source>
        <translation>
            <numerusform>剩余 %n 小时</numerusform>
        </translation>
    </message>
    <message>
        <source>Progress of all transfers</source>
        <translation>全部传输的进度</translation>
    </message>
    <message>
        <source>Transfers</source>
        <translation>传输</translation>
    </message>
    <message>
        <source>&amp;Answer…</source>
        <translation>决定(&amp;A)…</translation>
    </message>
    <message>
        <source>&amp;Pause</source>
        <translation>暂停(&amp;P)</translation>
    </message>
    <message>
        <source>&amp;Resume</source>
        <translation>继续(&amp;R)</translation>
    </message>
    <message>
        <source>&amp;Try Again</source>
        <translation>重试(&amp;T)</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>取消(&amp;C)</translation>
    </message>
    <message>
        <source>C&amp;lear Finished</source>
        <translation>清除已结束的(&amp;L)</translation>
    </message>
    <message numerus="yes">
        <source>%n transfers</source>
        <translation>
            <numerusform>%n 个传输</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 / %2</translation>
    </message>
    <message>
        <source>%1/s</source>
        <translation>%1/秒</translation>
    </message>
    <message numerus="yes">
        <source>%n need your answer</source>
        <translation>
            <numerusform>%n 个需要您决定</numerusform>
        </translation>
    </message>
    <message>
        <source>Pause the selected transfers</source>
        <translation>暂停选中的传输</translation>
    </message>
    <message>
        <source>Pause all</source>
        <translation>全部暂停</translation>
    </message>
    <message>
        <source>Resume the selected transfers</source>
        <translation>继续选中的传输</translation>
    </message>
    <message>
        <source>Resume all</source>
        <translation>全部继续</translation>
    </message>
    <message>
        <source>Cancel the selected transfers</source>
        <translation>取消选中的传输</translation>
    </message>
    <message>
        <source>Cancel all</source>
        <translation>全部取消</translation>
    </message>
    <message>
        <source>Try the selected transfers again</source>
        <translation>重试选中的传输</translation>
    </message>
    <message>
        <source>Try all failed transfers again</source>
        <translation>重试所有失败的传输</translation>
    </message>
    <message>
        <source>There are no transfers.</source>
        <translation>没有传输。</translation>
    </message>
</context>
<context>
    <name>desktop::VersionConflictDialog</name>
    <message>
        <source>Changed by</source>
        <translation>修改者</translation>
    </message>
    <message>
        <source>Changed</source>
        <translation>修改时间</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>大小</translation>
    </message>
    <message>
        <source>Conflicting Changes</source>
        <translation>修改冲突</translation>
    </message>
    <message>
        <source>Another user has changed “%1” while you were working on it. Nothing has been replaced.</source>
        <translation>在您编辑“%1”期间，其他人修改了它。没有替换任何内容。</translation>
    </message>
    <message>
        <source>Another user has deleted “%1” while you were working on it.</source>
        <translation>在您编辑“%1”期间，其他人删除了它。</translation>
    </message>
    <message>
        <source>Your version on this computer</source>
        <translation>您的，位于本机</translation>
    </message>
    <message>
        <source>You</source>
        <translation>您</translation>
    </message>
    <message>
        <source>Version on the service</source>
        <translation>位于服务</translation>
    </message>
    <message>
        <source>&amp;Keep both: store my version as another document</source>
        <translation>两者都保留：将我的存为另一个文档(&amp;K)</translation>
    </message>
    <message>
        <source>Store my version as the &amp;newest one; the other one stays in the history</source>
        <translation>将我的存为最新版本，另一个保留为旧版本(&amp;N)</translation>
    </message>
    <message>
        <source>&amp;Discard my version and download the other one</source>
        <translation>放弃我的，取得另一个(&amp;D)</translation>
    </message>
    <message>
        <source>Decide &amp;later</source>
        <translation>以后决定(&amp;L)</translation>
    </message>
</context>
<context>
    <name>desktop::VersionsDialog</name>
    <message>
        <source>Versions of “%1”</source>
        <translation>“%1”的版本</translation>
    </message>
    <message>
        <source>Versions</source>
        <translation>版本</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>版本</translation>
    </message>
    <message>
        <source>Stored</source>
        <translation>保存时间</translation>
    </message>
    <message>
        <source>By</source>
        <translation>操作者</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>大小</translation>
    </message>
    <message>
        <source>Remark</source>
        <translation>备注</translation>
    </message>
    <message>
        <source>&amp;Download…</source>
        <translation>取得(&amp;F)…</translation>
    </message>
    <message>
        <source>&amp;Make Current Again</source>
        <translation>恢复为当前版本(&amp;M)</translation>
    </message>
    <message>
        <source>&amp;Remark…</source>
        <translation>备注(&amp;R)…</translation>
    </message>
    <message>
        <source>Loading…</source>
        <translation>正在取得…</translation>
    </message>
    <message>
        <source>The versions could not be loaded.</source>
        <translation>无法取得版本列表。</translation>
    </message>
    <message>
        <source>%1 (current)</source>
        <translation>%1（当前）</translation>
    </message>
    <message>
        <source>You may not change “%1”.</source>
        <translation>您无权修改“%1”。</translation>
    </message>
    <message>
        <source>Download Version</source>
        <translation>取得版本</translation>
    </message>
    <message>
        <source>It has been saved as %1.</source>
        <translation>已保存到 %1。</translation>
    </message>
    <message>
        <source>The version could not be downloaded.</source>
        <translation>无法取得该版本。</translation>
    </message>
    <message>
        <source>The version could not be made current.</source>
        <translation>无法将该版本恢复为当前版本。</translation>
    </message>
    <message>
        <source>Remark on this version:</source>
        <translation>此版本的备注：</translation>
    </message>
    <message>
        <source>The remark could not be saved.</source>
        <translation>无法保存备注。</translation>
    </message>
</context>
</TS>
