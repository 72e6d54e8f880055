<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="zh_CN">
<context>
    <name>CalibrationDialog</name>
    <message>
        <source>引导标定(&amp;G)…</source>
        <translation>&amp;Guided calibration…</translation>
    </message>
</context>
<context>
    <name>CalibrationDraft</name>
    <message>
        <source>还没有找到标定板</source>
        <translation>The board was not found yet</translation>
    </message>
    <message>
        <source>P%1 在图像之外</source>
        <translation>P%1 lies outside the picture</translation>
    </message>
    <message>
        <source>P%1 与 P%2 重合</source>
        <translation>P%1 and P%2 lie on each other</translation>
    </message>
    <message>
        <source>图像点 P1、P2、P3 共线</source>
        <translation>P1, P2 and P3 lie on a line in the picture</translation>
    </message>
    <message>
        <source>点距应大于 0</source>
        <translation>The pitch has to be above 0</translation>
    </message>
    <message>
        <source>两点的实际距离应大于 0</source>
        <translation>The real distance has to be above 0</translation>
    </message>
    <message>
        <source>场景点 P1、P2、P3 共线或重合</source>
        <translation>The real points P1, P2 and P3 lie on a line or on each other</translation>
    </message>
    <message>
        <source>由这些点得不到标定</source>
        <translation>These points make no calibration</translation>
    </message>
    <message>
        <source>残差过大：%1 mm，请检查点的位置和坐标</source>
        <translation>Residual too large: %1 mm; check the points and their coordinates</translation>
    </message>
    <message>
        <source>镜头畸变在图像角上相当于 %1 mm，零件请尽量放在中间</source>
        <translation>The lens makes %1 mm at the picture’s corner; keep the parts near the middle</translation>
    </message>
</context>
<context>
    <name>CalibrationGuide</name>
    <message>
        <source>现有的标定图像</source>
        <translation>present reference picture</translation>
    </message>
    <message>
        <source>参数已生效</source>
        <translation>In force now</translation>
    </message>
    <message>
        <source>参数已生效，但未能保存：%1</source>
        <translation>In force now, but not saved: %1</translation>
    </message>
    <message>
        <source>参数已生效，但未留下记录：%1</source>
        <translation>In force now, but not recorded: %1</translation>
    </message>
    <message>
        <source>参数已生效，但标定图像未保存：%1</source>
        <translation>In force now, but the reference picture was not saved: %1</translation>
    </message>
    <message>
        <source>（现在）</source>
        <translation> (now)</translation>
    </message>
    <message>
        <source>已恢复标定 %1</source>
        <translation>Calibration %1 is in force again</translation>
    </message>
    <message>
        <source>没有以前的标定</source>
        <translation>No earlier calibration</translation>
    </message>
    <message>
        <source>工位%1：标定生效中</source>
        <translation>Station %1: calibration active</translation>
    </message>
    <message>
        <source>工位%1：标定未生效</source>
        <translation>Station %1: not calibrated</translation>
    </message>
    <message>
        <source>以前的标定(&amp;E)</source>
        <translation>&amp;Earlier ones</translation>
    </message>
    <message>
        <source>应用(&amp;Y)</source>
        <translation>&amp;Apply</translation>
    </message>
    <message>
        <source>引导标定</source>
        <translation>Guided calibration</translation>
    </message>
</context>
<context>
    <name>CalibrationPicture</name>
    <message>
        <source>首点 → X</source>
        <translation>first → X</translation>
    </message>
    <message>
        <source>无特征</source>
        <translation>nothing</translation>
    </message>
    <message>
        <source>孔中心</source>
        <translation>hole</translation>
    </message>
    <message>
        <source>角点</source>
        <translation>corner</translation>
    </message>
    <message>
        <source>边缘</source>
        <translation>edge</translation>
    </message>
