<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="zh_CN">
<context>
    <name>BatchPanel</name>
    <message>
        <source>选择文件夹…</source>
        <translation>Choose folder…</translation>
    </message>
    <message>
        <source>双击一行，在试运行中打开该图像</source>
        <translation>Double-click a row to open its image for a trial</translation>
    </message>
    <message>
        <source>只看有变化或未找到的</source>
        <translation>Only what changed or was not found</translation>
    </message>
    <message>
        <source>导出 CSV…</source>
        <translation>Export CSV…</translation>
    </message>
    <message>
        <source>归档日期</source>
        <translation>Archive day</translation>
    </message>
    <message>
        <source>不对比</source>
        <translation>nothing</translation>
    </message>
    <message>
        <source>编辑中的参数</source>
        <translation>the edited parameters</translation>
    </message>
    <message>
        <source>型号 %1</source>
        <translation>model %1</translation>
    </message>
    <message>
        <source>选择图像文件夹</source>
        <translation>Choose a folder of images</translation>
    </message>
    <message>
        <source>编辑中的参数有误，请先改正</source>
        <translation>The edited parameters are wrong; correct them first</translation>
    </message>
    <message>
        <source>当前</source>
        <translation>Stored</translation>
    </message>
    <message>
        <source>编辑</source>
        <translation>Edited</translation>
    </message>
    <message>
        <source>文件夹中没有图像</source>
        <translation>There are no images in the folder</translation>
    </message>
    <message>
        <source>导出</source>
        <translation>Export</translation>
    </message>
    <message>
        <source>已导出 %1</source>
        <translation>Exported %1</translation>
    </message>
    <message>
        <source>未能导出 %1</source>
        <translation>Could not export %1</translation>
    </message>
    <message>
        <source>停止</source>
        <translation>Stop</translation>
    </message>
    <message>
        <source>开始复检</source>
        <translation>Start</translation>
    </message>
    <message>
        <source>已保存的“%1”，对比</source>
        <translation>Stored "%1" against</translation>
    </message>
</context>
<context>
    <name>BatchSummary</name>
    <message>
        <source>共 %1 张</source>
        <translation>%1 images</translation>
    </message>
    <message>
        <source>无法读取 %1</source>
        <translation>%1 unreadable</translation>
    </message>
    <message>
        <source>找到 %1 → %2</source>
        <translation>found %1 → %2</translation>
    </message>
    <message>
        <source>新找到 %1</source>
        <translation>gained %1</translation>
    </message>
    <message>
        <source>丢失 %1</source>
        <translation>lost %1</translation>
    </message>
    <message>
        <source>移动 %1（最大 %2 px）</source>
        <translation>moved %1 (at most %2 px)</translation>
    </message>
    <message>
        <source>最慢 %1 → %2 ms</source>
        <translation>slowest %1 → %2 ms</translation>
    </message>
    <message>
        <source>找到 %1</source>
        <translation>found %1</translation>
    </message>
    <message>
        <source>未找到 %1</source>
        <translation>not found %1</translation>
    </message>
    <message>
        <source>最慢 %1 ms（%2）</source>
        <translation>slowest %1 ms (%2)</translation>
    </message>
    <message>
        <source>，</source>
        <translation>, </translation>
    </message>
</context>
<context>
    <name>BatchTable</name>
    <message>
        <source>找到</source>
        <translation>Found</translation>
    </message>
    <message>
        <source>未找到</source>
        <translation>Not found</translation>
    </message>
    <message>
        <source>结果</source>
        <translation>Result</translation>
    </message>
    <message>
        <source>角度°</source>
        <translation>Angle °</translation>
    </message>
    <message>
        <source>得分</source>
        <translation>Score</translation>
    </message>
    <message>
        <source>ms</source>
        <translation>ms</translation>
    </message>
    <message>
        <source>X px</source>
        <translation>X px</translation>
    </message>
    <message>
        <source>Y px</source>
        <translation>Y px</translation>
    </message>
    <message>
        <source>残差 px</source>
        <translation>Residual px</translation>
    </message>
    <message>
        <source>图像</source>
        <translation>Image</translation>
    </message>
    <message>
        <source>变化</source>
        <translation>Change</translation>
    </message>
    <message>
        <source>移动
px</source>
        <translation>Moved
px</translation>
    </message>
    <message>
        <source>转动
°</source>
        <translation>Turned
