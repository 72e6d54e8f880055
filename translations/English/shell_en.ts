<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="zh_CN">
<context>
    <name>StateBar</name>
    <message>
        <source>等待</source>
        <translation>Waiting</translation>
    </message>
    <message>
        <source>正常</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>断开</source>
        <translation>Lost</translation>
    </message>
    <message>
        <source>PLC通信；点按打开PLC监视</source>
        <translation>Traffic with the PLC; opens the PLC monitor</translation>
    </message>
    <message>
        <source>相机%1</source>
        <translation>Camera %1</translation>
    </message>
    <message>
        <source>工位%1的相机%2；点按打开相机管理</source>
        <translation>Camera %2 of station %1; opens the cameras</translation>
    </message>
    <message>
        <source>未设置</source>
        <translation>None</translation>
    </message>
    <message>
        <source>异常</source>
        <translation>Fault</translation>
    </message>
    <message>
        <source>模式</source>
        <translation>Mode</translation>
    </message>
    <message>
        <source>在线</source>
        <translation>Online</translation>
    </message>
    <message>
        <source>离线</source>
        <translation>Offline</translation>
    </message>
    <message>
        <source>测试</source>
        <translation>Test</translation>
    </message>
    <message>
        <source>检测模式；点按打开系统设置</source>
        <translation>Mode of operation; opens the settings</translation>
    </message>
    <message>
        <source>测试运行中；点按打开测试模式</source>
        <translation>A test is running; opens the test mode</translation>
    </message>
    <message>
        <source>磁盘</source>
        <translation>Disk</translation>
    </message>
    <message>
        <source>图像磁盘的剩余空间；点按打开系统设置</source>
        <translation>Free space of the disk for images; opens the settings</translation>
    </message>
    <message>
        <source>记录</source>
        <translation>Records</translation>
    </message>
    <message>
        <source>结果+图像</source>
        <translation>All</translation>
    </message>
    <message>
        <source>仅结果</source>
        <translation>Results</translation>
    </message>
    <message>
        <source>结果和图像的保存；点按打开检测结果</source>
        <translation>What is kept: results alone, or images too; opens the results</translation>
    </message>
    <message>
        <source>待写%1</source>
        <translation>%1 wait</translation>
    </message>
    <message>
        <source>用户</source>
        <translation>User</translation>
    </message>
    <message>
        <source>未登录</source>
        <translation>None</translation>
    </message>
    <message>
        <source>点按登录</source>
        <translation>Logs somebody in</translation>
    </message>
    <message>
        <source>%1；点按注销</source>
        <translation>%1; logs out</translation>
    </message>
    <message>
        <source>授权</source>
        <translation>Licence</translation>
    </message>
    <message>
        <source>已注册</source>
        <translation>Valid</translation>
    </message>
    <message>
        <source>未注册</source>
        <translation>None</translation>
    </message>
    <message>
        <source>软件授权；点按打开注册</source>
        <translation>Licence of the program; opens the registration</translation>
    </message>
    <message>
        <source>报警</source>
        <translation>Alarms</translation>
    </message>
    <message>
        <source>无</source>
        <translation>None</translation>
    </message>
    <message>
        <source>%1条</source>
        <translation>%1</translation>
    </message>
    <message>
        <source>报警；点按打开报警记录</source>
        <translation>Alarms; opens their history</translation>
    </message>
    <message>
        <source>工厂</source>
        <translation>Plant</translation>
    </message>
    <message>
        <source>待发%1</source>
        <translation>%1 to send</translation>
    </message>
    <message>
        <source>记录转发；点按打开系统设置</source>
        <translation>Forwarding of records; tap for the system settings</translation>
    </message>
</context>
<context>
    <name>Workspaces</name>
    <message>
        <source>运行</source>
        <translation>Run</translation>
    </message>
    <message>
        <source>结果</source>
        <translation>Results</translation>
    </message>
    <message>
        <source>型号</source>
        <translation>Models</translation>
    </message>
    <message>
        <source>标定</source>
        <translation>Calibrate</translation>
    </message>
    <message>
        <source>系统</source>
        <translation>System</translation>
    </message>
    <message>
        <source>需要工程师权限，点按登录</source>
        <translation>For engineers; click to log in</translation>
    </message>
</context>
<context>
    <name>PageBar</name>
    <message>
        <source>返回</source>
        <translation>Back</translation>
    </message>
    <message>
        <source>关闭本页，回到之前的页面 (Esc)</source>
        <translation>Closes this page and goes back to the one before (Esc)</translation>
    </message>
</context>
<context>
    <name>ModeFrame</name>
    <message>
        <source>测试运行中</source>
        <translation>A test is running</translation>
    </message>
    <message>
        <source>离线模式</source>
        <translation>Offline mode</translation>
    </message>
</context>
</TS>