</context>
<context>
    <name>CamerasPage</name>
    <message>
        <source>接通相机，等它们出现在列表中；选择一台，分配给工位。</source>
        <translation>Connect the cameras and wait for them in the list; choose one and give it to a station.</translation>
    </message>
    <message>
        <source>已配置为“%1”</source>
        <translation>configured as “%1”</translation>
    </message>
    <message>
        <source>正在查找相机…</source>
        <translation>Looking for cameras…</translation>
    </message>
    <message>
        <source>未能添加相机：%1</source>
        <translation>The camera was not added: %1</translation>
    </message>
    <message>
        <source>工位%1使用相机“%2”，但未能保存：%3</source>
        <translation>Station %1 uses camera “%2”, but this was not saved: %3</translation>
    </message>
    <message>
        <source>选中的相机用于工位%1</source>
        <translation>Use the chosen camera for station %1</translation>
    </message>
    <message>
        <source>选中的相机用于工位%1（现在：%2）</source>
        <translation>Use the chosen camera for station %1 (now: %2)</translation>
    </message>
    <message>
        <source>还没有配置相机</source>
        <translation>No camera is configured yet</translation>
    </message>
    <message>
        <source>已配置的相机：%1</source>
        <translation>Configured cameras: %1</translation>
    </message>
    <message>
        <source>、</source>
        <translation>, </translation>
    </message>
    <message>
        <source>重新查找(&amp;L)</source>
        <translation>&amp;Look again</translation>
    </message>
    <message>
        <source>相机管理(&amp;M)…</source>
        <translation>&amp;Manage cameras…</translation>
    </message>
    <message>
        <source>相机</source>
        <translation>Cameras</translation>
    </message>
</context>
<context>
    <name>CheckPage</name>
    <message>
        <source>新参数在归档的最近图像上试运行：同型号的零件应找到，别的型号不应找到。选择工位，按“保存”。</source>
        <translation>The new parameters run on the last pictures of the archive: parts of this model should be found, others not. Choose the stations and save.</translation>
    </message>
    <message>
        <source>请至少选择一个工位</source>
        <translation>Choose a station at least</translation>
    </message>
    <message>
        <source>此引擎不能试运行未保存的参数；保存后请在任务设计器中复检</source>
        <translation>This engine cannot try parameters that are not saved; save, then re-run images in the designer</translation>
    </message>
    <message>
        <source>角度 %1°
得分 %2，次优 %3
%4</source>
        <translation>angle %1°
score %2, second %3
%4</translation>
    </message>
    <message>
        <source>未找到：%1
%2</source>
        <translation>not found: %1
%2</translation>
    </message>
    <message>
        <source>保存到工位1（%1）</source>
        <translation>Save for station 1 (%1)</translation>
    </message>
    <message>
        <source>保存到工位2（%1）</source>
        <translation>Save for station 2 (%1)</translation>
    </message>
    <message>
        <source>图像</source>
        <translation>Picture</translation>
    </message>
    <message>
        <source>结果</source>
        <translation>Result</translation>
    </message>
    <message>
        <source>工位%1的归档中没有图像可以检查</source>
        <translation>The archive of station %1 has no pictures to check</translation>
    </message>
    <message>
        <source>最近 %1 幅图像：已试 %2 幅，找到 %3 幅</source>
        <translation>Last %1 pictures: %2 tried, found in %3</translation>
    </message>
    <message>
        <source>检查与保存</source>
        <translation>Check, save</translation>
    </message>
</context>
<context>
    <name>ComparePage</name>
    <message>
        <source>对比与应用</source>
        <translation>Compare, apply</translation>
    </message>
    <message>
        <source>同一位置按现在的标定和新标定各得到什么坐标；在图像中点击可以比较别处。无误后按“应用”，随时可以撤销。</source>
        <translation>What the same place gets by the present calibration and by the new one; click in the picture to compare another place. Then apply; it can be taken back at any time.</translation>
    </message>
    <message>
        <source>测试点</source>
        <translation>Test</translation>
    </message>
    <message>
        <source>无标定</source>
        <translation>none</translation>
    </message>
    <message>
        <source>上一个零件</source>
        <translation>Last part</translation>
    </message>
    <message>
        <source>上一个零件：%1</source>
        <translation>Last part: %1</translation>
    </message>
    <message>
        <source>此工位还没有可比较的零件记录</source>
        <translation>No part of this station to compare with yet</translation>
    </message>
    <message>
        <source>现在 X/Y</source>
        <translation>Now X/Y</translation>
    </message>
    <message>
        <source>新 X/Y</source>
        <translation>New X/Y</translation>
    </message>
    <message>
        <source>差 mm</source>
        <translation>Change mm</translation>
    </message>