°</translation>
    </message>
    <message>
        <source>一致</source>
        <translation>Same</translation>
    </message>
    <message>
        <source>移动</source>
        <translation>Moved</translation>
    </message>
    <message>
        <source>新找到</source>
        <translation>Gained</translation>
    </message>
    <message>
        <source>丢失</source>
        <translation>Lost</translation>
    </message>
    <message>
        <source>均未找到</source>
        <translation>Both missed</translation>
    </message>
    <message>
        <source>无法读取</source>
        <translation>Unreadable</translation>
    </message>
    <message>
        <source>孔</source>
        <translation>hole</translation>
    </message>
    <message>
        <source>误认</source>
        <translation>not the hole</translation>
    </message>
    <message>
        <source>人工
确认</source>
        <translation>Judged
by hand</translation>
    </message>
</context>
<context>
    <name>DesignerWindow</name>
    <message>
        <source>任务设计器[*]</source>
        <translation>Task Designer[*]</translation>
    </message>
    <message>
        <source>试运行与示教</source>
        <translation>Try and teach</translation>
    </message>
    <message>
        <source>批量复检</source>
        <translation>Re-run images</translation>
    </message>
    <message>
        <source>没有可用的检测引擎，无法设计型号。</source>
        <translation>There is no inspection engine, so models cannot be designed.</translation>
    </message>
    <message>
        <source>当前检测引擎不提供方案库接口，不能在此查看和修改型号。
请使用引擎自带的工具。

引擎中的方案：%1</source>
        <translation>The inspection engine does not open its solutions, so models cannot be seen or changed here.
Please use the tools that came with the engine.

Solutions of the engine: %1</translation>
    </message>
    <message>
        <source>无</source>
        <translation>none</translation>
    </message>
    <message>
        <source>、</source>
        <translation>, </translation>
    </message>
    <message>
        <source>以下型号有未保存的更改：%1</source>
        <translation>Models with unsaved changes: %1</translation>
    </message>
    <message>
        <source>全部保存并关闭</source>
        <translation>Save all and close</translation>
    </message>
    <message>
        <source>放弃更改并关闭</source>
        <translation>Drop changes and close</translation>
    </message>
    <message>
        <source>未能保存“%1”：%2</source>
        <translation>Could not save "%1": %2</translation>
    </message>
    <message>
        <source>“%1”已加入孔示例 %2</source>
        <translation>"%1": %2 was added to the examples of the hole</translation>
    </message>
    <message>
        <source>“%1”已加入误认示例 %2</source>
        <translation>"%1": %2 was added to what is not the hole</translation>
    </message>
</context>
<context>
    <name>ExamplePanel</name>
    <message>
        <source>已确认的孔；右侧为远离轮毂中心的方向</source>
        <translation>Confirmed holes; away from the hub is to the right</translation>
    </message>
    <message>
        <source>曾被误认为孔的位置</source>
        <translation>Places that were wrongly taken for the hole</translation>
    </message>
    <message>
        <source>移除所选示例</source>
        <translation>Remove example</translation>
    </message>
    <message>
        <source>采用建议</source>
        <translation>Apply suggestion</translation>
    </message>
    <message>
        <source>孔示例：%1</source>
        <translation>Examples of the hole: %1</translation>
    </message>
    <message>
        <source>误认示例：%1</source>
        <translation>Not the hole: %1</translation>
    </message>
    <message>
        <source>建议尺寸（px）：</source>
        <translation>Suggested sizes (px):</translation>
    </message>
    <message>
        <source>已从“%1”移除一个示例</source>
        <translation>An example of "%1" was removed</translation>
    </message>
    <message>
        <source>未能移除示例：%1</source>
        <translation>The example could not be removed: %1</translation>
    </message>
    <message>
        <source>已填入建议的尺寸，请核对结果后保存</source>
        <translation>The suggested sizes are filled in; check the result, then save</translation>
    </message>
</context>
<context>
    <name>ExampleStore</name>
    <message>
        <source>未能加入示例：%1</source>
        <translation>The example could not be added: %1</translation>
    </message>
</context>
<context>
    <name>ModelDrafts</name>
    <message>
        <source>%1：%2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>请输入名称</source>
        <translation>Enter a name</translation>
    </message>
    <message>
        <source>名称首尾不能有空格</source>
        <translation>A name has no spaces at its ends</translation>
    </message>
    <message>
        <source>已有名为“%1”的型号</source>
        <translation>There is a model "%1" already</translation>
    </message>
    <message>
        <source>名称中含有看不见的字符</source>
        <translation>The name holds a character that cannot be seen</translation>
    </message>
