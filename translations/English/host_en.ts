<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="zh_CN">
<context>
    <name>CMainWin</name>
    <message>
        <source>气门芯定位检测系统</source>
        <translation>Valve Hole Locating System</translation>
    </message>
    <message>
        <source>本进程中已有一个程序在运行，请先用 MainWidget_Delete 交还，再重新创建</source>
        <translation>a program runs in this process already: give it back to MainWidget_Delete before another is created</translation>
    </message>
    <message>
        <source>数据备份</source>
        <translation>Backup</translation>
    </message>
    <message>
        <source>单工位模式</source>
        <translation>One-station mode</translation>
    </message>
    <message>
        <source>图像标定</source>
        <translation>Calibration</translation>
    </message>
    <message>
        <source>方案设计</source>
        <translation>Designer</translation>
    </message>
    <message>
        <source>型号管理</source>
        <translation>Models</translation>
    </message>
    <message>
        <source>测试模式</source>
        <translation>Test mode</translation>
    </message>
    <message>
        <source>数据报表</source>
        <translation>Report</translation>
    </message>
    <message>
        <source>系统设置</source>
        <translation>Settings</translation>
    </message>
    <message>
        <source>PLC监视</source>
        <translation>PLC monitor</translation>
    </message>
    <message>
        <source>用户登录</source>
        <translation>Log in</translation>
    </message>
    <message>
        <source>用户管理</source>
        <translation>Users</translation>
    </message>
    <message>
        <source>帮助</source>
        <translation>Help</translation>
    </message>
    <message>
        <source>关于</source>
        <translation>About</translation>
    </message>
    <message>
        <source>提示</source>
        <translation>Notice</translation>
    </message>
    <message>
        <source>该功能未启用.</source>
        <translation>This function is not enabled.</translation>
    </message>
    <message>
        <source>你确定要注销%1 ?</source>
        <translation>Log %1 out?</translation>
    </message>
    <message>
        <source>确认</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>警告</source>
        <translation>Warning</translation>
    </message>
    <message>
        <source>本检测系统正在运行，您真的要关闭？</source>
        <translation>The system is running. Do you really want to close it?</translation>
    </message>
    <message>
        <source>确定</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>相机管理</source>
        <translation>Cameras</translation>
    </message>
    <message>
        <source>设备管理</source>
        <translation>Devices</translation>
    </message>
    <message>
        <source>任务设计器中有未保存的更改，关闭后将丢失：
%1
仍要关闭？</source>
        <translation>The task designer has unsaved changes, which will be lost:
%1
Close anyway?</translation>
    </message>
    <message>
        <source>放弃更改并关闭</source>
        <translation>Discard changes and close</translation>
    </message>
    <message>
        <source>将工位%1的本班计数清零？今日计数和检测记录不受影响。</source>
        <translation>Set the counts of the shift of station %1 to zero? Those of the day and the recorded parts stay.</translation>
    </message>
    <message>
        <source>清零</source>
        <translation>Reset</translation>
    </message>
    <message>
        <source>检测结果</source>
        <translation>Results</translation>
    </message>
    <message>
        <source>系统日志</source>
        <translation>System log</translation>
    </message>
    <message>
        <source>PLC索引表</source>
        <translation>PLC indices</translation>
    </message>
    <message>
        <source>引导示教</source>
        <translation>Teach</translation>
    </message>
    <message>
        <source>型号总览</source>
        <translation>Overview</translation>
    </message>
    <message>
        <source>引导标定</source>
        <translation>Guide</translation>
    </message>
    <message>
        <source>首次设置</source>
        <translation>Set-up</translation>
    </message>
    <message>
        <source>报警记录</source>
        <translation>Alarm history</translation>
    </message>
</context>
<context>
    <name>CallWatch</name>
    <message>
        <source>抛出异常 %1</source>
        <translation>threw %1</translation>
    </message>
    <message>
        <source>耗时 %1 毫秒，程序被占用</source>
        <translation>took %1 ms and held up the program</translation>
    </message>
    <message>
        <source>耗时 %1 毫秒，工位%2被占用</source>
        <translation>took %1 ms and held up station %2</translation>
    </message>
    <message>
        <source>没有返回，工位%1被占用</source>
        <translation>has not returned and holds up station %1</translation>
    </message>