</context>
<context>
    <name>FirstStart</name>
    <message>
        <source>型号</source>
        <translation>Model</translation>
    </message>
    <message>
        <source>示教第一个型号：给它名称和 PLC 索引，拍一张照，引擎提出参数。</source>
        <translation>Teach the first model: give it a name and a PLC index, take a picture, and the engine proposes the parameters.</translation>
    </message>
    <message>
        <source>引导示教(&amp;T)…</source>
        <translation>Guided &amp;teaching…</translation>
    </message>
    <message>
        <source>已有 %1 个型号</source>
        <translation>%1 models are there</translation>
    </message>
    <message>
        <source>还没有型号</source>
        <translation>No model yet</translation>
    </message>
    <message>
        <source>工位%1：%2</source>
        <translation>Station %1: %2</translation>
    </message>
    <message>
        <source>标定有效</source>
        <translation>calibrated</translation>
    </message>
    <message>
        <source>标定</source>
        <translation>Calibration</translation>
    </message>
    <message>
        <source>没有标定，X/Y 没有意义；角度不需要标定。</source>
        <translation>Without a calibration X and Y mean nothing; the angle needs none.</translation>
    </message>
    <message>
        <source>引导标定(&amp;G)…</source>
        <translation>&amp;Guided calibration…</translation>
    </message>
    <message>
        <source>启动时不再显示此向导</source>
        <translation>Do not show this assistant at the start again</translation>
    </message>
    <message>
        <source>完成(&amp;D)</source>
        <translation>&amp;Done</translation>
    </message>
    <message>
        <source>首次使用向导</source>
        <translation>Start assistant</translation>
    </message>
    <message>
        <source>还没有标定</source>
        <translation>not calibrated yet</translation>
    </message>
</context>
<context>
    <name>GuideDialog</name>
    <message>
        <source>下一步(&amp;N)</source>
        <translation>&amp;Next</translation>
    </message>
    <message>
        <source>关闭(&amp;C)</source>
        <translation>&amp;Close</translation>
    </message>
    <message>
        <source>上一步(&amp;B)</source>
        <translation>&amp;Back</translation>
    </message>
</context>
<context>
    <name>LanguagePage</name>
    <message>
        <source>请选择程序的语言。每一步都可以跳过；以后可在“帮助”窗口重新打开本向导。</source>
        <translation>Choose the program’s language. Each step can be passed by; the assistant is found again in the help window.</translation>
    </message>
    <message>
        <source>语言</source>
        <translation>Language</translation>
    </message>
</context>
<context>
    <name>LibraryTable</name>
    <message>
        <source>已示教</source>
        <translation>taught</translation>
    </message>
    <message>
        <source>未示教</source>
        <translation>not taught</translation>
    </message>
    <message>
        <source>%1 %（%2 件）</source>
        <translation>%1 % (%2 parts)</translation>
    </message>
    <message>
        <source>正在运行</source>
        <translation>running now</translation>
    </message>
    <message>
        <source>图像</source>
        <translation>Picture</translation>
    </message>
    <message>
        <source>型号</source>
        <translation>Model</translation>
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
        <source>索引 1</source>
        <translation>Index 1</translation>
    </message>
    <message>
        <source>索引 2</source>
        <translation>Index 2</translation>
    </message>
    <message>
        <source>最近出现</source>
        <translation>Last seen</translation>
    </message>
    <message>
        <source>合格率</source>
        <translation>Yield</translation>
    </message>
