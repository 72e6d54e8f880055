<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="zh_CN">
<context>
    <name>ModelActions</name>
    <message>
        <source>型号%1不存在</source>
        <translation>There is no model %1</translation>
    </message>
    <message>
        <source>新旧名称只差大小写，引擎的文件可能无法区分，请先改为别的名称</source>
        <translation>The names differ in case only, which the engine’s files may not tell apart: take another name first</translation>
    </message>
</context>
<context>
    <name>ModelFile</name>
    <message>
        <source>%1：%2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>文件太大，不是型号文件</source>
        <translation>too large for a model file</translation>
    </message>
    <message>
        <source>不是型号文件</source>
        <translation>not a model file</translation>
    </message>
    <message>
        <source>型号文件的版本不被支持</source>
        <translation>a model file of a version that is not supported</translation>
    </message>
    <message>
        <source>参数部分有误</source>
        <translation>the parameters are wrong</translation>
    </message>
</context>
<context>
    <name>ModelManager</name>
    <message>
        <source>型号%1已存在</source>
        <translation>There is a model %1 already</translation>
    </message>
    <message>
        <source>PLC索引%1不在1到32767之间</source>
        <translation>PLC index %1 is not between 1 and 32767</translation>
    </message>
    <message>
        <source>PLC索引%1已被型号%2使用</source>
        <translation>PLC index %1 is used by model %2</translation>
    </message>
    <message>
        <source>型号库写入失败: %1</source>
        <translation>The model library cannot be written: %1</translation>
    </message>
    <message>
        <source>型号%1不存在</source>
        <translation>There is no model %1</translation>
    </message>
    <message>
        <source>与型号%1看起来相同</source>
        <translation>Looks the same as model %1</translation>
    </message>
</context>
<context>
    <name>ModelModel</name>
    <message>
        <source>已标定</source>
        <translation>Calibrated</translation>
    </message>
    <message>
        <source>未标定</source>
        <translation>Not calibrated</translation>
    </message>
    <message>
        <source>模型号</source>
        <translation>Model</translation>
    </message>
    <message>
        <source>PLC索引值</source>
        <translation>PLC index</translation>
    </message>
    <message>
        <source>标定情况</source>
        <translation>Calibration</translation>
    </message>
</context>
<context>
    <name>PlcIndexDraft</name>
    <message>
        <source>%1，%2：%3</source>
        <translation>%1, %2: %3</translation>
    </message>
    <message>
        <source>%1：型号库中没有“%2”，请清除其索引或添加此型号</source>
        <translation>%1: the library has no “%2”; clear its index or add the model</translation>
    </message>
    <message>
        <source>%1：索引%2被%3共用，实际使用“%4”</source>
        <translation>%1: index %2 is shared by %3; “%4” is used</translation>
    </message>
    <message>
        <source>、</source>
        <translation>, </translation>
    </message>
</context>
<context>
    <name>PlcIndexModel</name>
    <message>
        <source>型号库中没有此型号</source>
        <translation>The library has no such model</translation>
    </message>
    <message>
        <source>型号</source>
        <translation>Model</translation>
    </message>
</context>
<context>
    <name>PortChooser</name>
    <message>
        <source>没有找到串口</source>
        <translation>No serial port was found</translation>
    </message>
</context>
<context>
    <name>QModelEditUI</name>
    <message>
        <source>型号名(&amp;N)</source>
        <translation>&amp;Name</translation>
    </message>
    <message>
        <source>型号名</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>PLC索引(&amp;I)</source>
        <translation>PLC &amp;index</translation>
    </message>
    <message>
        <source>PLC索引</source>
        <translation>PLC index</translation>
    </message>
    <message>
        <source>已标定(&amp;B)</source>
        <translation>Cali&amp;brated</translation>
    </message>
    <message>
        <source>确定(&amp;O)</source>
        <translation>&amp;OK</translation>
    </message>
    <message>
        <source>取消(&amp;C)</source>
        <translation>&amp;Cancel</translation>
    </message>
    <message>
        <source>型号%1已不存在</source>
        <translation>Model %1 no longer exists</translation>
    </message>
    <message>
        <source>PLC索引：%1</source>
        <translation>PLC index: %1</translation>
    </message>
    <message>
        <source>添加型号</source>
        <translation>Add model</translation>
    </message>
    <message>
        <source>修改型号</source>
        <translation>Modify model</translation>
    </message>
    <message>
        <source>复制型号</source>
        <translation>Copy model</translation>
    </message>
    <message>
        <source>导入型号</source>
        <translation>Import model</translation>
    </message>