</context>
<context>
    <name>CellStatusBar</name>
    <message>
        <source>系统时间</source>
        <translation>System time</translation>
    </message>
    <message>
        <source>用户:无</source>
        <translation>User: none</translation>
    </message>
    <message>
        <source>连接状态:</source>
        <translation>Connection:</translation>
    </message>
    <message>
        <source>本系统未注册激活</source>
        <translation>This system is not registered</translation>
    </message>
    <message>
        <source>运行时长:</source>
        <translation>Running for:</translation>
    </message>
    <message>
        <source>检测模式：</source>
        <translation>Mode: </translation>
    </message>
    <message>
        <source>在线模式</source>
        <translation>online</translation>
    </message>
    <message>
        <source>离线模式</source>
        <translation>offline</translation>
    </message>
    <message>
        <source>连接状态：</source>
        <translation>Connection: </translation>
    </message>
    <message>
        <source>连接正常</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>连接异常</source>
        <translation>lost</translation>
    </message>
    <message>
        <source>用户: %1</source>
        <translation>User: %1</translation>
    </message>
</context>
<context>
    <name>FrameText</name>
    <message>
        <source>时间</source>
        <translation>Time</translation>
    </message>
    <message>
        <source>方向</source>
        <translation>Direction</translation>
    </message>
    <message>
        <source>命令</source>
        <translation>Command</translation>
    </message>
    <message>
        <source>数据字 0 … 7</source>
        <translation>Words 0 … 7</translation>
    </message>
    <message>
        <source>含义</source>
        <translation>Meaning</translation>
    </message>
    <message>
        <source>PLC → 程序</source>
        <translation>PLC → program</translation>
    </message>
    <message>
        <source>程序 → PLC</source>
        <translation>program → PLC</translation>
    </message>
    <message>
        <source>型号索引：工位1 = %1，工位2 = %2</source>
        <translation>Model indices: station 1 = %1, station 2 = %2</translation>
    </message>
    <message>
        <source>触发工位%1</source>
        <translation>Trigger of station %1</translation>
    </message>
    <message>
        <source>触发，没有代码为%1的工位，忽略</source>
        <translation>Trigger, no station has the code %1: ignored</translation>
    </message>
    <message>
        <source>关闭程序</source>
        <translation>Close the program</translation>
    </message>
    <message>
        <source>未知命令，忽略</source>
        <translation>Unknown command: ignored</translation>
    </message>
    <message>
        <source>心跳</source>
        <translation>Heartbeat</translation>
    </message>
    <message>
        <source>工位%1没有有效结果</source>
        <translation>Station %1 has no valid result</translation>
    </message>
    <message>
        <source>工位%1：999，触发被拒绝</source>
        <translation>Station %1: 999, trigger refused</translation>
    </message>
    <message>
        <source>工位%1：361，未找到</source>
        <translation>Station %1: 361, not found</translation>
    </message>
    <message>
        <source>工位%1：365，结果没有角度</source>
        <translation>Station %1: 365, result without an angle</translation>
    </message>
    <message>
        <source>工位%1：角度 %2°，X %3 mm，Y %4 mm</source>
        <translation>Station %1: %2°, X %3 mm, Y %4 mm</translation>
    </message>
</context>
<context>
    <name>ImageArchive</name>
    <message>
        <source>不能创建图像文件夹%1</source>
        <translation>The image folder %1 cannot be made</translation>
    </message>
    <message>
        <source>等待保存的图像已有%1幅，放弃保存新图像</source>
        <translation>%1 images wait to be saved, new ones are given up</translation>
    </message>
    <message>
        <source>图像不能保存：%1</source>
        <translation>Images cannot be saved: %1</translation>
    </message>
    <message>
        <source>图像又能保存，期间有%1幅未能保存</source>
        <translation>Images can be saved again; %1 were not saved meanwhile</translation>
    </message>
    <message>
        <source>图像保存已跟上，期间放弃了%1幅图像</source>
        <translation>The saving of images has caught up; %1 were given up meanwhile</translation>
    </message>
