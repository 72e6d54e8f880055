<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="zh_CN">
<context>
    <name>Charts</name>
    <message>
        <source>产量和找到率</source>
        <translation>Output and yield</translation>
    </message>
    <message>
        <source>节拍和应答时间</source>
        <translation>Cycle and reply time</translation>
    </message>
    <message>
        <source>按型号</source>
        <translation>By model</translation>
    </message>
    <message>
        <source>趋势</source>
        <translation>Trend</translation>
    </message>
    <message>
        <source>X-Y 散布</source>
        <translation>X-Y scatter</translation>
    </message>
    <message>
        <source>分布和过程能力</source>
        <translation>Distribution and capability</translation>
    </message>
    <message>
        <source>单值-移动极差控制图</source>
        <translation>Control chart (I-MR)</translation>
    </message>
    <message>
        <source>失败原因</source>
        <translation>Causes of failure</translation>
    </message>
    <message>
        <source>工件数</source>
        <translation>Parts</translation>
    </message>
    <message>
        <source>找到率 %</source>
        <translation>Yield %</translation>
    </message>
    <message>
        <source>%1：%2 个工件，找到 %3，未找到 %4，拒绝 %5，找到率 %6 %</source>
        <translation>%1: %2 parts, %3 found, %4 not found, %5 refused, yield %6 %</translation>
    </message>
    <message>
        <source>节拍 s</source>
        <translation>Cycle s</translation>
    </message>
    <message>
        <source>%1：%2 个工件，找到率 %3 %</source>
        <translation>%1: %2 parts, yield %3 %</translation>
    </message>
    <message>
        <source>上限</source>
        <translation>Upper limit</translation>
    </message>
    <message>
        <source>下限</source>
        <translation>Lower limit</translation>
    </message>
    <message>
        <source>找到的工件</source>
        <translation>Found parts</translation>
    </message>
    <message>
        <source>正态曲线</source>
        <translation>Normal curve</translation>
    </message>
    <message>
        <source>n = %1
均值 %2
σ %3
Cp %4
Cpk %5
超限 %6</source>
        <translation>n = %1
mean %2
σ %3
Cp %4
Cpk %5
outside %6</translation>
    </message>
    <message>
        <source>超出控制限</source>
        <translation>beyond the control limits</translation>
    </message>
    <message>
        <source>连续9点在均值同侧</source>
        <translation>nine points on one side of the mean</translation>
    </message>
    <message>
        <source>连续6点递增或递减</source>
        <translation>six points rising or falling</translation>
    </message>
    <message>
        <source>3点中2点超出2σ</source>
        <translation>two of three points beyond 2σ</translation>
    </message>
    <message>
        <source>5点中4点超出1σ</source>
        <translation>four of five points beyond 1σ</translation>
    </message>
    <message>
        <source>工件序号</source>
        <translation>Part number</translation>
    </message>
    <message>
        <source>违反判异准则</source>
        <translation>Breaks a rule</translation>
    </message>
    <message>
        <source>均值 %1</source>
        <translation>Mean %1</translation>
    </message>
    <message>
        <source>σ %1
平均移动极差 %2
移动极差超限 %3
违反准则 %4</source>
        <translation>σ %1
mean moving range %2
ranges beyond the limit %3
rules broken %4</translation>
    </message>
    <message>
        <source>无代码</source>
        <translation>No code</translation>
    </message>
    <message>
        <source>应答 %1°</source>
        <translation>Answered %1°</translation>
    </message>
    <message>
        <source>未找到和拒绝</source>
        <translation>Not found and refused</translation>
    </message>
    <message>
        <source>%1：%2 个工件</source>
        <translation>%1: %2 parts</translation>
    </message>
    <message>
        <source>移动极差</source>
        <translation>Moving range</translation>
    </message>
</context>
<context>
    <name>LogPage</name>
    <message>
        <source>该文件夹不能写入，只能查看</source>
        <translation>Nothing can be written in this folder; it can only be read.</translation>
    </message>
    <message>
        <source>%1 行</source>
        <translation>%1 lines</translation>
    </message>
    <message>
        <source>起始日期晚于结束日期</source>
        <translation>The first day is later than the last.</translation>
    </message>
    <message>
        <source>%1
原值：%2
新值：%3
用户：%4</source>
        <translation>%1