</context>
<context>
    <name>QModelMangerUI</name>
    <message>
        <source>型号管理</source>
        <translation>Models</translation>
    </message>
    <message>
        <source>添加(&amp;A)…</source>
        <translation>&amp;Add…</translation>
    </message>
    <message>
        <source>修改(&amp;M)…</source>
        <translation>&amp;Modify…</translation>
    </message>
    <message>
        <source>复制(&amp;Y)…</source>
        <translation>Cop&amp;y…</translation>
    </message>
    <message>
        <source>删除(&amp;D)…</source>
        <translation>&amp;Delete…</translation>
    </message>
    <message>
        <source>导入(&amp;I)…</source>
        <translation>&amp;Import…</translation>
    </message>
    <message>
        <source>导出(&amp;E)…</source>
        <translation>&amp;Export…</translation>
    </message>
    <message>
        <source>PLC索引表(&amp;P)…</source>
        <translation>&amp;PLC index table…</translation>
    </message>
    <message>
        <source>关闭(&amp;C)</source>
        <translation>&amp;Close</translation>
    </message>
    <message>
        <source>还没有型号</source>
        <translation>There is no model yet</translation>
    </message>
    <message>
        <source>引擎中没有此型号的参数</source>
        <translation>The engine has no parameters for this model</translation>
    </message>
    <message>
        <source>引擎参数：%1</source>
        <translation>Engine parameters: %1</translation>
    </message>
    <message>
        <source>已保存型号“%1”</source>
        <translation>Model “%1” is stored</translation>
    </message>
    <message>
        <source>将覆盖引擎中已有的同名参数：%1</source>
        <translation>Replaces parameters that the engine has under this name: %1</translation>
    </message>
    <message>
        <source>新型号</source>
        <translation>New model</translation>
    </message>
    <message>
        <source>删除型号“%1”？此操作不能撤销。</source>
        <translation>Delete model “%1”? This cannot be undone.</translation>
    </message>
    <message>
        <source>删除</source>
        <translation>Delete</translation>
    </message>
    <message>
        <source>连同引擎参数删除</source>
        <translation>Delete with engine parameters</translation>
    </message>
    <message>
        <source>已删除型号“%1”</source>
        <translation>Model “%1” is deleted</translation>
    </message>
    <message>
        <source>未能删除型号“%1”：%2</source>
        <translation>Model “%1” could not be deleted: %2</translation>
    </message>
    <message>
        <source>型号文件 (*.json)</source>
        <translation>Model files (*.json)</translation>
    </message>
    <message>
        <source>导入型号</source>
        <translation>Import model</translation>
    </message>
    <message>
        <source>未能导入：%1</source>
        <translation>Not imported: %1</translation>
    </message>
    <message>
        <source>没有方案%1，其参数不导入</source>
        <translation>No solution %1: its parameters are left out</translation>
    </message>
    <message>
        <source>导出型号</source>
        <translation>Export model</translation>
    </message>
    <message>
        <source>已导出到 %1</source>
        <translation>Exported to %1</translation>
    </message>
    <message>
        <source>未能导出：%1</source>
        <translation>Not exported: %1</translation>
    </message>
    <message>
        <source>、</source>
        <translation>, </translation>
    </message>
    <message>
        <source>；</source>
        <translation>; </translation>
    </message>
    <message>
        <source>已示教</source>
        <translation>Taught</translation>
    </message>
    <message>
        <source>未示教</source>
        <translation>Not taught</translation>
    </message>
    <message>
        <source>引擎参数</source>
        <translation>Engine</translation>
    </message>
    <message>
        <source>已保存型号“%1”；它还没有示教，只会应答361，请在任务设计器中示教</source>
        <translation>Model “%1” saved; it is not taught and answers only 361: teach it in the designer</translation>
    </message>
    <message>
        <source>已保存型号“%1”；任务设计器中还没有它，请在其中新建同名型号并示教</source>
        <translation>Model “%1” saved; the designer has none of that name yet: make and teach it there</translation>
    </message>