</context>
<context>
    <name>QAboutUI</name>
    <message>
        <source>关于</source>
        <translation>About</translation>
    </message>
    <message>
        <source>气门芯定位检测系统</source>
        <translation>Valve Hole Locating System</translation>
    </message>
    <message>
        <source>组成部分</source>
        <translation>Part</translation>
    </message>
    <message>
        <source>版本</source>
        <translation>Version</translation>
    </message>
    <message>
        <source>用途</source>
        <translation>For</translation>
    </message>
    <message>
        <source>许可证</source>
        <translation>Licence</translation>
    </message>
    <message>
        <source>来源</source>
        <translation>Source</translation>
    </message>
    <message>
        <source>本程序的许可证</source>
        <translation>Licence of this program</translation>
    </message>
    <message>
        <source>复制版本信息(&amp;V)</source>
        <translation>Copy &amp;versions</translation>
    </message>
    <message>
        <source>关闭(&amp;C)</source>
        <translation>&amp;Close</translation>
    </message>
    <message>
        <source>界面、数据库、串口</source>
        <translation>windows, databases, serial port</translation>
    </message>
    <message>
        <source>图像处理</source>
        <translation>image processing</translation>
    </message>
    <message>
        <source>结果、型号、日志的数据库</source>
        <translation>databases of results, models and log</translation>
    </message>
    <message>
        <source>公有领域</source>
        <translation>Public domain</translation>
    </message>
    <message>
        <source>图像存档</source>
        <translation>image archive</translation>
    </message>
    <message>
        <source>授权签名</source>
        <translation>signatures of licences</translation>
    </message>
    <message>
        <source>密码保护</source>
        <translation>protection of passwords</translation>
    </message>
    <message>
        <source>版本 %1</source>
        <translation>Version %1</translation>
    </message>
</context>
<context>
    <name>QHelpUI</name>
    <message>
        <source>帮助</source>
        <translation>Help</translation>
    </message>
    <message>
        <source>返回(&amp;B)</source>
        <translation>&amp;Back</translation>
    </message>
    <message>
        <source>查找(&amp;F)</source>
        <translation>&amp;Find</translation>
    </message>
    <message>
        <source>查找</source>
        <translation>Find</translation>
    </message>
    <message>
        <source>本页中的文字，例如 999</source>
        <translation>A text of this page, such as 999</translation>
    </message>
    <message>
        <source>上一处(&amp;P)</source>
        <translation>&amp;Previous</translation>
    </message>
    <message>
        <source>下一处(&amp;N)</source>
        <translation>&amp;Next</translation>
    </message>
    <message>
        <source>目录</source>
        <translation>Contents</translation>
    </message>
    <message>
        <source>关闭(&amp;C)</source>
        <translation>&amp;Close</translation>
    </message>
    <message>
        <source>user-guide.zh-CN.md</source>
        <translation>user-guide.md</translation>
    </message>
    <message>
        <source>没有找到手册：%1</source>
        <translation>The guide is missing: %1</translation>
    </message>
    <message>
        <source>没有找到</source>
        <translation>Not found</translation>
    </message>
</context>
<context>
    <name>QPlcMonitorUI</name>
    <message>
        <source>PLC监视</source>
        <translation>PLC monitor</translation>
    </message>
    <message>
        <source>隐藏心跳(&amp;B)</source>
        <translation>Hide heart&amp;beats</translation>
    </message>
    <message>
        <source>方向(&amp;D)</source>
        <translation>&amp;Direction</translation>
    </message>
    <message>
        <source>方向</source>
        <translation>Direction</translation>
    </message>
    <message>
        <source>双向</source>
        <translation>Both</translation>
    </message>
    <message>
        <source>PLC → 程序</source>
        <translation>PLC → program</translation>
    </message>
    <message>
        <source>程序 → PLC</source>
        <translation>program → PLC</translation>
    </message>
    <message>
        <source>命令(&amp;M)</source>
        <translation>Co&amp;mmand</translation>
    </message>
    <message>
        <source>命令</source>
        <translation>Command</translation>
    </message>
    <message>
        <source>全部</source>
        <translation>All</translation>
    </message>
    <message>
        <source>查找(&amp;F)</source>
        <translation>&amp;Find</translation>
    </message>
    <message>
        <source>查找</source>
        <translation>Find</translation>
    </message>
    <message>
        <source>任意一列中的文字</source>
        <translation>A text in any column</translation>
    </message>
    <message>
        <source>暂停(&amp;P)</source>
        <translation>&amp;Pause</translation>
    </message>
    <message>
        <source>清空(&amp;L)</source>
        <translation>C&amp;lear</translation>
    </message>
    <message>
        <source>保存为CSV(&amp;S)…</source>
        <translation>&amp;Save as CSV…</translation>
    </message>
    <message>
        <source>关闭(&amp;C)</source>
        <translation>&amp;Close</translation>
    </message>
    <message>
        <source>显示 %1 帧，共 %2 帧</source>
        <translation>%1 of %2 frames shown</translation>
    </message>
    <message>
        <source>%1，已暂停，%2 帧待显示</source>
        <translation>%1, paused, %2 waiting</translation>
    </message>
    <message>
        <source>保存PLC通信记录</source>
        <translation>Save the PLC frames</translation>
    </message>
    <message>
        <source>CSV文件 (*.csv)</source>
        <translation>CSV files (*.csv)</translation>
    </message>
    <message>
        <source>已保存到 %1</source>
        <translation>Saved to %1</translation>
    </message>
    <message>
        <source>未能保存：%1</source>
        <translation>Not saved: %1</translation>
    </message>