before: %2
after: %3
user: %4</translation>
    </message>
    <message>
        <source>所有类型</source>
        <translation>All kinds</translation>
    </message>
    <message>
        <source>错误和警告</source>
        <translation>Errors and warnings</translation>
    </message>
    <message>
        <source>更改</source>
        <translation>Changes</translation>
    </message>
    <message>
        <source>信息</source>
        <translation>Information</translation>
    </message>
    <message>
        <source>内容</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>用户</source>
        <translation>User</translation>
    </message>
    <message>
        <source>实时</source>
        <translation>Live</translation>
    </message>
    <message>
        <source>查看当时的工件</source>
        <translation>Parts at that time</translation>
    </message>
    <message>
        <source>没有符合条件的日志。请选择更多的日期，或放宽类型、内容和用户条件。</source>
        <translation>No line fits. Please choose more days, or fewer conditions of kind, text and user.</translation>
    </message>
    <message>
        <source>正在查找更早的日志：已查 %1%</source>
        <translation>Looking for earlier lines: %1% searched</translation>
    </message>
</context>
<context>
    <name>LogReader</name>
    <message>
        <source>这里还没有系统日志：%1 不存在</source>
        <translation>There is no system log here yet: %1 does not exist.</translation>
    </message>
    <message>
        <source>%1 中没有系统日志表，请选择本程序的工作目录</source>
        <translation>%1 holds no table of a system log. Please choose a home of this program.</translation>
    </message>
</context>
<context>
    <name>LogTableModel</name>
    <message>
        <source>错误</source>
        <translation>Error</translation>
    </message>
    <message>
        <source>警告</source>
        <translation>Warning</translation>
    </message>
    <message>
        <source>信息</source>
        <translation>Information</translation>
    </message>
    <message>
        <source>调试</source>
        <translation>Debug</translation>
    </message>
    <message>
        <source>跟踪</source>
        <translation>Trace</translation>
    </message>
    <message>
        <source>更改</source>
        <translation>Change</translation>
    </message>
    <message>
        <source>时间</source>
        <translation>Time</translation>
    </message>
    <message>
        <source>类型</source>
        <translation>Kind</translation>
    </message>
    <message>
        <source>用户</source>
        <translation>User</translation>
    </message>
    <message>
        <source>内容</source>
        <translation>Text</translation>
    </message>
</context>
<context>
    <name>PartDetail</name>
    <message>
        <source>选择一个工件查看图像</source>
        <translation>Choose a part to see its picture</translation>
    </message>
    <message>
        <source>没有保存图像</source>
        <translation>No picture was kept</translation>
    </message>
    <message>
        <source>图像已被清理</source>
        <translation>Picture cleaned away</translation>
    </message>
    <message>
        <source>相机原图</source>
        <translation>As the camera gave it</translation>
    </message>
    <message>
        <source>标记</source>
        <translation>Mark</translation>
    </message>
    <message>
        <source>在设计器中打开</source>
        <translation>Open in the designer</translation>
    </message>
    <message>
        <source>备注</source>
        <translation>Comment</translation>
    </message>
    <message>
        <source>时间</source>
        <translation>Time</translation>
    </message>
    <message>
        <source>工位和型号</source>
        <translation>Station and model</translation>
    </message>
    <message>
        <source>结果</source>
        <translation>Result</translation>
    </message>
    <message>
        <source>原因</source>
        <translation>Reason</translation>
    </message>
    <message>
        <source>角度, X, Y</source>
        <translation>Angle, X, Y</translation>
    </message>
    <message>
        <source>依据</source>
        <translation>Evidence</translation>
    </message>
    <message>
        <source>没有保存相机原图：请在系统设置中打开该工位的“原始图像”</source>
        <translation>The camera’s image was not saved: please switch on “Source images” of the station in the settings</translation>
    </message>
    <message>
        <source>用该型号现在的参数重新检测相机原图</source>
        <translation>Inspects the camera’s image again, with the present parameters of the model</translation>
    </message>
</context>
<context>
    <name>PartFilterBar</name>
    <message>
        <source>起始时间不早于结束时间</source>
        <translation>The first moment is not before the last.</translation>
    </message>
    <message>
        <source>请至少选择一种结果</source>
        <translation>Please choose at least one result.</translation>
    </message>
    <message>
        <source>今天</source>
        <translation>Today</translation>
    </message>
    <message>
        <source>昨天</source>
        <translation>Yesterday</translation>
    </message>
    <message>
        <source>本班</source>
        <translation>This shift</translation>
    </message>
    <message>
        <source>上一班</source>
        <translation>Last shift</translation>
    </message>
    <message>
        <source>近7天</source>
        <translation>7 days</translation>
    </message>
    <message>
        <source>近30天</source>
        <translation>30 days</translation>
    </message>
    <message>
        <source>全部</source>
        <translation>All</translation>
    </message>
    <message>
        <source>自定义</source>
        <translation>From … to</translation>
    </message>
    <message>
        <source>两个工位</source>
        <translation>Both stations</translation>
    </message>
    <message>
        <source>所有型号</source>
        <translation>All models</translation>
    </message>
    <message>
        <source>已标记</source>
        <translation>Marked</translation>
    </message>
    <message>
        <source>型号、原因或用户</source>
        <translation>Model, reason, user</translation>
    </message>
    <message>
        <source>更早：前一天、前一班</source>
        <translation>Earlier: the day or shift before</translation>
    </message>
    <message>
        <source>更晚：后一天、后一班</source>
        <translation>Later: the day or shift after</translation>
    </message>