</context>
<context>
    <name>QPlcIndexUI</name>
    <message>
        <source>PLC索引表</source>
        <translation>PLC index table</translation>
    </message>
    <message>
        <source>PLC发来的索引（1到32767）在每个工位代表哪个型号；空白表示该工位不使用此型号。</source>
        <translation>Which model an index from the PLC (1 to 32767) means at each station; an empty cell: the station does not use the model.</translation>
    </message>
    <message>
        <source>清除索引(&amp;D)</source>
        <translation>Clear in&amp;dex</translation>
    </message>
    <message>
        <source>确定(&amp;O)</source>
        <translation>&amp;OK</translation>
    </message>
    <message>
        <source>应用(&amp;A)</source>
        <translation>&amp;Apply</translation>
    </message>
    <message>
        <source>取消(&amp;C)</source>
        <translation>&amp;Cancel</translation>
    </message>
    <message>
        <source>plcIndex.json 已被改动，与程序中的索引表不同。</source>
        <translation>plcIndex.json was edited and differs from the tables of the program.</translation>
    </message>
    <message>
        <source>覆盖文件</source>
        <translation>Overwrite the file</translation>
    </message>
    <message>
        <source>显示文件中的索引</source>
        <translation>Show the file’s indices</translation>
    </message>
    <message>
        <source>未能保存，索引表没有改变：%1</source>
        <translation>Not stored, the tables are unchanged: %1</translation>
    </message>
    <message>
        <source>已保存。%1</source>
        <translation>Stored. %1</translation>
    </message>
</context>
<context>
    <name>QSystemSettingUI</name>
    <message>
        <source>需要工程师权限</source>
        <translation>Engineer’s rights needed</translation>
    </message>
    <message>
        <source>标定、设置、型号和设计器需要工程师登录(&amp;R)</source>
        <translation>Calibration, settings, models, designer for enginee&amp;rs</translation>
    </message>
    <message>
        <source>系统设置</source>
        <translation>System settings</translation>
    </message>
    <message>
        <source>工位</source>
        <translation>Stations</translation>
    </message>
    <message>
        <source>工位1</source>
        <translation>Station 1</translation>
    </message>
    <message>
        <source>工位2</source>
        <translation>Station 2</translation>
    </message>
    <message>
        <source>相机(&amp;M)</source>
        <translation>Ca&amp;mera</translation>
    </message>
    <message>
        <source>工位1相机</source>
        <translation>Camera of station 1</translation>
    </message>
    <message>
        <source>工位2相机</source>
        <translation>Camera of station 2</translation>
    </message>
    <message>
        <source>检测方案(&amp;S)</source>
        <translation>&amp;Solution</translation>
    </message>
    <message>
        <source>工位1检测方案</source>
        <translation>Solution of station 1</translation>
    </message>
    <message>
        <source>工位2检测方案</source>
        <translation>Solution of station 2</translation>
    </message>
    <message>
        <source>保存图像</source>
        <translation>Save images</translation>
    </message>
    <message>
        <source>工位1保存原始图像</source>
        <translation>Save source images of station 1</translation>
    </message>
    <message>
        <source>原始图像</source>
        <translation>Source images</translation>
    </message>
    <message>
        <source>工位2保存原始图像</source>
        <translation>Save source images of station 2</translation>
    </message>
    <message>
        <source>工位1保存结果图像</source>
        <translation>Save result images of station 1</translation>
    </message>
    <message>
        <source>结果图像</source>
        <translation>Result images</translation>
    </message>
    <message>
        <source>工位2保存结果图像</source>
        <translation>Save result images of station 2</translation>
    </message>
    <message>
        <source>运行</source>
        <translation>Operation</translation>
    </message>
    <message>
        <source>在线模式</source>
        <translation>Online mode</translation>
    </message>
    <message>
        <source>在线模式：按PLC发来的型号切换(&amp;N)</source>
        <translation>O&amp;nline mode: models follow the PLC</translation>
    </message>
    <message>
        <source>型号无效时拒绝触发</source>
        <translation>Reject triggers without a valid model</translation>
    </message>
    <message>
        <source>型号无效时拒绝触发（在线模式）(&amp;J)</source>
        <translation>Re&amp;ject triggers without a valid model (online)</translation>
    </message>
    <message>
        <source>使用四点标定</source>
        <translation>Four-point calibration</translation>
    </message>
    <message>
        <source>使用四点标定(&amp;4)</source>
        <translation>Use &amp;4-point calibration</translation>
    </message>
    <message>
        <source>触发过滤时间(&amp;T)</source>
        <translation>&amp;Trigger filter time</translation>
    </message>
    <message>
        <source>触发过滤时间</source>
        <translation>Trigger filter time</translation>
    </message>
    <message>
        <source>毫秒（0：不过滤）</source>
        <translation>ms (0: no filter)</translation>
    </message>
    <message>
        <source>连续触发拒绝次数(&amp;B)</source>
        <translation>Refusals in a &amp;burst</translation>
    </message>
    <message>
        <source>连续触发拒绝次数</source>
        <translation>Refusals in a burst</translation>
    </message>
    <message>
        <source>次（不起作用）</source>
        <translation>triggers (not used)</translation>
    </message>
    <message>
        <source>PLC串口</source>
        <translation>PLC serial port</translation>
    </message>
    <message>
        <source>端口(&amp;P)</source>
        <translation>&amp;Port</translation>
    </message>
    <message>
        <source>串口端口</source>
        <translation>Serial port</translation>
    </message>
    <message>
        <source>串口：COM3、/dev/ttyUSB0，最好是 /dev/serial/by-id/ 中的名称，它跟着转换器走。