</context>
<context>
    <name>ResultRecorder</name>
    <message>
        <source>%1条结果未能写入数据库%2</source>
        <translation>%1 results could not be written to database %2</translation>
    </message>
    <message>
        <source>结果暂不能写入数据库%1，稍后补写：%2</source>
        <translation>Results cannot be written to database %1 for now, they are written later: %2</translation>
    </message>
    <message>
        <source>结果已补写入数据库，期间%1条延迟，其中%2条丢弃</source>
        <translation>The waiting results were written to the database: %1 were late, %2 of them given up</translation>
    </message>
    <message>
        <source>%1条结果暂存于%2，下次启动时写入数据库</source>
        <translation>%1 results are kept in %2 and go into the database at the next start</translation>
    </message>
</context>
<context>
    <name>WaitingRowsFile</name>
    <message>
        <source>未写入的结果有%1条不能读取：%2，原文件保留为%3</source>
        <translation>%1 of the waiting results cannot be read: %2; the file was kept as %3</translation>
    </message>
    <message>
        <source>%1中有%2条记录不能读取，原文件保留为%3</source>
        <translation>%2 entries of %1 cannot be read; the file is kept as %3</translation>
    </message>
</context>
<context>
    <name>SaveImgThread</name>
    <message>
        <source>不能创建文件夹%1</source>
        <translation>The folder %1 cannot be made</translation>
    </message>
    <message>
        <source>磁盘已满</source>
        <translation>the disk is full</translation>
    </message>
</context>
<context>
    <name>RowThinner</name>
    <message>
        <source>系统时间突变为%1，暂停按天数清理%2的记录</source>
        <translation>The clock jumped to %1; no record of %2 is deleted by its age</translation>
    </message>
    <message>
        <source>清理旧记录</source>
        <translation>deleting old records</translation>
    </message>
    <message>
        <source>旧记录又能清理，期间失败%1次</source>
        <translation>Old records are deleted again, after %1 failures</translation>
    </message>
    <message>
        <source>已删除%1的旧记录%2条（%3至%4），只保留%5天</source>
        <translation>%2 old records of %1 were deleted (%3 to %4); %5 days are kept</translation>
    </message>
