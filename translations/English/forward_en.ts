<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="zh_CN">
<context>
    <name>Plant</name>
    <message>
        <source> %1 之一</source>
        <translation> one of %1</translation>
    </message>
    <message>
        <source> %1 至 %2 的整数</source>
        <translation> a whole number from %1 to %2</translation>
    </message>
    <message>
        <source>%1，有效期至 %2</source>
        <translation>%1, valid until %2</translation>
    </message>
    <message>
        <source>%1：%2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>metrics[%1]（%2）：值与数据类型 %3 不符</source>
        <translation>metrics[%1] (%2): the value does not go with its data type %3</translation>
    </message>
    <message>
        <source>不接受 %1 的证书：%2；请检查证书和本机时钟</source>
        <translation>The certificate of %1 is not accepted: %2; check the certificate and this machine’s clock</translation>
    </message>
    <message>
        <source>不是 JSON（第 %1 字节：%2）</source>
        <translation>not JSON (byte %1: %2)</translation>
    </message>
    <message>
        <source>不是 Sparkplug B 报文（%1 字节），请检查发送方的版本</source>
        <translation>not a Sparkplug B payload (%1 bytes); check the sender’s version</translation>
    </message>
    <message>
        <source>与 %1 的 TLS 握手失败；请检查端口和客户端证书</source>
        <translation>TLS with %1 failed; check the port and the client certificate</translation>
    </message>
    <message>
        <source>代理服务器拒绝登录，请检查用户名、密码文件和证书</source>
        <translation>The broker refuses the log-in; check user, password file and certificate</translation>
    </message>
    <message>
        <source>代理服务器拒绝连接：%1</source>
        <translation>The broker refuses the connection: %1</translation>
    </message>
    <message>
        <source>代理服务器断开了连接（%1），将自动重连</source>
        <translation>The broker ended the connection (%1); it is tried again</translation>
    </message>
    <message>
        <source>另一台设备以相同的身份连接了代理服务器：请检查是否复制了工作目录</source>
        <translation>Another client has this one’s identity at the broker; was a home copied?</translation>
    </message>
    <message>
        <source>名称不能为空</source>
        <translation>a name must not be empty</translation>
    </message>
    <message>
        <source>名称不能含有 / + # 或控制字符</source>
        <translation>a name has none of / + # and no control characters</translation>
    </message>
    <message>
        <source>名称最多 %1 个字符</source>
        <translation>a name has %1 characters at most</translation>
    </message>
    <message>
        <source>名称首尾不能有空格</source>
        <translation>a name has no space at either end</translation>
    </message>
    <message>
        <source>客户端标识无效</source>
        <translation>The client’s identity cannot be used</translation>
    </message>
    <message>
        <source>客户端证书 %1 已过期（%2）；请换新证书，或校正本机时钟</source>
        <translation>The client certificate %1 has expired (%2); renew it, or set this machine’s clock right</translation>
    </message>
    <message>
        <source>对象</source>
        <translation> an object</translation>
    </message>
    <message>
        <source>小写、无括号的 UUID</source>
        <translation> a UUID in lower case without braces</translation>
    </message>
    <message>
        <source>应为 JSON 对象</source>
        <translation>should be a JSON object</translation>
    </message>
    <message>
        <source>应为%1，实为 %2</source>
        <translation>should be%1, is %2</translation>
    </message>
    <message>
        <source>数字</source>
        <translation> a number</translation>
    </message>
    <message>
        <source>无法与代理服务器 %1 通信（%2），将自动重连</source>
        <translation>No connection to the broker %1 (%2); it is tried again</translation>
    </message>
    <message>
        <source>无法使用 CA 证书文件 %1：%2</source>
        <translation>The CA certificates %1 cannot be used: %2</translation>
    </message>
    <message>
        <source>无法使用客户端证书文件 %1：%2</source>
        <translation>The client certificate %1 cannot be used: %2</translation>
    </message>
    <message>
        <source>无法使用私钥文件 %1，它须为无口令的 PEM 并与证书相符：%2</source>
        <translation>The key %1 cannot be used; it has to be PEM without a passphrase, and the certificate’s: %2</translation>
    </message>
    <message>
        <source>无法读取登录文件 %1，请检查路径和权限</source>
        <translation>The log-in file %1 cannot be read; check path and rights</translation>
    </message>
    <message>
        <source>时间 %1</source>
        <translation> a time such as %1</translation>
    </message>
    <message>
        <source>最多 %1 个字符的文本</source>
        <translation> a text of at most %1 characters</translation>
    </message>
    <message>
        <source>最多 %1 项的数组</source>
        <translation> an array of at most %1</translation>
    </message>
    <message>
        <source>版本 %1 比本程序所知的 %2 新，请升级本程序</source>
        <translation>version %1 is newer than %2, which this program knows; update it</translation>
    </message>
    <message>
        <source>登录文件 %1 能被他人读取，请只给本程序的用户读权限（chmod 600）</source>
        <translation>Others can read the log-in file %1; give rights to this program’s user alone (chmod 600)</translation>
    </message>
    <message>
        <source>登录文件 %1 须有两行：用户名和密码</source>
        <translation>The log-in file %1 needs two lines: user and password</translation>
    </message>
    <message>
        <source>缺失</source>
        <translation>missing</translation>
    </message>
    <message>
        <source>%1 不在 %2 与 %3 之间或次序不对</source>
        <translation>%1 is not between %2 and %3, or out of order</translation>
    </message>
</context>
<context>
    <name>ForwardWords</name>
    <message>
        <source>代理服务器上还没有工厂端接收，记录留在本机等待</source>
        <translation>Nobody at the broker takes the records yet; they wait here</translation>
    </message>
    <message>
        <source>代理服务器不允许订阅 %1，请检查权限</source>
        <translation>The broker does not allow the subscription of %1; check the permissions</translation>
    </message>
    <message>
        <source>代理服务器拒收记录，请检查主题 %1 的发布权限</source>
        <translation>The broker refuses the records; check the permission to publish %1</translation>
    </message>
    <message>
        <source>另一台单元也叫“%1/%2”；请为其中一台换名，记录暂留本机</source>
        <translation>Another cell is called “%1/%2”, too; rename one of them, the records wait here</translation>
    </message>
    <message>
        <source>另一台设备使用本机工作目录的副本转发；请在副本中删除 user/forward.json</source>
        <translation>Another machine forwards from a copy of this home; delete user/forward.json in the copy</translation>
    </message>
    <message>
        <source>客户端证书和私钥须同时设置</source>
        <translation>A client certificate needs its key, and a key its certificate</translation>
    </message>
    <message>
        <source>未知命令</source>
        <translation>an unknown command</translation>
    </message>
    <message>
        <source>没有设置代理服务器的地址</source>
        <translation>No broker’s address is set</translation>
    </message>
    <message>
        <source>组或单元的名称“%1”不能使用：%2</source>
        <translation>The name “%1” of group or cell cannot be used: %2</translation>
    </message>
    <message>
        <source>转发位置无法写入：%1</source>
        <translation>How far was forwarded cannot be written: %1</translation>
    </message>
    <message>
        <source>转发记录损坏，已另存并重新开始：%1</source>
        <translation>The file of what was forwarded is damaged, was kept aside and begun anew: %1</translation>
    </message>
    <message>
        <source>转发：%1</source>
        <translation>Forwarding: %1</translation>
    </message>
    <message>
        <source>转发：丢弃了不明的消息（共 %1 条）：%2</source>
        <translation>Forwarding: dropped strange messages (%1 so far): %2</translation>
    </message>
</context>
</TS>