串口服务器：tcp:主机:端口，例如 tcp:192.168.1.50:4001、tcp:[fd00::5]:4001</source>
        <translation>Serial port: COM3, /dev/ttyUSB0, best a name of /dev/serial/by-id/, which goes with the converter.
Device server: tcp:HOST:PORT, such as tcp:192.168.1.50:4001 or tcp:[fd00::5]:4001</translation>
    </message>
    <message>
        <source>选择</source>
        <translation>Choose</translation>
    </message>
    <message>
        <source>本机的串口</source>
        <translation>Serial ports of this machine</translation>
    </message>
    <message>
        <source>串口，或串口服务器 tcp:192.168.1.50:4001</source>
        <translation>A port, or a device server as tcp:192.168.1.50:4001</translation>
    </message>
    <message>
        <source>与PLC的相同；对串口服务器（tcp:）不起作用，在它自己的设置中填写</source>
        <translation>As the PLC has it; means nothing to a device server (tcp:), which has a setting of its own</translation>
    </message>
    <message>
        <source>波特率(&amp;D)</source>
        <translation>Bau&amp;d rate</translation>
    </message>
    <message>
        <source>波特率</source>
        <translation>Baud rate</translation>
    </message>
    <message>
        <source>位/秒</source>
        <translation>bit/s</translation>
    </message>
    <message>
        <source>磁盘清理</source>
        <translation>Disk cleaning</translation>
    </message>
    <message>
        <source>按天数删除原始图像</source>
        <translation>Delete old source images</translation>
    </message>
    <message>
        <source>按天数删除原始图像(&amp;X)</source>
        <translation>Delete old source images (&amp;X)</translation>
    </message>
    <message>
        <source>按天数删除结果图像</source>
        <translation>Delete old result images</translation>
    </message>
    <message>
        <source>按天数删除结果图像(&amp;Y)</source>
        <translation>Delete old result images (&amp;Y)</translation>
    </message>
    <message>
        <source>图像保留天数(&amp;E)</source>
        <translation>Keep imag&amp;es for</translation>
    </message>
    <message>
        <source>图像保留天数</source>
        <translation>Days to keep images</translation>
    </message>
    <message>
        <source>天</source>
        <translation>days</translation>
    </message>
    <message>
        <source>文件夹保留天数(&amp;F)</source>
        <translation>Keep &amp;folders for</translation>
    </message>
    <message>
        <source>文件夹保留天数</source>
        <translation>Days to keep folders</translation>
    </message>
    <message>
        <source>记录保留天数(&amp;K)</source>
        <translation>&amp;Keep records for</translation>
    </message>
    <message>
        <source>记录保留天数</source>
        <translation>Days to keep records</translation>
    </message>
    <message>
        <source>天（0：不删除）</source>
        <translation>days (0: for ever)</translation>
    </message>
    <message>
        <source>最小剩余空间(&amp;G)</source>
        <translation>Minimum free space (&amp;G)</translation>
    </message>
    <message>
        <source>最小剩余空间</source>
        <translation>Minimum free space</translation>
    </message>
    <message>
        <source>GB</source>
        <translation>GB</translation>
    </message>
    <message>
        <source>界面</source>
        <translation>Screen</translation>
    </message>
    <message>
        <source>语言 Language(&amp;L)</source>
        <translation>&amp;Language</translation>
    </message>
    <message>
        <source>语言</source>
        <translation>Language</translation>
    </message>
    <message>
        <source>确定(&amp;O)</source>
        <translation>&amp;OK</translation>
    </message>
    <message>
        <source>应用(&amp;A)</source>
        <translation>&amp;Apply</translation>
    </message>
    <message>
        <source>取消(&amp;C)</source>
        <translation>&amp;Cancel</translation>
    </message>
    <message>
        <source>两个工位不能使用同一个相机</source>
        <translation>The stations cannot share a camera</translation>
    </message>
    <message>
        <source>两个工位不能使用同一个方案</source>
        <translation>The stations cannot share a solution</translation>
    </message>
    <message>
        <source>覆盖文件</source>
        <translation>Overwrite the file</translation>
    </message>
    <message>
        <source>采用文件中的值</source>
        <translation>Use the file’s values</translation>
    </message>
    <message>
        <source>未能保存，设置没有改变：%1</source>
        <translation>Not stored, the settings are unchanged: %1</translation>
    </message>
    <message>
        <source>已保存</source>
        <translation>Stored</translation>
    </message>
    <message>
        <source>天（不起作用）</source>
        <translation>days (not used)</translation>
    </message>
    <message>
        <source>应答期限(&amp;D)</source>
        <translation>Answer &amp;deadline</translation>
    </message>
    <message>
        <source>应答期限</source>
        <translation>Answer deadline</translation>
    </message>
    <message>
        <source>毫秒，超时按未找到应答</source>
        <translation>ms, then as not found</translation>
    </message>
    <message>
        <source>模块调用时限(&amp;K)</source>
        <translation>Module calls within (&amp;K)</translation>
    </message>
    <message>
        <source>模块调用时限</source>
        <translation>Limit of a module's call</translation>
    </message>
    <message>
        <source>毫秒，超时报警</source>
        <translation>ms, then an alarm</translation>
    </message>
    <message>
        <source>仍然切换标定方式</source>
        <translation>Switch all the same</translation>
    </message>
    <message>
        <source>剩余空间曾低于最小剩余空间，到程序结束图像只保留1天</source>
        <translation>Free space was below the minimum once: images are kept for 1 day only until the program ends</translation>
    </message>
    <message>
        <source>现在只剩%1 GB，少于最小剩余空间：图像将只保留1天，不管保留天数</source>
        <translation>Only %1 GB are free now, less than the minimum: images will be kept for 1 day only, whatever the days say</translation>
    </message>
    <message>
        <source>；</source>
        <translation>; </translation>
    </message>
    <message>
        <source>工位和运行</source>
        <translation>Stations and operation</translation>
    </message>
    <message>
        <source>图像、记录和报告</source>
        <translation>Images, records and reports</translation>
    </message>
    <message>
        <source>班次和自动报告</source>
        <translation>Shifts and automatic reports</translation>
    </message>
    <message>
        <source>各班开始时间(&amp;H)</source>
        <translation>S&amp;hifts begin at</translation>
    </message>
    <message>
        <source>各班开始时间</source>
        <translation>Begins of shifts</translation>
    </message>
    <message>
        <source>时:分，用逗号分开；空白：全天一班</source>
        <translation>Hours:minutes, separated by commas; empty: one shift a day</translation>
    </message>
    <message>
        <source>06:00, 14:00, 22:00</source>
        <translation>06:00, 14:00, 22:00</translation>
    </message>
    <message>
        <source>自动报告(&amp;Q)</source>
        <translation>Automatic reports (&amp;Q)</translation>
    </message>
    <message>
        <source>自动报告</source>
        <translation>Automatic reports</translation>
    </message>
    <message>
        <source>格式</source>
        <translation>Formats</translation>
    </message>
    <message>
        <source>报告为PDF</source>
        <translation>Reports as PDF</translation>
    </message>
    <message>
        <source>报告为Excel表格</source>
        <translation>Reports as Excel table</translation>
    </message>
    <message>
        <source>Excel (XLSX)</source>
        <translation>Excel (XLSX)</translation>
    </message>
    <message>
        <source>报告文件夹(&amp;U)</source>
        <translation>Folder of reports (&amp;U)</translation>
    </message>
    <message>
        <source>报告文件夹</source>
        <translation>Folder of reports</translation>
    </message>
    <message>
        <source>工作目录下的 reports</source>
        <translation>reports in the home folder</translation>
    </message>
    <message>
        <source>选择报告文件夹</source>
        <translation>Choose the folder of reports</translation>
    </message>
    <message>
        <source>报告抬头(&amp;I)</source>
        <translation>Head&amp;ing of reports</translation>
    </message>
    <message>
        <source>报告抬头</source>
        <translation>Heading of reports</translation>
    </message>
    <message>
        <source>工作目录的名称</source>
        <translation>Name of the home folder</translation>
    </message>
    <message>
        <source>不写</source>
        <translation>None</translation>
    </message>
    <message>
        <source>每班</source>
        <translation>Each shift</translation>
    </message>
    <message>
        <source>每天</source>
        <translation>Each day</translation>
    </message>
    <message>
        <source>自动报告：请至少选择一种格式</source>
        <translation>Automatic reports: please choose at least one format</translation>
    </message>
    <message>
        <source>报告文件夹：“%1”不是完整路径</source>
        <translation>Folder of reports: “%1” is not a full path</translation>
    </message>
    <message>
        <source>未找到的图像保留天数(&amp;W)</source>
        <translation>Keep images not found for (&amp;W)</translation>
    </message>
    <message>
        <source>未找到的图像保留天数</source>
        <translation>Days that images not found are kept</translation>
    </message>
    <message>
        <source>天（0：与其他图像相同）</source>
        <translation>days (0: as others)</translation>
    </message>
    <message>
        <source>只保存未找到的图像</source>
        <translation>Save only images not found</translation>
    </message>
    <message>
        <source>只保存未找到的工件的图像(&amp;Z)</source>
        <translation>Only of parts not found (&amp;Z)</translation>
    </message>
    <message>
        <source>工厂</source>
        <translation>Plant</translation>
    </message>
    <message>
        <source>转发到工厂</source>
        <translation>Forwarding to the plant</translation>
    </message>
    <message>
        <source>把结果、报警和状态转发到工厂的MQTT代理服务器</source>
        <translation>Forward results, alarms and state to the plant’s MQTT broker</translation>
    </message>
    <message>
        <source>代理服务器地址</source>
        <translation>Broker’s address</translation>
    </message>
    <message>
        <source>代理服务器端口</source>
        <translation>Broker’s port</translation>
    </message>
    <message>
        <source>工厂或产线名称</source>
        <translation>Plant or line</translation>
    </message>
    <message>
        <source>本单元名称</source>
        <translation>Name of this cell</translation>
    </message>
    <message>
        <source>组内唯一</source>
        <translation>unique in its group</translation>
    </message>
    <message>
        <source>转发速率上限</source>
        <translation>At most</translation>
    </message>
    <message>
        <source>kB/秒</source>
        <translation>kB/s</translation>
    </message>
    <message>
        <source>未通过工件的图像</source>
        <translation>Pictures of failed parts</translation>
    </message>
    <message>
        <source>同时转发未找到和拒收工件的图像</source>
        <translation>Forward pictures of parts not found or refused</translation>
    </message>
    <message>
        <source>转发图像的最大宽度</source>
        <translation>Width at most</translation>
    </message>
    <message>
        <source>像素</source>
        <translation>pixels</translation>
    </message>
    <message>
        <source>转发图像的上限</source>
        <translation>Pictures at most</translation>
    </message>
    <message>
        <source>kB/分钟</source>
        <translation>kB/minute</translation>
    </message>
    <message>
        <source>登录和加密</source>
        <translation>Log-in and encryption</translation>
    </message>
    <message>
        <source>登录文件</source>
        <translation>Log-in file</translation>
    </message>
    <message>
        <source>两行：用户名、密码</source>
        <translation>two lines: user, password</translation>
    </message>
    <message>
        <source>TLS加密</source>
        <translation>TLS encryption</translation>
    </message>
    <message>
        <source>CA证书文件</source>
        <translation>CA certificates</translation>
    </message>
    <message>
        <source>系统自带的证书</source>
        <translation>those of the system</translation>
    </message>
    <message>
        <source>客户端证书文件</source>
        <translation>Client certificate</translation>
    </message>
    <message>
        <source>不使用</source>
        <translation>none</translation>
    </message>
    <message>
        <source>客户端私钥文件</source>
        <translation>Client’s key</translation>
    </message>
    <message>
        <source>转发到工厂：请输入代理服务器地址</source>
        <translation>Forwarding: type the broker’s address</translation>
    </message>
    <message>
        <source>客户端证书和私钥须同时设置</source>
        <translation>A client certificate needs its key, and a key its certificate</translation>
    </message>