</context>
<context>
    <name>PartPictures</name>
    <message>
        <source>没有保存图像</source>
        <translation>No picture was kept</translation>
    </message>
    <message>
        <source>图像已被清理</source>
        <translation>Picture cleaned away</translation>
    </message>
</context>
<context>
    <name>PartReader</name>
    <message>
        <source>这里还没有检测结果：%1 不存在</source>
        <translation>There are no results here yet: %1 does not exist.</translation>
    </message>
    <message>
        <source>%1 中没有检测结果表，请选择本程序的工作目录</source>
        <translation>%1 holds no table of results. Please choose a home of this program.</translation>
    </message>
    <message>
        <source>%1 由更新版本的程序写入，请用该版本查看</source>
        <translation>%1 was written by a later version of the program. Please read it with that version.</translation>
    </message>
</context>
<context>
    <name>PartTableModel</name>
    <message>
        <source>标记</source>
        <translation>Mark</translation>
    </message>
    <message>
        <source>时间</source>
        <translation>Time</translation>
    </message>
    <message>
        <source>工位</source>
        <translation>Station</translation>
    </message>
    <message>
        <source>型号</source>
        <translation>Model</translation>
    </message>
    <message>
        <source>PLC 索引</source>
        <translation>PLC index</translation>
    </message>
    <message>
        <source>结果</source>
        <translation>Result</translation>
    </message>
    <message>
        <source>原因</source>
        <translation>Reason</translation>
    </message>
    <message>
        <source>角度 °</source>
        <translation>Angle °</translation>
    </message>
    <message>
        <source>X</source>
        <translation>X</translation>
    </message>
    <message>
        <source>Y</source>
        <translation>Y</translation>
    </message>
    <message>
        <source>得分 %</source>
        <translation>Score %</translation>
    </message>
    <message>
        <source>图像 ms</source>
        <translation>Image ms</translation>
    </message>
    <message>
        <source>检测 ms</source>
        <translation>Result ms</translation>
    </message>
    <message>
        <source>应答 ms</source>
        <translation>Reply ms</translation>
    </message>
    <message>
        <source>用户</source>
        <translation>User</translation>
    </message>
    <message>
        <source>标定</source>
        <translation>Calibration</translation>
    </message>
    <message>
        <source>备注</source>
        <translation>Comment</translation>
    </message>
</context>
<context>
    <name>PartTexts</name>
    <message>
        <source>找到</source>
        <translation>Found</translation>
    </message>
    <message>
        <source>未找到</source>
        <translation>Not found</translation>
    </message>
    <message>
        <source>拒绝</source>
        <translation>Refused</translation>
    </message>
    <message>
        <source>没有图像</source>
        <translation>No image</translation>
    </message>
    <message>
        <source>图像超时</source>
        <translation>Image overdue</translation>
    </message>
    <message>
        <source>检测没有结果</source>
        <translation>No result of the engine</translation>
    </message>
    <message>
        <source>通信线路已断开</source>
        <translation>The line was down</translation>
    </message>
    <message>
        <source>PLC 索引没有型号</source>
        <translation>No model for the PLC index</translation>
    </message>
    <message>
        <source>触发过多</source>
        <translation>Too many triggers</translation>
    </message>
    <message>
        <source>坐标超出范围</source>
        <translation>Position out of range</translation>
    </message>
    <message>
        <source>标定不可用</source>
        <translation>No usable calibration</translation>
    </message>
    <message>
        <source>错误 %1</source>
        <translation>Error %1</translation>
    </message>
    <message>
        <source>工位%1</source>
        <translation>Station %1</translation>
    </message>
    <message>
        <source>未知</source>
        <translation>Unknown</translation>
    </message>
    <message>
        <source>角度 °</source>
        <translation>Angle °</translation>
    </message>
    <message>
        <source>X</source>
        <translation>X</translation>
    </message>
    <message>
        <source>Y</source>
        <translation>Y</translation>
    </message>
    <message>
        <source>得分 %</source>
        <translation>Score %</translation>
    </message>
    <message>
        <source>应答时间 ms</source>
        <translation>Reply time ms</translation>
    </message>