</context>
<context>
    <name>MarkPage</name>
    <message>
        <source>标记</source>
        <translation>Marks</translation>
    </message>
    <message>
        <source>依次点击 %1 个点：点击会吸附到孔中心、角点或边缘；标记可以拖动，也可以用方向键微调（Shift 10 像素，Ctrl 0.1 像素）。</source>
        <translation>Click %1 points, one after the other: a click snaps to a hole’s centre, a corner or an edge. Markers can be dragged, or moved by the arrow keys (Shift 10 pixels, Ctrl 0.1 pixel).</translation>
    </message>
    <message>
        <source>数一数一行和一列有多少个点（棋盘格数内角点），找到后图上显示首点和 X 方向。</source>
        <translation>Count the points of a row and of a column (of a chessboard its inner corners). Once it is found, the picture shows the first point and the way of X.</translation>
    </message>
    <message>
        <source>正在查找标定板…</source>
        <translation>Looking for the board…</translation>
    </message>
    <message>
        <source>标定方法</source>
        <translation>Method</translation>
    </message>
    <message>
        <source>四个已知点</source>
        <translation>Four known points</translation>
    </message>
    <message>
        <source>两个已知点</source>
        <translation>Two known points</translation>
    </message>
    <message>
        <source>棋盘格标定板</source>
        <translation>Chessboard</translation>
    </message>
    <message>
        <source>圆点（圆环）标定板</source>
        <translation>Board of dots or rings</translation>
    </message>
    <message>
        <source>X（像素）</source>
        <translation>X (pixels)</translation>
    </message>
    <message>
        <source>Y（像素）</source>
        <translation>Y (pixels)</translation>
    </message>
    <message>
        <source>吸附选中的点(&amp;A)</source>
        <translation>Sn&amp;ap the chosen point</translation>
    </message>
    <message>
        <source>每行点数</source>
        <translation>Points in a row</translation>
    </message>
    <message>
        <source>行数</source>
        <translation>Rows</translation>
    </message>
    <message>
        <source>重新查找(&amp;F)</source>
        <translation>&amp;Find again</translation>
    </message>
    <message>
        <source>找到 %1 个点</source>
        <translation>%1 points found</translation>
    </message>
    <message>
        <source>没有找到：整块标定板都要在图像中，行数和每行点数要对，光照要均匀</source>
        <translation>Not found: the whole board has to be in the picture, rows and points in a row have to be right, and the light even</translation>
    </message>
</context>
<context>
    <name>ModelLibrary</name>
    <message>
        <source>引导示教(&amp;T)…</source>
        <translation>Guided &amp;teaching…</translation>
    </message>
    <message>
        <source>重新示教“%1”(&amp;T)…</source>
        <translation>&amp;Teach “%1” anew…</translation>
    </message>
    <message>
        <source>%1 / %2 个型号</source>
        <translation>%1 / %2 models</translation>
    </message>
    <message>
        <source>未能复制“%1”：%2</source>
        <translation>“%1” was not copied: %2</translation>
    </message>
    <message>
        <source>“%1”的参数已复制到工位%2；孔的示例图像不随之复制</source>
        <translation>The parameters of “%1” are copied to station %2; its examples stay</translation>
    </message>
    <message>
        <source>查找(&amp;F)</source>
        <translation>&amp;Find</translation>
    </message>
    <message>
        <source>型号名称的一部分</source>
        <translation>part of a model’s name</translation>
    </message>
    <message>
        <source>查找型号</source>
        <translation>Find a model</translation>
    </message>
    <message>
        <source>2 → 1 复制(&amp;1)</source>
        <translation>Copy 2 → &amp;1</translation>
    </message>
    <message>
        <source>把工位2的参数复制到工位1</source>
        <translation>Copies the parameters of station 2 to station 1</translation>
    </message>
    <message>
        <source>1 → 2 复制(&amp;2)</source>
        <translation>Copy 1 → &amp;2</translation>
    </message>
    <message>
        <source>把工位1的参数复制到工位2</source>
        <translation>Copies the parameters of station 1 to station 2</translation>
    </message>
    <message>
        <source>型号管理(&amp;M)…</source>
        <translation>&amp;Manage models…</translation>
    </message>
    <message>
        <source>刷新(&amp;R)</source>
        <translation>&amp;Refresh</translation>
    </message>
    <message>
        <source>最近 %1 天的记录，F5</source>
        <translation>Records of the last %1 days, F5</translation>
    </message>