</context>
<context>
    <name>QTestWidget</name>
    <message>
        <source>测试模式</source>
        <translation>Test mode</translation>
    </message>
    <message>
        <source>自动触发</source>
        <translation>Repeated triggers</translation>
    </message>
    <message>
        <source>触发间隔(&amp;I)</source>
        <translation>&amp;Interval</translation>
    </message>
    <message>
        <source>触发间隔</source>
        <translation>Interval</translation>
    </message>
    <message>
        <source>毫秒</source>
        <translation>ms</translation>
    </message>
    <message>
        <source>开始(&amp;S)</source>
        <translation>&amp;Start</translation>
    </message>
    <message>
        <source>停止(&amp;T)</source>
        <translation>S&amp;top</translation>
    </message>
    <message>
        <source>拍照一次</source>
        <translation>One picture</translation>
    </message>
    <message>
        <source>工位1拍照(&amp;1)</source>
        <translation>Snap station &amp;1</translation>
    </message>
    <message>
        <source>工位2拍照(&amp;2)</source>
        <translation>Snap station &amp;2</translation>
    </message>
    <message>
        <source>关闭(&amp;C)</source>
        <translation>&amp;Close</translation>
    </message>
    <message>
        <source>触发间隔：%1</source>
        <translation>Interval: %1</translation>
    </message>
    <message>
        <source>正在自动触发，关闭窗口即停止</source>
        <translation>Triggering; closing the window stops it</translation>
    </message>
