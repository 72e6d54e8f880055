<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="zh_CN">
<context>
    <name>CMainWin</name>
    <message>
        <source>注册</source>
        <translation>Register</translation>
    </message>
</context>
<context>
    <name>LicenceDesk</name>
    <message>
        <source>授权即将到期：%1</source>
        <translation>The licence ends soon: %1</translation>
    </message>
    <message>
        <source>授权无效：%1</source>
        <translation>The licence does not count: %1</translation>
    </message>
</context>
<context>
    <name>LicenceTexts</name>
    <message>
        <source>%1，%2个工位</source>
        <translation>%1, stations: %2</translation>
    </message>
    <message>
        <source>%1，有效期至%2</source>
        <translation>%1, valid until %2</translation>
    </message>
    <message>
        <source>%1，长期有效</source>
        <translation>%1, valid without end</translation>
    </message>
    <message>
        <source>没有授权文件</source>
        <translation>there is no licence</translation>
    </message>
    <message>
        <source>这不是授权文件：授权以“ValveCell licence”一行开头，以签名结尾</source>
        <translation>This is not a licence: a licence begins with the line “ValveCell licence” and ends with a signature</translation>
    </message>
    <message>
        <source>授权不完整、被改动过，或不是由本程序的供应商签发</source>
        <translation>The licence is incomplete, has been altered, or was not issued by the vendor of this program</translation>
    </message>
    <message>
        <source>授权属于另一台电脑，其识别码是 %1</source>
        <translation>The licence is for another machine, whose code is %1</translation>
    </message>
    <message>
        <source>授权于%1签发，晚于本机的日期，请检查电脑的时钟</source>
        <translation>The licence was issued on %1, which is after today as this machine has it: check its clock</translation>
    </message>
    <message>
        <source>授权已于%1到期</source>
        <translation>The licence expired on %1</translation>
    </message>
    <message>
        <source>授权只包含%1个工位，少于本机使用的工位</source>
        <translation>The licence covers fewer stations (%1) than this machine uses</translation>
    </message>
</context>
<context>
    <name>QCryptokeyUI</name>
    <message>
        <source>注册</source>
        <translation>Registration</translation>
    </message>
    <message>
        <source>本机识别码</source>
        <translation>Code of this machine</translation>
    </message>
    <message>
        <source>复制(&amp;P)</source>
        <translation>Co&amp;py</translation>
    </message>
    <message>
        <source>把识别码告诉供应商，即可得到这台电脑的授权文件。</source>
        <translation>Tell the vendor this code to get a licence for this machine.</translation>
    </message>
    <message>
        <source>授权</source>
        <translation>Licence</translation>
    </message>
    <message>
        <source>选择文件(&amp;F)…</source>
        <translation>Choose &amp;file…</translation>
    </message>
    <message>
        <source>或粘贴授权文字(&amp;T)</source>
        <translation>or paste its &amp;text</translation>
    </message>
    <message>
        <source>授权文字</source>
        <translation>Text of the licence</translation>
    </message>
    <message>
        <source>注册(&amp;R)</source>
        <translation>&amp;Register</translation>
    </message>
    <message>
        <source>关闭(&amp;C)</source>
        <translation>&amp;Close</translation>
    </message>
    <message>
        <source>已注册：%1</source>
        <translation>Registered: %1</translation>
    </message>
    <message>
        <source>已注册</source>
        <translation>Registered</translation>
    </message>
    <message>
        <source>正在读取本机识别码…</source>
        <translation>Reading the code of this machine…</translation>
    </message>
    <message>
        <source>未注册：这台电脑没有可用的识别码</source>
        <translation>Not registered: this machine tells no code</translation>
    </message>
    <message>
        <source>未注册：%1</source>
        <translation>Not registered: %1</translation>
    </message>
    <message>
        <source>识别码已复制</source>
        <translation>The code was copied</translation>
    </message>
    <message>
        <source>选择授权文件</source>
        <translation>Choose a licence</translation>
    </message>
    <message>
        <source>授权文件 (*.lic *.txt);;所有文件 (*)</source>
        <translation>Licences (*.lic *.txt);;All files (*)</translation>
    </message>
    <message>
        <source>无法读取%1：%2</source>
        <translation>%1 cannot be read: %2</translation>
    </message>
    <message>
        <source>授权有效：%1</source>
        <translation>The licence is good: %1</translation>
    </message>
    <message>
        <source>授权有效，但无法保存：%1</source>
        <translation>The licence is good, but cannot be stored: %1</translation>
    </message>
    <message>
        <source>注册成功</source>
        <translation>Registered successfully</translation>
    </message>
</context>
<context>
    <name>WindowActions</name>
    <message>
        <source>需要工程师权限，请先登录</source>
        <translation>This needs an engineer: please log in</translation>
    </message>
</context>
</TS>