</context>
<context>
    <name>SqliteFile</name>
    <message>
        <source>数据库%1已损坏，请打开备份：%2</source>
        <translation>Database %1 is damaged; please open a backup: %2</translation>
    </message>
    <message>
        <source>数据库%1所在的文件夹不能写入，而其日志%1-wal中还有记录，请把整个文件夹复制到可写的位置再打开</source>
        <translation>The folder of database %1 cannot be written, and its log %1-wal still holds records; please copy the whole folder to where it can be written, and open it there</translation>
    </message>
    <message>
        <source>文件已损坏：%1</source>
        <translation>the file is damaged: %1</translation>
    </message>
    <message>
        <source>没有权限写入文件%1，请恢复写权限</source>
        <translation>no right to write the file %1; give it back</translation>
    </message>
    <message>
        <source>文件只读：%1</source>
        <translation>the file is read-only: %1</translation>
    </message>
    <message>
        <source>表%1不是本系统的：%2</source>
        <translation>table %1 is not of this system: %2</translation>
    </message>
    <message>
        <source>文件属于其他程序，含有表：%1</source>
        <translation>the file belongs to another program, it holds the tables %1</translation>
    </message>
    <message>
        <source>文件属于其他程序（标识%1）</source>
        <translation>the file belongs to another program (mark %1)</translation>
    </message>
    <message>
        <source>不能创建文件夹%1</source>
        <translation>The folder %1 cannot be made</translation>
    </message>
    <message>
        <source>数据库%1不能使用（%2），且不能改名保留，暂不记录。</source>
        <translation>Database %1 cannot be used (%2), nor be renamed to keep it; nothing is recorded for now.</translation>
    </message>
    <message>
        <source>数据库%1不能使用（%2），原文件保留为%3，已新建。</source>
        <translation>Database %1 cannot be used (%2); the file was kept as %3, and a new one begun.</translation>
    </message>
    <message>
        <source>数据库%1不能使用（%2），原文件保留为%3，新建失败：%4</source>
        <translation>Database %1 cannot be used (%2); the file was kept as %3, but no new one could be begun: %4</translation>
    </message>
    <message>
        <source>数据库%1不能打开：%2</source>
        <translation>Database %1 cannot be opened: %2</translation>
    </message>
    <message>
        <source>数据库%1，%2失败：%3</source>
        <translation>Database %1, %2 failed: %3</translation>
    </message>
</context>
<context>
    <name>StationView</name>
    <message>
        <source>点击查看今天的工件</source>
        <translation>Click to see the parts of today</translation>
    </message>
    <message>
        <source>点击查看今天未找到和拒绝的工件</source>
        <translation>Click to see the parts of today that were not found or refused</translation>
    </message>
    <message>
        <source>角度</source>
        <translation>Angle</translation>
    </message>
    <message>
        <source>X (mm)</source>
        <translation>X (mm)</translation>
    </message>
    <message>
        <source>Y (mm)</source>
        <translation>Y (mm)</translation>
    </message>
    <message>
        <source>工位%1</source>
        <translation>Station %1</translation>
    </message>
    <message>
        <source>今日找到</source>
        <translation>Found</translation>
    </message>
    <message>
        <source>未找到</source>
        <translation>Not found</translation>
    </message>
    <message>
        <source>拒绝触发</source>
        <translation>Refused</translation>
    </message>
    <message>
        <source>检出率</source>
        <translation>Yield</translation>
    </message>
    <message>
        <source>当前检测型号</source>
        <translation>Current model</translation>
    </message>
    <message>
        <source>等待触发</source>
        <translation>Waiting for a trigger</translation>
    </message>
    <message>
        <source>已触发，没有结果</source>
        <translation>Triggered, no result came</translation>
    </message>
    <message>
        <source>已找到</source>
        <translation>Found</translation>
    </message>
    <message>
        <source>测试：%1</source>
        <translation>Test: %1</translation>
    </message>
    <message>
        <source>未选择型号</source>
        <translation>No model chosen</translation>
    </message>
    <message>
        <source>PLC索引%1没有型号</source>
        <translation>PLC index %1 has no model</translation>
    </message>
    <message>
        <source>等待结果</source>
        <translation>Waiting for the result</translation>
    </message>
    <message>
        <source>触发 %1</source>
        <translation>Trigger %1</translation>
    </message>
    <message>
        <source>未发送</source>
        <translation>Not sent</translation>
    </message>
    <message>
        <source>上一件 %1  %2</source>
        <translation>Part before: %1  %2</translation>
    </message>
    <message>
        <source>本班 %1</source>
        <translation>Shift %1</translation>
    </message>
</context>
<context>
    <name>SystemLog::ksLogDB</name>
    <message>
        <source>%1 日志过多，丢弃了最早的%2行</source>
        <translation>%1 too many log lines, the oldest %2 were given up</translation>
    </message>
</context>
<context>
    <name>WindowActions</name>
    <message>
        <source>报表程序无法启动，已在本窗口中打开</source>
        <translation>The report program cannot be started; the results open here</translation>
    </message>
    <message>
        <source>图像标定 4点标定</source>
        <translation>Calibration with four points</translation>
    </message>
    <message>
        <source>图像标定 2点标定</source>
        <translation>Calibration with two points</translation>
    </message>
