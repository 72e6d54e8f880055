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
    <name>QModelMangerUI</name>
    <message>
        <source>引导示教(&amp;T)…</source>
        <translation>Guided &amp;teaching…</translation>
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