</context>
<context>
    <name>ModelLibraryDialog</name>
    <message>
        <source>型号库</source>
        <translation>Library of models</translation>
    </message>
</context>
<context>
    <name>NamePage</name>
    <message>
        <source>此工位没有可以取像的相机</source>
        <translation>This station has no camera that takes pictures</translation>
    </message>
    <message>
        <source>输入型号名称和 PLC 索引，把轮毂放到相机下拍照；也可以用归档中最新的图像或图像文件。</source>
        <translation>Type the model’s name and PLC index, place the wheel under the camera and take a picture; the latest one of the archive or a file will do as well.</translation>
    </message>
    <message>
        <source>PLC索引：%1</source>
        <translation>PLC index: %1</translation>
    </message>
    <message>
        <source>还没有图像</source>
        <translation>No picture yet</translation>
    </message>
    <message>
        <source>型号“%1”已经存在：保存时用新的参数代替它原来的参数</source>
        <translation>Model “%1” is there already: saving puts the new parameters in the place of its own</translation>
    </message>
    <message>
        <source>型号名称</source>
        <translation>Model name</translation>
    </message>
    <message>
        <source>PLC 索引</source>
        <translation>PLC index</translation>
    </message>
    <message>
        <source>图像来自</source>
        <translation>Picture from</translation>
    </message>
    <message>
        <source>工位%1</source>
        <translation>Station %1</translation>
    </message>
    <message>
        <source>拍照(&amp;S)</source>
        <translation>&amp;Take a picture</translation>
    </message>
    <message>
        <source>归档中最新的图像(&amp;L)</source>
        <translation>&amp;Latest of the archive</translation>
    </message>
    <message>
        <source>图像文件(&amp;F)…</source>
        <translation>Image &amp;file…</translation>
    </message>
    <message>
        <source>图像：%1</source>
        <translation>Picture: %1</translation>
    </message>
    <message>
        <source>名称与图像</source>
        <translation>Name, picture</translation>
    </message>
</context>
<context>
    <name>PictureDesk</name>
    <message>
        <source>相机“%1”没有图像：%2</source>
        <translation>No picture from camera “%1”: %2</translation>
    </message>
    <message>
        <source>相机“%1”现在不能取像，请检查连接，或选择图像文件</source>
        <translation>Camera “%1” takes no picture now; check its connection, or choose a file</translation>
    </message>
    <message>
        <source>选择图像</source>
        <translation>Choose a picture</translation>
    </message>
    <message>
        <source>图像 (%1)</source>
        <translation>Images (%1)</translation>
    </message>
    <message>
        <source>未能读取图像：%1</source>
        <translation>The picture cannot be read: %1</translation>
    </message>
</context>
<context>
    <name>PicturePage</name>
    <message>
        <source>图像</source>
        <translation>Picture</translation>
    </message>
    <message>
        <source>让标定板或有已知点的零件静止在相机下，拍照；也可以用图像文件或现有的标定图像。</source>
        <translation>Place a board, or a part with known points, under the camera and take a picture; a file or the present reference picture will do as well.</translation>
    </message>
    <message>
        <source>还没有图像</source>
        <translation>No picture yet</translation>
    </message>
    <message>
        <source>工位</source>
        <translation>Station</translation>
    </message>
    <message>
        <source>工位%1</source>
        <translation>Station %1</translation>
    </message>
    <message>
        <source>拍照(&amp;S)</source>
        <translation>&amp;Take a picture</translation>
    </message>
    <message>
        <source>此工位没有可以取像的相机</source>
        <translation>This station has no camera that takes pictures</translation>
    </message>
    <message>
        <source>图像文件(&amp;F)…</source>
        <translation>Image &amp;file…</translation>
    </message>
    <message>
        <source>现有的标定图像(&amp;R)</source>
        <translation>Present &amp;reference picture</translation>
    </message>
    <message>
        <source>图像：%1，%2 × %3 像素</source>
        <translation>Picture: %1, %2 × %3 pixels</translation>
    </message>