</context>
<context>
    <name>LanguageSwitch</name>
    <message>
        <source>中文</source>
        <extracomment>This translation&apos;s own language, by its own name, such as English, Deutsch or Русский.</extracomment>
        <translation>English</translation>
    </message>
</context>
<context>
    <name>LogPanel</name>
    <message>
        <source>筛选日志</source>
        <translation>Filter the log</translation>
    </message>
    <message>
        <source>仅异常</source>
        <translation>Trouble only</translation>
    </message>
    <message>
        <source>复制</source>
        <translation>Copy</translation>
    </message>
    <message>
        <source>工位%1日志</source>
        <translation>Log of station %1</translation>
    </message>
</context>
<context>
    <name>AlarmStrip</name>
    <message>
        <source>已知悉</source>
        <translation>Acknowledge</translation>
    </message>
    <message>
        <source>系统正在启动，暂不应答触发</source>
        <translation>Starting: triggers are not answered yet</translation>
    </message>
    <message>
        <source>PLC串口断开：%1</source>
        <translation>PLC serial port lost: %1</translation>
    </message>
    <message>
        <source>相机%1不可用：%2</source>
        <translation>Camera %1 not usable: %2</translation>
    </message>
    <message>
        <source>磁盘空间不足，剩余%1 GB</source>
        <translation>Disk space low, %1 GB left</translation>
    </message>
    <message>
        <source>图像不能保存</source>
        <translation>Images cannot be saved</translation>
    </message>
    <message>
        <source>图像保存过慢，已放弃图像</source>
        <translation>The disk is too slow, images were given up</translation>
    </message>
    <message>
        <source>结果数据库不能写入，等待补写%1条</source>
        <translation>Result database not writable, %1 results wait</translation>
    </message>
    <message>
        <source>数据库文件不能使用，原文件已另存为%1</source>
        <translation>Database file not usable, kept as %1</translation>
    </message>
    <message>
        <source>另有%1条</source>
        <translation>%1 more</translation>
    </message>
    <message>
        <source>工位%1没有图像：%2</source>
        <translation>Station %1 gets no image: %2</translation>
    </message>
    <message>
        <source>工位%1标定不可用：%2</source>
        <translation>Calibration of station %1 cannot be used: %2</translation>
    </message>
    <message>
        <source>工位%1没有检测结果：%2</source>
        <translation>Station %1 gets no result: %2</translation>
    </message>
    <message>
        <source>记录…</source>
        <translation>History…</translation>
    </message>
    <message>
        <source>PLC没有发送数据</source>
        <translation>The PLC sends nothing</translation>
    </message>
    <message>
        <source>配置文件有误：%1</source>
        <translation>Set-up file with errors: %1</translation>
    </message>
    <message>
        <source>相机%1不断送来未请求的图像，已丢弃</source>
        <translation>Camera %1 keeps delivering images that nobody asked for; they are dropped</translation>
    </message>
    <message>
        <source>模块%1：%2</source>
        <translation>Module %1: %2</translation>
    </message>
    <message>
        <source>关闭相机的连续采集或外部触发</source>
        <translation>Switch off the camera's free run or external trigger</translation>
    </message>
    <message>
        <source>请将系统日志交给该模块的提供者</source>
        <translation>Give the system log to the module's vendor</translation>
    </message>
    <message>
        <source>工位%1没有设置相机</source>
        <translation>Station %1 has no camera set</translation>
    </message>
    <message>
        <source>工位%1的相机%2不存在</source>
        <translation>Station %1: there is no camera %2</translation>
    </message>
    <message>
        <source>型号库不能使用：%1</source>
        <translation>Model library not usable: %1</translation>
    </message>
    <message>
        <source>请稍候</source>
        <translation>Please wait</translation>
    </message>
    <message>
        <source>检查串口线和端口设置，恢复后自动连接</source>
        <translation>Check cable and port settings; it reconnects by itself</translation>
    </message>
    <message>
        <source>恢复后自动连接</source>
        <translation>It reconnects by itself</translation>
    </message>
    <message>
        <source>检查PLC是否运行、波特率和接线</source>
        <translation>Check that the PLC runs, its baud rate and cable</translation>
    </message>
    <message>
        <source>检查相机的供电、网线和触发</source>
        <translation>Check the camera's power, cable and trigger</translation>
    </message>
    <message>
        <source>为该工位选择现有的相机</source>
        <translation>Choose a camera that exists for the station</translation>
    </message>
    <message>
        <source>检查该工位的方案和型号参数</source>
        <translation>Check the station's solution and model parameters</translation>
    </message>
    <message>
        <source>重新标定该工位</source>
        <translation>Calibrate the station anew</translation>
    </message>
    <message>
        <source>检查磁盘，释放空间或缩短保存天数</source>
        <translation>Check the disk: free space, or keep images for fewer days</translation>
    </message>
    <message>
        <source>减少保存的图像，或更换更快的磁盘</source>
        <translation>Save fewer images, or use a faster disk</translation>
    </message>
    <message>
        <source>已启用新文件；旧数据请由工程师从另存文件恢复</source>
        <translation>A new file is in use; an engineer can restore the old data</translation>
    </message>
    <message>
        <source>错误的项使用默认值：请核对设置并重新保存</source>
        <translation>Wrong entries have their defaults: check the settings and save them</translation>
    </message>
    <message>
        <source>检查DBFiles文件夹的权限，恢复后自动使用</source>
        <translation>Check the rights of the DBFiles folder; it is used again by itself</translation>
    </message>
    <message>
        <source>系统设置</source>
        <translation>Settings</translation>
    </message>
    <message>
        <source>PLC监视</source>
        <translation>PLC monitor</translation>
    </message>
    <message>
        <source>相机管理</source>
        <translation>Cameras</translation>
    </message>
    <message>
        <source>方案设计</source>
        <translation>Designer</translation>
    </message>
    <message>
        <source>图像标定</source>
        <translation>Calibration</translation>
    </message>
    <message>
        <source>设备管理</source>
        <translation>Devices</translation>
    </message>
    <message>
        <source>系统时间突变为%1，已暂停按天数清理图像；核对时间后按“已知悉”继续</source>
        <translation>The clock jumped to %1: images are not deleted by age; check the time, then acknowledge</translation>
    </message>
    <message>
        <source>在线模式下未启用“型号无效时拒绝触发”</source>
        <translation>Online, and triggers without a valid model are not refused</translation>
    </message>
    <message>
        <source>文件%1被删除，请恢复</source>
        <translation>The file %1 was deleted: restore it</translation>
    </message>
    <message>
        <source>核对系统时间，然后按“已知悉”</source>
        <translation>Check the system's time, then press “Acknowledge”</translation>
    </message>
    <message>
        <source>请在系统设置中启用，除非工厂有意关闭</source>
        <translation>Switch it on in the settings, unless the plant wants it off</translation>
    </message>
    <message>
        <source>请由本机的管理人员从备份恢复</source>
        <translation>The keeper of this machine restores it from a backup</translation>
    </message>
    <message>
        <source>检查报告文件夹和磁盘，恢复后自动补写</source>
        <translation>Check the folder of reports and the disk; it is written once they are well</translation>
    </message>
    <message>
        <source>记录转发：%1</source>
        <translation>Forwarding: %1</translation>
    </message>
    <message>
        <source>记录保存在本机，改正后自动补发</source>
        <translation>The records are kept here and follow once it is mended</translation>
    </message>