</context>
<context>
    <name>PartsPage</name>
    <message>
        <source>该文件夹不能写入，只能查看</source>
        <translation>Nothing can be written in this folder; it can only be read.</translation>
    </message>
    <message>
        <source>没有符合条件的工件。
请选择更长的时间，或放宽工位、型号、结果和文字条件。</source>
        <translation>No part fits.
Please choose a longer time, or fewer conditions of station, model, result and text.</translation>
    </message>
    <message>
        <source>%1 个工件</source>
        <translation>%1 parts</translation>
    </message>
    <message>
        <source>小图</source>
        <translation>Pictures</translation>
    </message>
    <message>
        <source>以小图代替表格</source>
        <translation>Small pictures in place of the table</translation>
    </message>
    <message>
        <source>正在查找更早的工件：已查 %1%</source>
        <translation>Looking for earlier parts: %1% searched</translation>
    </message>
</context>
<context>
    <name>ReportWindow</name>
    <message>
        <source>选择文件夹…</source>
        <translation>Choose a folder…</translation>
    </message>
    <message>
        <source>选择工作目录（其中有 DBFiles 文件夹）</source>
        <translation>Choose a home (a folder with DBFiles in it)</translation>
    </message>
    <message>
        <source>检测报表 – %1</source>
        <translation>Results – %1</translation>
    </message>
    <message>
        <source>打开工作目录</source>
        <translation>Open a home</translation>
    </message>
</context>
<context>
    <name>ResultsDialog</name>
    <message>
        <source>检测结果</source>
        <translation>Results</translation>
    </message>
</context>
<context>
    <name>ResultsView</name>
    <message>
        <source>工件</source>
        <translation>Parts</translation>
    </message>
    <message>
        <source>统计</source>
        <translation>Statistics</translation>
    </message>
    <message>
        <source>日志</source>
        <translation>Log</translation>
    </message>
    <message>
        <source>自动刷新</source>
        <translation>Refresh by itself</translation>
    </message>
    <message>
        <source>刷新</source>
        <translation>Refresh</translation>
    </message>
    <message>
        <source>重新读取（F5）</source>
        <translation>Reads anew (F5)</translation>
    </message>
</context>
<context>
    <name>ReviewStore</name>
    <message>
        <source>不能写入备注：文件夹 %1 只读或不存在</source>
        <translation>The comment cannot be written: the folder %1 is read-only or does not exist.</translation>
    </message>
    <message>
        <source>不能写入备注：%1</source>
        <translation>The comment cannot be written: %1</translation>
    </message>
</context>
<context>
    <name>Shifts</name>
    <message>
        <source>班次时间“%1”重复</source>
        <translation>The shift time “%1” stands twice.</translation>
    </message>
    <message>
        <source>班次时间“%1”不对，应为时:分，例如 06:00, 14:00, 22:00</source>
        <translation>“%1” is no shift time; it has to be hours:minutes, such as 06:00, 14:00, 22:00.</translation>
    </message>
    <message>
        <source>早班</source>
        <translation>Early shift</translation>
    </message>
    <message>
        <source>中班</source>
        <translation>Late shift</translation>
    </message>
    <message>
        <source>夜班</source>
        <translation>Night shift</translation>
    </message>
    <message>
        <source>第%1班</source>
        <translation>Shift %1</translation>
    </message>
</context>
<context>
    <name>StatisticsPage</name>
    <message>
        <source>下限必须小于上限</source>
        <translation>The lower limit has to be less than the upper one.</translation>
    </message>
    <message>
        <source>%1 个工件，找到 %2，未找到 %3，拒绝 %4，找到率 %5 %</source>
        <translation>%1 parts, %2 found, %3 not found, %4 refused, yield %5 %</translation>
    </message>
    <message>
        <source>按小时</source>
        <translation>By hour</translation>
    </message>
    <message>
        <source>按班次</source>
        <translation>By shift</translation>
    </message>
    <message>
        <source>按天</source>
        <translation>By day</translation>
    </message>
    <message>
        <source>公差</source>
        <translation>Tolerance</translation>
    </message>
    <message>
        <source>下限</source>
        <translation>Lower</translation>
    </message>
    <message>
        <source>上限</source>
        <translation>Upper</translation>
    </message>
    <message>
        <source>公差（请先选择型号）</source>
        <translation>Tolerance (choose a model first)</translation>
    </message>
    <message>
        <source>不能保存公差：%1</source>
        <translation>The tolerance cannot be kept: %1</translation>
    </message>
    <message>
        <source>没有符合条件的工件，请选择更长的时间或放宽条件</source>
        <translation>No part fits. Please choose a longer time or fewer conditions.</translation>
    </message>
    <message>
        <source>正在读取…</source>
        <translation>Reading…</translation>
    </message>
</context>
</TS>