</context>
<context>
    <name>ModelPanel</name>
    <message>
        <source>方案</source>
        <translation>Solution</translation>
    </message>
    <message>
        <source>新建方案</source>
        <translation>Add a solution</translation>
    </message>
    <message>
        <source>型号</source>
        <translation>Model</translation>
    </message>
    <message>
        <source>新建…</source>
        <translation>New…</translation>
    </message>
    <message>
        <source>复制…</source>
        <translation>Copy…</translation>
    </message>
    <message>
        <source>改名…</source>
        <translation>Rename…</translation>
    </message>
    <message>
        <source>删除…</source>
        <translation>Remove…</translation>
    </message>
    <message>
        <source>新型号的名称：</source>
        <translation>Name of the new model:</translation>
    </message>
    <message>
        <source>新型号</source>
        <translation>New model</translation>
    </message>
    <message>
        <source>“%1”副本的名称：</source>
        <translation>Name of the copy of "%1":</translation>
    </message>
    <message>
        <source>%1 副本</source>
        <translation>%1 copy</translation>
    </message>
    <message>
        <source>%1（内置，只读）</source>
        <translation>%1 (built in, read only)</translation>
    </message>
    <message>
        <source>%1 *未保存</source>
        <translation>%1 *unsaved</translation>
    </message>
    <message>
        <source>已新建型号“%1”</source>
        <translation>Added model "%1"</translation>
    </message>
    <message>
        <source>新建</source>
        <translation>Add</translation>
    </message>
    <message>
        <source>“%1”已改名为“%2”，请同时更新机型表</source>
        <translation>"%1" is now "%2"; please change the model library as well</translation>
    </message>
    <message>
        <source>请输入新的名称</source>
        <translation>Enter another name</translation>
    </message>
    <message>
        <source>“%1”的新名称：</source>
        <translation>New name of "%1":</translation>
    </message>
    <message>
        <source>改名</source>
        <translation>Rename</translation>
    </message>
    <message>
        <source>删除型号“%1”？此操作不能撤销。</source>
        <translation>Remove model "%1"? There is no way back.</translation>
    </message>
    <message>
        <source>删除</source>
        <translation>Remove</translation>
    </message>
    <message>
        <source>已删除型号“%1”</source>
        <translation>Removed model "%1"</translation>
    </message>
    <message>
        <source>已新建方案“%1”，程序重新启动后可供工位使用</source>
        <translation>Added solution "%1"; a station can use it after the program has been restarted</translation>
    </message>
    <message>
        <source>请输入名称</source>
        <translation>Enter a name</translation>
    </message>
    <message>
        <source>已有此方案</source>
        <translation>There is such a solution already</translation>
    </message>
    <message>
        <source>新方案的名称：</source>
        <translation>Name of the new solution:</translation>
    </message>
</context>
<context>
    <name>ParameterForm</name>
    <message>
        <source>自动</source>
        <translation>auto</translation>
    </message>
</context>
<context>
    <name>ParameterPanel</name>
    <message>
        <source>保存</source>
        <translation>Save</translation>
    </message>
    <message>
        <source>撤销更改</source>
        <translation>Revert</translation>
    </message>
    <message>
        <source>未选择型号</source>
        <translation>No model chosen</translation>
    </message>
    <message>
        <source>内置型号，只读。要修改请先复制。</source>
        <translation>Built in, read only. Copy it to change it.</translation>
    </message>
    <message>
        <source>有未保存的更改</source>
        <translation>Unsaved changes</translation>
    </message>
    <message>
        <source>已保存“%1”，下一次触发起生效</source>
        <translation>Saved "%1"; the next trigger uses it</translation>
    </message>
    <message>
        <source>引擎不接受此值</source>
        <translation>The engine refuses this value</translation>
    </message>
    <message>
        <source>未能保存“%1”：%2</source>
        <translation>Could not save "%1": %2</translation>
    </message>
