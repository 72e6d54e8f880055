<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="zh_CN">
<context>
    <name>ChartExport</name>
    <message>
        <source>找到率 %</source>
        <translation>Yield %</translation>
    </message>
    <message>
        <source>从</source>
        <translation>From</translation>
    </message>
    <message>
        <source>到（不含）</source>
        <translation>To (excluded)</translation>
    </message>
    <message>
        <source>节拍 s</source>
        <translation>Cycle s</translation>
    </message>
    <message>
        <source>型号</source>
        <translation>Model</translation>
    </message>
    <message>
        <source>时间</source>
        <translation>Time</translation>
    </message>
    <message>
        <source>：从</source>
        <translation>: from</translation>
    </message>
    <message>
        <source>：到</source>
        <translation>: to</translation>
    </message>
    <message>
        <source>工件数</source>
        <translation>Parts</translation>
    </message>
    <message>
        <source>移动极差</source>
        <translation>Moving range</translation>
    </message>
    <message>
        <source>违反判异准则</source>
        <translation>Rules broken</translation>
    </message>
    <message>
        <source>错误码 %1</source>
        <translation>Error code %1</translation>
    </message>
    <message>
        <source>应答 %1°</source>
        <translation>Reply %1°</translation>
    </message>
    <message>
        <source>失败原因</source>
        <translation>Reason</translation>
    </message>
</context>
<context>
    <name>ExportBar</name>
    <message>
        <source>没有导出：%1</source>
        <translation>Not exported: %1</translation>
    </message>
    <message>
        <source>导出已取消</source>
        <translation>The export was cancelled</translation>
    </message>
    <message>
        <source>已写入 %1，缺少 %2 张图片</source>
        <translation>%1 is written; %2 pictures are missing</translation>
    </message>
    <message>
        <source>已写入 %1</source>
        <translation>%1 is written</translation>
    </message>
    <message>
        <source>导出</source>
        <translation>Export</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>Cancel</translation>
    </message>
</context>
<context>
    <name>ExportMenus</name>
    <message>
        <source>%1 至 %2</source>
        <translation>%1 to %2</translation>
    </message>
    <message>
        <source>工件</source>
        <translation>Parts</translation>
    </message>
    <message>
        <source>图片</source>
        <translation>Pictures</translation>
    </message>
    <message>
        <source>表格 (CSV)…</source>
        <translation>Table (CSV)…</translation>
    </message>
    <message>
        <source>Excel 表格 (XLSX)…</source>
        <translation>Excel workbook (XLSX)…</translation>
    </message>
    <message>
        <source>图片 (ZIP)…</source>
        <translation>Pictures (ZIP)…</translation>
    </message>
    <message>
        <source>图片 (文件夹)…</source>
        <translation>Pictures (folder)…</translation>
    </message>
    <message>
        <source>这段时间的报告 (PDF)…</source>
        <translation>Report of this time (PDF)…</translation>
    </message>
    <message>
        <source>日志</source>
        <translation>Log</translation>
    </message>
    <message>
        <source>数值 (CSV)…</source>
        <translation>Numbers (CSV)…</translation>
    </message>
    <message>
        <source>图表 (PNG)…</source>
        <translation>Chart (PNG)…</translation>
    </message>
    <message>
        <source>图表 (PDF)…</source>
        <translation>Chart (PDF)…</translation>
    </message>
</context>
<context>
    <name>LogExport</name>
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
        <source>设置</source>
        <translation>Setting</translation>
    </message>
    <message>
        <source>原值</source>
        <translation>Before</translation>
    </message>
    <message>
        <source>新值</source>
        <translation>After</translation>
    </message>
    <message>
        <source>内容</source>
        <translation>Text</translation>
    </message>
</context>
<context>
    <name>PartColumns</name>
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
        <translation>Outcome</translation>
    </message>
    <message>
        <source>原因</source>
        <translation>Reason</translation>
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
    <name>PartExport</name>
    <message>
        <source>从</source>
        <translation>From</translation>
    </message>
    <message>
        <source>到（不含）</source>
        <translation>To (excluded)</translation>
    </message>
    <message>
        <source>工位</source>
        <translation>Station</translation>
    </message>
    <message>
        <source>全部</source>
        <translation>All</translation>
    </message>
    <message>
        <source>型号</source>
        <translation>Model</translation>
    </message>
    <message>
        <source>结果</source>
        <translation>Outcome</translation>
    </message>
    <message>
        <source>包含文字</source>
        <translation>With the text</translation>
    </message>
    <message>
        <source>只含标记的</source>
        <translation>Marked only</translation>
    </message>
    <message>
        <source>是</source>
        <translation>yes</translation>
    </message>
    <message>
        <source>工件</source>
        <translation>Parts</translation>
    </message>
    <message>
        <source>汇总</source>
        <translation>Summary</translation>
    </message>
    <message>
        <source>合计</source>
        <translation>Total</translation>
    </message>
    <message>
        <source>找到率 %</source>
        <translation>Yield %</translation>
    </message>
</context>
<context>
    <name>PictureExport</name>
    <message>
        <source>所选的工件都没有图片（缺少 %1 张）</source>
        <translation>None of the chosen parts has a picture (%1 are missing)</translation>
    </message>
    <message>
        <source>不能写入 %1：%2</source>
        <translation>%1 cannot be written: %2</translation>
    </message>
    <message>
        <source>不能建立文件夹 %1</source>
        <translation>The folder %1 cannot be made</translation>
    </message>