</context>
<context>
    <name>PortPage</name>
    <message>
        <source>正在监听 %1 …</source>
        <translation>Listening at %1 …</translation>
    </message>
    <message>
        <source>在任何串口都没有收到 PLC 的帧：请检查 PLC 是否运行、接线和波特率 %1</source>
        <translation>No frame of the PLC at any port: check whether it runs, the cable and the baud rate %1</translation>
    </message>
    <message>
        <source>让 PLC 运行，按“查找”：程序逐个打开串口，收到 PLC 心跳的就是它。</source>
        <translation>Let the PLC run and press “Find”: the program opens one port after the other; where the PLC’s frames arrive is the one.</translation>
    </message>
    <message>
        <source>串口 %1 已启用，但未能保存</source>
        <translation>Port %1 is in use, but was not saved</translation>
    </message>
    <message>
        <source>串口 %1 已打开</source>
        <translation>Port %1 is open</translation>
    </message>
    <message>
        <source>串口 %1 没有打开</source>
        <translation>Port %1 is not open</translation>
    </message>
    <message>
        <source>查找 PLC(&amp;F)</source>
        <translation>&amp;Find the PLC</translation>
    </message>
    <message>
        <source>使用选中的串口(&amp;U)</source>
        <translation>&amp;Use the chosen port</translation>
    </message>
    <message>
        <source>串口</source>
        <translation>Serial port</translation>
    </message>
</context>
<context>
    <name>ProposalPage</name>
    <message>
        <source>圆圈应落在轮缘和气门孔上。若不对，先点击轮毂中心，再点击气门孔中心，引擎立即重新测量。</source>
        <translation>The circles should lie on the rim and on the valve hole. If they do not, click the wheel’s centre, then the hole’s; the engine measures anew after each click.</translation>
    </message>
    <message>
        <source>引擎正在测量…</source>
        <translation>The engine is measuring…</translation>
    </message>
    <message>
        <source>点击的是轮毂中心(&amp;W)</source>
        <translation>The click is the &amp;wheel’s centre</translation>
    </message>
    <message>
        <source>点击的是气门孔中心(&amp;H)</source>
        <translation>The click is the &amp;hole’s centre</translation>
    </message>
    <message>
        <source>忘记点击，重新建议(&amp;R)</source>
        <translation>Fo&amp;rget the clicks, propose anew</translation>
    </message>
    <message>
        <source>角度 %1°，得分 %2
轮缘半径 %3 像素
孔心到中心 %4 像素
孔半径 %5 像素</source>
        <translation>angle %1°, score %2
rim radius %3 pixels
hole to centre %4 pixels
hole radius %5 pixels</translation>
    </message>
    <message>
        <source>建议</source>
        <translation>Proposal</translation>
    </message>
</context>
<context>
    <name>QHelpUI</name>
    <message>
        <source>首次使用向导(&amp;A)…</source>
        <translation>Start &amp;assistant…</translation>
    </message>
</context>
<context>
    <name>QModelMangerUI</name>
    <message>
        <source>引导示教(&amp;T)…</source>
        <translation>Guided &amp;teaching…</translation>
    </message>
    <message>
        <source>型号库(&amp;L)…</source>
        <translation>&amp;Library…</translation>
    </message>