</context>
<context>
    <name>ViewMenu</name>
    <message>
        <source>语言外观</source>
        <translation>Display</translation>
    </message>
    <message>
        <source>浅色</source>
        <translation>Light</translation>
    </message>
    <message>
        <source>深色</source>
        <translation>Dark</translation>
    </message>
    <message>
        <source>高对比度</source>
        <translation>High contrast</translation>
    </message>
</context>
<context>
    <name>ResultHandler</name>
    <message>
        <source>坐标超出范围，请检查标定</source>
        <translation>Coordinates out of range, check the calibration</translation>
    </message>
    <message>
        <source>结果属于方案%1</source>
        <translation>The result belongs to solution %1</translation>
    </message>
    <message>
        <source>标定不可用：%1</source>
        <translation>The calibration cannot be used: %1</translation>
    </message>
</context>
<context>
    <name>TriggersInHand</name>
    <message>
        <source>检测超时</source>
        <translation>Inspection overdue</translation>
    </message>
    <message>
        <source>相机%1上一幅图像未到</source>
        <translation>The last image of camera %1 has not come</translation>
    </message>
    <message>
        <source>相机%1没有图像</source>
        <translation>No image of camera %1</translation>
    </message>
    <message>
        <source>相机%1的图像无效</source>
        <translation>The image of camera %1 is none</translation>
    </message>
