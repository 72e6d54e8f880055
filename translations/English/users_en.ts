<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="zh_CN">
<context>
    <name>AccountRules</name>
    <message>
        <source>操作员</source>
        <translation>Operator</translation>
    </message>
    <message>
        <source>工程师</source>
        <translation>Engineer</translation>
    </message>
    <message>
        <source>管理员</source>
        <translation>Administrator</translation>
    </message>
    <message>
        <source>请输入用户名</source>
        <translation>Enter a user name</translation>
    </message>
    <message>
        <source>用户名的前后不能有空格</source>
        <translation>A user name must not begin or end with a space</translation>
    </message>
    <message>
        <source>用户名最多 %1 个字符</source>
        <translation>A user name has at most %1 characters</translation>
    </message>
    <message>
        <source>用户名不能包含字符“%1”</source>
        <translation>A user name must not contain “%1”</translation>
    </message>
    <message>
        <source>密码至少 %1 个字符</source>
        <translation>A password has at least %1 characters</translation>
    </message>
    <message>
        <source>密码最多 %1 个字符</source>
        <translation>A password has at most %1 characters</translation>
    </message>
    <message>
        <source>密码不能只由一个重复的字符组成</source>
        <translation>A password must not be one repeated character</translation>
    </message>
    <message>
        <source>密码不能与用户名相同</source>
        <translation>The password must differ from the user name</translation>
    </message>
    <message>
        <source>两次输入的密码不一致</source>
        <translation>The two passwords differ</translation>
    </message>
</context>
<context>
    <name>LogInDialog</name>
    <message>
        <source>登录</source>
        <translation>Log in</translation>
    </message>
    <message>
        <source>用户名(&amp;N)</source>
        <translation>User &amp;name</translation>
    </message>
    <message>
        <source>密码(&amp;P)</source>
        <translation>&amp;Password</translation>
    </message>
    <message>
        <source>密码错误，请等待 %1 秒后再试</source>
        <translation>Wrong password: try again in %1 s</translation>
    </message>
    <message>
        <source>请输入用户名</source>
        <translation>Enter a user name</translation>
    </message>
    <message>
        <source>请输入密码</source>
        <translation>Enter the password</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>Cancel</translation>
    </message>
</context>
<context>
    <name>NewUserDialog</name>
    <message>
        <source>添加用户</source>
        <translation>New user</translation>
    </message>
    <message>
        <source>用户名(&amp;N)</source>
        <translation>User &amp;name</translation>
    </message>
    <message>
        <source>角色(&amp;R)</source>
        <translation>&amp;Role</translation>
    </message>
    <message>
        <source>密码(&amp;P)</source>
        <translation>&amp;Password</translation>
    </message>
    <message>
        <source>再次输入(&amp;A)</source>
        <translation>&amp;Again</translation>
    </message>
    <message>
        <source>用户“%1”已存在</source>
        <translation>There is a user “%1” already</translation>
    </message>
    <message>
        <source>创建管理员</source>
        <translation>First administrator</translation>
    </message>
    <message>
        <source>首次启动：还没有用户。请创建管理员并设置密码，以后由管理员添加其他用户。</source>
        <translation>First start: there are no users yet. Create the administrator and choose a password; the administrator adds all other users.</translation>
    </message>
    <message>
        <source>创建并登录</source>
        <translation>Create and log in</translation>
    </message>
    <message>
        <source>添加</source>
        <translation>Add</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>Cancel</translation>
    </message>
</context>
<context>
    <name>PasswordDialog</name>
    <message>
        <source>修改密码</source>
        <translation>Change password</translation>
    </message>
    <message>
        <source>现在的密码(&amp;O)</source>
        <translation>&amp;Old password</translation>
    </message>
    <message>
        <source>新密码(&amp;P)</source>
        <translation>New &amp;password</translation>
    </message>
    <message>
        <source>再次输入(&amp;A)</source>
        <translation>&amp;Again</translation>
    </message>
    <message>
        <source>请输入现在的密码</source>
        <translation>Enter the present password</translation>
    </message>
    <message>
        <source>重设密码</source>
        <translation>New password</translation>
    </message>
    <message>
        <source>修改您的密码：%1</source>
        <translation>Change your password: %1</translation>
    </message>
    <message>
        <source>为用户“%1”设置新密码。</source>
        <translation>A new password for user “%1”.</translation>
    </message>
    <message>
        <source>确定</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>Cancel</translation>
    </message>