</context>
<context>
    <name>SettingsForm</name>
    <message>
        <source>不能为空</source>
        <translation>must not be empty</translation>
    </message>
    <message>
        <source>“%1”已不存在，请另选</source>
        <translation>“%1” no longer exists, choose another</translation>
    </message>
    <message>
        <source>%1：%2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>%1“%2”</source>
        <translation>%1 “%2”</translation>
    </message>
    <message>
        <source>不存在：%1</source>
        <translation>Missing: %1</translation>
    </message>
    <message>
        <source>，</source>
        <translation>, </translation>
    </message>
</context>
<context>
    <name>SettingsStore</name>
    <message>
        <source>%1 已被改动：%2</source>
        <translation>%1 was edited: %2</translation>
    </message>
    <message>
        <source>无法读取，覆盖前会另存一份</source>
        <translation>it cannot be read, a copy is kept before it is overwritten</translation>
    </message>
    <message>
        <source>标定数据与程序中的不同</source>
        <translation>its calibration differs from the program’s</translation>
    </message>
    <message>
        <source>%1 无法写入</source>
        <translation>%1 cannot be written</translation>
    </message>
    <message>
        <source>，</source>
        <translation>, </translation>
    </message>
    <message>
        <source>工位%1：%2</source>
        <translation>Station %1: %2</translation>
    </message>