</context>
<context>
    <name>ParameterRules</name>
    <message>
        <source>轮缘半径</source>
        <translation>Rim radius</translation>
    </message>
    <message>
        <source>轮毂中心到轮缘外边的距离</source>
        <translation>From the hub centre to the outer edge of the rim</translation>
    </message>
    <message>
        <source>孔圆半径</source>
        <translation>Ring radius</translation>
    </message>
    <message>
        <source>轮毂中心到气门孔中心的距离</source>
        <translation>From the hub centre to the centre of the valve hole</translation>
    </message>
    <message>
        <source>气门孔半径</source>
        <translation>Hole radius</translation>
    </message>
    <message>
        <source>气门孔孔口的半径</source>
        <translation>Radius of the valve hole's mouth</translation>
    </message>
    <message>
        <source>得分下限</source>
        <translation>Score limit</translation>
    </message>
    <message>
        <source>得分低于此值的孔不被采信，0 到 1</source>
        <translation>A hole that scores less is not believed, 0 to 1</translation>
    </message>
    <message>
        <source>请输入数字</source>
        <translation>Enter a number</translation>
    </message>
    <message>
        <source>公差应大于 0%，小于 100%</source>
        <translation>A tolerance lies above 0% and below 100%</translation>
    </message>
    <message>
        <source>应在 %1 到 %2 之间</source>
        <translation>Must lie between %1 and %2</translation>
    </message>
    <message>
        <source>孔深</source>
        <translation>Hole depth</translation>
    </message>
    <message>
        <source>气门孔口在轮缘外边后方的深度，0 表示不修正</source>
        <translation>How far the hole's mouth lies behind the rim's edge; 0: no correction</translation>
    </message>
    <message>
        <source>应小于轮缘半径</source>
        <translation>Must be smaller than the rim radius</translation>
    </message>
    <message>
        <source>应小于孔圆半径的一半</source>
        <translation>Must be smaller than half of the ring radius</translation>
    </message>
    <message>
        <source>已示教</source>
        <translation>Taught</translation>
    </message>
    <message>
        <source>%1的公差</source>
        <translation>Tolerance of %1</translation>
    </message>
    <message>
        <source>未示教的型号在线时不给出角度</source>
        <translation>A model that is not taught gives no angle to the line</translation>
    </message>
</context>
<context>
    <name>ResultTable</name>
    <message>
        <source>角度</source>
        <translation>Angle</translation>
    </message>
    <message>
        <source>中心</source>
        <translation>Centre</translation>
    </message>
    <message>
        <source>轮毂中心</source>
        <translation>Hub centre</translation>
    </message>
    <message>
        <source>得分</source>
        <translation>Score</translation>
    </message>
    <message>
        <source>孔边缘</source>
        <translation>Hole edge</translation>
    </message>
    <message>
        <source>用时</source>
        <translation>Time</translation>
    </message>
    <message>
        <source>正在运行…</source>
        <translation>Running…</translation>
    </message>
    <message>
        <source>任务未能运行：方案或型号不存在</source>
        <translation>The task could not run: no such solution or model</translation>
    </message>
    <message>
        <source>已找到气门孔</source>
        <translation>Valve hole found</translation>
    </message>
    <message>
        <source>未找到气门孔</source>
        <translation>No valve hole found</translation>
    </message>
    <message>
        <source>%1（错误码 %2）</source>
        <translation>%1 (error %2)</translation>
    </message>
    <message>
        <source>%1 ms</source>
        <translation>%1 ms</translation>
    </message>
    <message>
        <source>%1（次高 %2）</source>
        <translation>%1 (second %2)</translation>
    </message>
    <message>
        <source>%1，半径 %2 px</source>
        <translation>%1, radius %2 px</translation>
    </message>
    <message>
        <source>%1 px</source>
        <translation>%1 px</translation>
    </message>
    <message>
        <source>%1 点，残差 %2 px</source>
        <translation>%1 points, residual %2 px</translation>
    </message>
</context>
<context>
    <name>ReviewBar</name>
    <message>
        <source>这是气门孔（Y）</source>
        <translation>This is the hole (Y)</translation>
    </message>
    <message>
        <source>这不是气门孔（N）</source>
        <translation>This is not the hole (N)</translation>
    </message>
    <message>
        <source>这是气门孔</source>
        <translation>This is the hole</translation>
    </message>
    <message>
        <source>这不是气门孔</source>
        <translation>This is not the hole</translation>
    </message>
    <message>
        <source>内置型号不能学习示例，请先新建或复制型号。</source>
        <translation>A built-in model keeps no examples; add or copy a model first.</translation>
    </message>
    <message>
        <source>选择一行，核对找到的位置。确认后加入型号的示例。</source>
        <translation>Choose a row and judge the place that was found. It becomes an example of the model.</translation>
    </message>
    <message>
        <source>这张图像没有找到孔。双击打开后，在图像上右击孔的位置。</source>
        <translation>No hole was found in this image. Double-click to open it, then right-click the hole.</translation>
    </message>