</context>
<context>
    <name>UserCtrl</name>
    <message>
        <source>提示</source>
        <translation>Notice</translation>
    </message>
    <message>
        <source>请先以管理员身份登录。</source>
        <translation>Log in as administrator first.</translation>
    </message>
    <message>
        <source>确认</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>UserManagerDialog</name>
    <message>
        <source>无人操作多久后自动注销(&amp;I)</source>
        <translation>Log out when nobody touches it for (&amp;I)</translation>
    </message>
    <message>
        <source>从不</source>
        <translation>never</translation>
    </message>
    <message>
        <source> 分钟</source>
        <translation> minutes</translation>
    </message>
    <message>
        <source>用户管理</source>
        <translation>Users</translation>
    </message>
    <message>
        <source>添加用户…(&amp;A)</source>
        <translation>&amp;Add…</translation>
    </message>
    <message>
        <source>更改角色(&amp;R)</source>
        <translation>Change &amp;role</translation>
    </message>
    <message>
        <source>重设密码…(&amp;P)</source>
        <translation>New &amp;password…</translation>
    </message>
    <message>
        <source>删除…(&amp;D)</source>
        <translation>&amp;Delete…</translation>
    </message>
    <message>
        <source>关闭</source>
        <translation>Close</translation>
    </message>
    <message>
        <source>用户名</source>
        <translation>User name</translation>
    </message>
    <message>
        <source>角色</source>
        <translation>Role</translation>
    </message>
    <message>
        <source>确定要删除用户“%1”吗？</source>
        <translation>Delete user “%1”?</translation>
    </message>
    <message>
        <source>删除</source>
        <translation>Delete</translation>
    </message>
</context>
<context>
    <name>UserSession</name>
    <message>
        <source>用户名或密码错误</source>
        <translation>Wrong user name or password</translation>
    </message>
    <message>
        <source>已经有用户，请登录</source>
        <translation>There are users already: log in</translation>
    </message>
    <message>
        <source>请先登录</source>
        <translation>Log in first</translation>
    </message>
    <message>
        <source>现在的密码错误</source>
        <translation>The present password is wrong</translation>
    </message>
    <message>
        <source>不能删除当前登录的用户</source>
        <translation>The user who is logged in cannot be deleted</translation>
    </message>
    <message>
        <source>请等待 %1 秒后再试</source>
        <translation>Try again in %1 s</translation>
    </message>
    <message>
        <source>正在检查密码…</source>
        <translation>Checking the password…</translation>
    </message>
    <message>
        <source>只有管理员可以管理用户</source>
        <translation>Only administrators manage users</translation>
    </message>
    <message>
        <source>内存不足，无法处理密码</source>
        <translation>Too little memory to check a password</translation>
    </message>
</context>
<context>
    <name>UserStore</name>
    <message>
        <source>用户文件已损坏，不能登录：
%1
请由本机的管理人员恢复该文件；删除它和%2后可重新创建管理员。</source>
        <translation>The user file is damaged, nobody can log in:
%1
The keeper of this machine has to restore the file; when it and %2 are removed, an administrator can be created anew.</translation>
    </message>
    <message>
        <source>用户文件已被删除，不能登录：
%1
请由本机的管理人员恢复该文件；同时删除%2后可重新创建管理员。</source>
        <translation>The user file was deleted, nobody can log in:
%1
The keeper of this machine has to restore the file; when %2 is removed, too, an administrator can be created anew.</translation>
    </message>
    <message>
        <source>用户“%1”已存在</source>
        <translation>There is a user “%1” already</translation>
    </message>
    <message>
        <source>没有用户“%1”</source>
        <translation>There is no user “%1”</translation>
    </message>
    <message>
        <source>至少要保留一名管理员</source>
        <translation>One administrator at least has to stay</translation>
    </message>
</context>
</TS>