</context>
<context>
    <name>SqliteStore</name>
    <message>
        <source>数据库%1已能使用，此前%2次打开失败</source>
        <translation>Database %1 can be used again, after %2 failed attempts to open it</translation>
    </message>
</context>
<context>
    <name>AlarmHistory</name>
    <message>
        <source>报警记录</source>
        <translation>Alarms</translation>
    </message>
    <message>
        <source>开始</source>
        <translation>Begin</translation>
    </message>
    <message>
        <source>结束</source>
        <translation>End</translation>
    </message>
    <message>
        <source>报警</source>
        <translation>Alarm</translation>
    </message>
    <message>
        <source>处理方法</source>
        <translation>What helps</translation>
    </message>
</context>
<context>
    <name>Station</name>
    <message>
        <source>工位“%1”：上一次触发没有图像</source>
        <translation>Station “%1”: no image came of the last trigger</translation>
    </message>
</context>
<context>
    <name>QDiskCleanThread</name>
    <message>
        <source>系统时间突变为%1，暂停按天数清理%2</source>
        <translation>The clock jumped to %1: %2 is not cleaned by age</translation>
    </message>
    <message>
        <source>剩余空间不足%1 GB，%2的图像从现在起到程序结束只保留1天</source>
        <translation>Less than %1 GB are free: images in %2 are kept for 1 day only from now until the program ends</translation>
    </message>
</context>
<context>
    <name>LicenceDesk</name>
    <message>
        <source>系统时间被调回：上次是%1，现在是%2</source>
        <translation>The clock was put back: last seen at %1, now %2</translation>
    </message>
    <message>
        <source>本程序使用构建时自动生成的授权密钥，不是供应商的密钥</source>
        <translation>This build has a licence key of its own, not a vendor's</translation>
    </message>
</context>
<context>
    <name>PartWords</name>
    <message>
        <source>未发送：通信线路已断开</source>
        <translation>Not sent: the line is gone</translation>
    </message>
    <message>
        <source>未答复：型号已清零</source>
        <translation>Not answered: the model was cleared</translation>
    </message>
    <message>
        <source>已发送%1：%2</source>
        <translation>Sent %1: %2</translation>
    </message>
</context>
<context>
    <name>FailurePictures</name>
    <message>
        <source>图像已被清理</source>
        <translation>Cleaned away</translation>
    </message>
    <message>
        <source>没有未找到的工件</source>
        <translation>No part was missed</translation>
    </message>
</context>
<context>
    <name>HourYield</name>
    <message>
        <source>%1–%2  检出率 %3
找到%4，未找到%5，拒绝%6</source>
        <translation>%1–%2  yield %3
found %4, not found %5, refused %6</translation>
    </message>
</context>
<context>
    <name>ShiftLine</name>
    <message>
        <source>本班</source>
        <translation>Shift</translation>
    </message>
    <message>
        <source>%1 %2清零</source>
        <translation>%1, reset at %2</translation>
    </message>
    <message>
        <source>%1 %2起</source>
        <translation>%1 from %2</translation>
    </message>
    <message>
        <source>清零</source>
        <translation>Reset</translation>
    </message>
    <message>
        <source>本班计数从零开始，今日计数不变</source>
        <translation>The counts of the shift begin at zero; those of the day go on</translation>
    </message>
</context>
<context>
    <name>WalKeeper</name>
    <message>
        <source>%1 写入磁盘失败，断电会丢失最近的记录，请检查磁盘</source>
        <translation>%1 cannot be brought to the disk: a power failure would lose the latest records. Check the disk</translation>
    </message>
    <message>
        <source>%1 又能写入磁盘，期间失败%2次</source>
        <translation>%1 is brought to the disk again, after %2 failures</translation>
    </message>
</context>
</TS>