</context>
<context>
    <name>SqlText</name>
    <message>
        <source>文字太长：最多%1个字符，现为%2个。</source>
        <translation>Too long: %2 characters, at most %1 fit.</translation>
    </message>
    <message>
        <source>文字中不能含有单引号（'）。</source>
        <translation>An apostrophe (') is not possible here.</translation>
    </message>
    <message>
        <source>文字中的百分号（%）后面不能跟数字。</source>
        <translation>A per cent sign (%) must not be followed by a digit.</translation>
    </message>
    <message>
        <source>文字中含有不完整的字符。</source>
        <translation>The text holds an incomplete character.</translation>
    </message>
    <message>
        <source>文字中不能含有换行等控制字符。</source>
        <translation>Line breaks and control characters are not possible here.</translation>
    </message>
    <message>
        <source>型号名不能为空。</source>
        <translation>The model needs a name.</translation>
    </message>
    <message>
        <source>型号名的开头和结尾不能是空格。</source>
        <translation>A model’s name has no blanks at its ends.</translation>
    </message>
    <message>
        <source>型号名中不能含有字符 %1</source>
        <translation>A model’s name cannot hold the character %1</translation>
    </message>
    <message>
        <source>型号名“%1”不能用作文件夹名。</source>
        <translation>“%1” cannot be a folder’s name.</translation>
    </message>
    <message>
        <source>型号名中含有看不见的字符。</source>
        <translation>The model name holds a character that cannot be seen.</translation>
    </message>
</context>
</TS>