</context>
<context>
    <name>TrialView</name>
    <message>
        <source>显示</source>
        <translation>Show</translation>
    </message>
    <message>
        <source>结果</source>
        <translation>Result</translation>
    </message>
    <message>
        <source>原图</source>
        <translation>Image</translation>
    </message>
</context>
<context>
    <name>TryPanel</name>
    <message>
        <source>选择图像…</source>
        <translation>Image…</translation>
    </message>
    <message>
        <source>选定相机后，试运行跟随它的下一张图像</source>
        <translation>Choose a camera to try its next image</translation>
    </message>
    <message>
        <source>不跟随相机</source>
        <translation>no camera</translation>
    </message>
    <message>
        <source>试运行</source>
        <translation>Try</translation>
    </message>
    <message>
        <source>示教…</source>
        <translation>Teach…</translation>
    </message>
    <message>
        <source>取消示教</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>选择一张图像，用所选型号试运行</source>
        <translation>Choose an image to try the chosen model on</translation>
    </message>
    <message>
        <source>示教未成功：%1</source>
        <translation>Teaching failed: %1</translation>
    </message>
    <message>
        <source>选择图像</source>
        <translation>Choose an image</translation>
    </message>
    <message>
        <source>图像 (%1)</source>
        <translation>Images (%1)</translation>
    </message>
    <message>
        <source>无法读取图像 %1</source>
        <translation>Cannot read the image %1</translation>
    </message>
    <message>
        <source>相机 %1</source>
        <translation>Camera %1</translation>
    </message>
    <message>
        <source>%1（%2 × %3）</source>
        <translation>%1 (%2 × %3)</translation>
    </message>
    <message>
        <source>已按示教填入参数，请核对结果后保存</source>
        <translation>Parameters filled in as taught; check the result, then save</translation>
    </message>
    <message>
        <source>已按示教填入参数，请保存后试运行核对</source>
        <translation>Parameters filled in as taught; save them, then try and check</translation>
    </message>
    <message>
        <source>第 1 步：点击轮缘外边上的任意一点（滚轮缩放）</source>
        <translation>Step 1: click any point of the outer edge of the rim (zoom with the wheel)</translation>
    </message>
    <message>
        <source>第 2 步：点击气门孔的中心（滚轮缩放）</source>
        <translation>Step 2: click the middle of the valve hole (zoom with the wheel)</translation>
    </message>
    <message>
        <source>正在计算参数…</source>
        <translation>Computing parameters…</translation>
    </message>
    <message>
        <source>轮缘</source>
        <translation>rim</translation>
    </message>
    <message>
        <source>气门孔</source>
        <translation>valve hole</translation>
    </message>
    <message>
        <source>试运行使用已保存的参数，不含未保存的更改。</source>
        <translation>The trial uses the stored parameters, without unsaved changes.</translation>
    </message>
    <message>
        <source>试运行使用未保存的参数。</source>
        <translation>The trial uses the unsaved parameters.</translation>
    </message>
    <message>
        <source>参数有误，改正后再试运行。</source>
        <translation>Parameters are wrong; correct them to try again.</translation>
    </message>
    <message>
        <source>内置型号不能示教，请先新建或复制型号</source>
        <translation>A built-in model cannot be taught; add or copy one first</translation>
    </message>
    <message>
        <source>请先选择型号和图像</source>
        <translation>Choose a model and an image first</translation>
    </message>
    <message>
        <source>在图像上点两下，由引擎提出全部参数</source>
        <translation>Two clicks on the image, and the engine proposes all parameters</translation>
    </message>
    <message>
        <source>这里是气门孔</source>
        <translation>The hole is here</translation>
    </message>
    <message>
        <source>这里不是气门孔</source>
        <translation>The hole is not here</translation>
    </message>
    <message>
        <source>未能加入示例：%1</source>
        <translation>The example could not be added: %1</translation>
    </message>
</context>
</TS>