</context>
<context>
    <name>RealPage</name>
    <message>
        <source>输入点距；要得到机器坐标，再输入首点的位置和行的方向。</source>
        <translation>Type the pitch; for machine coordinates also where the first point lies and how the rows run.</translation>
    </message>
    <message>
        <source>输入标定板的点距，比例由所有点算出。</source>
        <translation>Type the board’s pitch; the scale comes from all its points.</translation>
    </message>
    <message>
        <source>输入每个点的机器坐标，单位毫米。</source>
        <translation>Type each point’s machine coordinates in millimetres.</translation>
    </message>
    <message>
        <source>输入两点的实际距离，单位毫米。</source>
        <translation>Type the real distance of the two points in millimetres.</translation>
    </message>
    <message>
        <source>P%1 的机器坐标 X，Y（mm）</source>
        <translation>P%1 in the machine: X, Y (mm)</translation>
    </message>
    <message>
        <source>P1 到 P2 的实际距离（mm）</source>
        <translation>Real distance from P1 to P2 (mm)</translation>
    </message>
    <message>
        <source>点距（mm）</source>
        <translation>Pitch (mm)</translation>
    </message>
    <message>
        <source>首点的机器坐标 X，Y（mm）</source>
        <translation>First point in the machine: X, Y (mm)</translation>
    </message>
    <message>
        <source>从机器 X 轴到标定板行的角度（°）</source>
        <translation>From the machine’s X to the rows (°)</translation>
    </message>
    <message>
        <source>机器 Y 轴在图像中向上</source>
        <translation>The machine’s Y points up in the picture</translation>
    </message>
    <message>
        <source>实际坐标</source>
        <translation>Real points</translation>
    </message>
</context>
<context>
    <name>ResidualPage</name>
    <message>
        <source>残差</source>
        <translation>Residuals</translation>
    </message>
    <message>
        <source>残差是标定与各点实际坐标之差，应小于所需的精度；最大的点若明显大于其他点，请回去检查它。</source>
        <translation>How far the calibration misses each point; it should be below the accuracy that is needed. If one point misses by much more than the others, go back and check it.</translation>
    </message>
    <message>
        <source>行%1列%2</source>
        <translation>row %1, point %2</translation>
    </message>
    <message>
        <source>X（mm）</source>
        <translation>X (mm)</translation>
    </message>
    <message>
        <source>Y（mm）</source>
        <translation>Y (mm)</translation>
    </message>
    <message>
        <source>距离（mm）</source>
        <translation>Distance (mm)</translation>
    </message>
    <message>
        <source>残差：均方根 %1 mm，最大 %2 mm</source>
        <translation>Residual: RMS %1 mm, largest %2 mm</translation>
    </message>
    <message>
        <source>比例：X %1，Y %2 mm/像素</source>
        <translation>Scale: X %1, Y %2 mm/pixel</translation>
    </message>
    <message>
        <source>镜头畸变：在图像角上 %1 像素，相当于 %2 mm（%3）</source>
        <translation>Lens distortion: %1 pixels at the picture’s corner, that is %2 mm (%3)</translation>
    </message>
    <message>
        <source>桶形</source>
        <translation>barrel</translation>
    </message>
    <message>
        <source>枕形</source>
        <translation>cushion</translation>
    </message>
    <message>
        <source>镜头畸变：用标定板才能测出</source>
        <translation>Lens distortion: only a board shows it</translation>
    </message>
</context>
<context>
    <name>TeachingGuide</name>
    <message>
        <source>新型号</source>
        <translation>New model</translation>
    </message>
    <message>
        <source>工位%1的归档中没有图像</source>
        <translation>The archive of station %1 has no pictures</translation>
    </message>
    <message>
        <source>未能保存型号“%1”：%2</source>
        <translation>Model “%1” was not saved: %2</translation>
    </message>
    <message>
        <source>已保存型号“%1”，PLC 发来它的索引时即可使用。可以接着示教下一个型号。</source>
        <translation>Model “%1” is saved and runs when the PLC sends its index. The next one can be taught.</translation>
    </message>
    <message>
        <source>任务设计器(&amp;D)…</source>
        <translation>&amp;Designer…</translation>
    </message>
    <message>
        <source>此引擎不提出建议，请在任务设计器中示教</source>
        <translation>This engine proposes nothing; teach in the designer</translation>
    </message>
    <message>
        <source>保存(&amp;S)</source>
        <translation>&amp;Save</translation>
    </message>
    <message>
        <source>引导示教</source>
        <translation>Guided teaching</translation>
    </message>
</context>
</TS>