</context>
<context>
    <name>ReportRound</name>
    <message>
        <source>报告“%1”没有写入：文件夹 %2 不存在，请检查磁盘或更改报告设置</source>
        <translation>The report “%1” is not written: there is no folder %2; please check the disk or change the settings of reports</translation>
    </message>
    <message>
        <source>报告“%1”没有写入，稍后重试：%2</source>
        <translation>The report “%1” is not written and will be tried again: %2</translation>
    </message>
</context>
<context>
    <name>ShiftReport</name>
    <message>
        <source>不能写入 %1：%2</source>
        <translation>%1 cannot be written: %2</translation>
    </message>
    <message>
        <source>生成时间 %1</source>
        <translation>Made %1</translation>
    </message>
    <message>
        <source>操作员 / 日期</source>
        <translation>Operator / date</translation>
    </message>
    <message>
        <source>班长 / 日期</source>
        <translation>Shift leader / date</translation>
    </message>
    <message>
        <source>质量 / 日期</source>
        <translation>Quality / date</translation>
    </message>
    <message>
        <source>%1 至 %2</source>
        <translation>%1 to %2</translation>
    </message>
    <message>
        <source>%1 生产报告</source>
        <translation>%1: production report</translation>
    </message>
    <message>
        <source>产量和找到率</source>
        <translation>Parts and yield</translation>
    </message>
    <message>
        <source>这段时间没有工件</source>
        <translation>There were no parts in this time</translation>
    </message>
    <message>
        <source>合计</source>
        <translation>Total</translation>
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
        <source>工件</source>
        <translation>Parts</translation>
    </message>
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
        <source>找到率 %</source>
        <translation>Yield %</translation>
    </message>
    <message>
        <source>节拍中位数 %1 s</source>
        <translation>Median cycle %1 s</translation>
    </message>
    <message>
        <source>应答时间平均 %1 ms，最长 %2 ms</source>
        <translation>Reply time %1 ms on average, %2 ms at most</translation>
    </message>
    <message>
        <source>找到率 = 找到 / (找到 + 未找到)</source>
        <translation>Yield = found / (found + not found)</translation>
    </message>
    <message>
        <source>每小时产量和找到率</source>
        <translation>Parts and yield of each hour</translation>
    </message>
    <message>
        <source>每天产量和找到率</source>
        <translation>Parts and yield of each day</translation>
    </message>
    <message>
        <source>其他 %1 种</source>
        <translation>%1 others</translation>
    </message>
    <message>
        <source>无说明</source>
        <translation>None given</translation>
    </message>
    <message>
        <source>失败原因</source>
        <translation>Reasons of failures</translation>
    </message>
    <message>
        <source>找到的工件：趋势和分布</source>
        <translation>Found parts: trend and distribution</translation>
    </message>
    <message>
        <source>n %1   均值 %2   σ %3</source>
        <translation>n %1   mean %2   σ %3</translation>
    </message>
    <message>
        <source>未找到和拒绝的工件</source>
        <translation>Parts not found and refused</translation>
    </message>
    <message>
        <source>是</source>
        <translation>yes</translation>
    </message>
    <message>
        <source>时间</source>
        <translation>Time</translation>
    </message>
    <message>
        <source>结果</source>
        <translation>Outcome</translation>
    </message>
    <message>
        <source>原因</source>
        <translation>Reason</translation>
    </message>
    <message>
        <source>标记</source>
        <translation>Mark</translation>
    </message>
    <message>
        <source>备注</source>
        <translation>Comment</translation>
    </message>
    <message>
        <source>还有 %1 个没有列出</source>
        <translation>%1 more are not listed</translation>
    </message>
    <message>
        <source>报警和更改</source>
        <translation>Alarms and changes</translation>
    </message>
    <message>
        <source>%1（共 %2 次）</source>
        <translation>%1 (%2 times)</translation>
    </message>
    <message>
        <source>类型</source>
        <translation>Kind</translation>
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
        <source>还有 %1 条没有列出</source>
        <translation>%1 more are not listed</translation>
    </message>
    <message>
        <source>过程能力</source>
        <translation>Capability</translation>
    </message>
    <message>
        <source>数值</source>
        <translation>Value</translation>
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
        <source>均值</source>
        <translation>Mean</translation>
    </message>
    <message>
        <source>超限</source>
        <translation>Outside</translation>
    </message>
    <message>
        <source>Cp = (上限 - 下限) / 6σ    Cpk = 到较近公差限的距离 / 3σ    σ 为样本标准差</source>
        <translation>Cp = (upper - lower) / 6σ    Cpk = distance to the nearer limit / 3σ    σ of the sample</translation>
    </message>
</context>
<context>
    <name>XlsxTable</name>
    <message>
        <source>不能建立工作表“%1”</source>
        <translation>The sheet “%1” cannot be made</translation>
    </message>
    <message>
        <source>没有完整写入，磁盘可能已满（临时文件夹 %1）</source>
        <translation>not wholly written; the disk may be full (folder of temporary files %1)</translation>
    </message>
</context>
</TS>
