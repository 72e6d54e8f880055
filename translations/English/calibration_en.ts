<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="zh_CN">
<context>
    <name>AwesomeImgViewer</name>
    <message>
        <source>适应窗口	F</source>
        <translation>Fit to window	F</translation>
    </message>
    <message>
        <source>原始大小	0</source>
        <translation>Actual size	0</translation>
    </message>
    <message>
        <source>放大	+</source>
        <translation>Zoom in	+</translation>
    </message>
    <message>
        <source>缩小	-</source>
        <translation>Zoom out	-</translation>
    </message>
    <message>
        <source>复制图像</source>
        <translation>Copy image</translation>
    </message>
    <message>
        <source>图像另存为…</source>
        <translation>Save image as…</translation>
    </message>
</context>
<context>
    <name>CalibrationDialog</name>
    <message>
        <source>相机视场标定</source>
        <translation>Camera field calibration</translation>
    </message>
    <message>
        <source>退出</source>
        <translation>Exit</translation>
    </message>
</context>
<context>
    <name>CalibrationPanel</name>
    <message>
        <source>选择标定图像</source>
        <translation>Choose image</translation>
    </message>
    <message>
        <source>应用</source>
        <translation>Apply</translation>
    </message>
    <message>
        <source>解锁</source>
        <translation>Unlock</translation>
    </message>
    <message>
        <source>上锁</source>
        <translation>Lock</translation>
    </message>
    <message>
        <source>已上锁</source>
        <translation>Locked</translation>
    </message>
    <message>
        <source>已解锁</source>
        <translation>Unlocked</translation>
    </message>
    <message>
        <source>不能操作,请解锁</source>
        <translation>Locked: unlock first</translation>
    </message>
    <message>
        <source>选择标定图</source>
        <translation>Choose calibration image</translation>
    </message>
    <message>
        <source>标定图像未保存：%1</source>
        <translation>Calibration image not saved: %1</translation>
    </message>
    <message>
        <source>参数已生效</source>
        <translation>Parameters are in force</translation>
    </message>
    <message>
        <source>参数已生效，但未能保存：%1</source>
        <translation>In force, but not saved: %1</translation>
    </message>
    <message>
        <source>%1 在图像之外</source>
        <translation>%1 outside the image</translation>
    </message>
    <message>
        <source>“%1”不是数字，按 0 计算</source>
        <translation>“%1” is no number and counts as 0</translation>
    </message>
    <message>
        <source>；</source>
        <translation>; </translation>
    </message>
    <message>
        <source>工位%1相机视场标定</source>
        <translation>Station %1: camera field calibration</translation>
    </message>
    <message>
        <source>以前的标定</source>
        <translation>Earlier</translation>
    </message>
    <message>
        <source>仍然应用</source>
        <translation>Apply all the same</translation>
    </message>
    <message>
        <source>“%1”不是数字，没有应用</source>
        <translation>“%1” is not a number; nothing was applied</translation>
    </message>
    <message>
        <source>参数已生效，但未留下记录：%1</source>
        <translation>In force, but not kept in the history: %1</translation>
    </message>
    <message>
        <source>恢复标定 %1？</source>
        <translation>Take back the calibration %1?</translation>
    </message>
    <message>
        <source>恢复</source>
        <translation>Take back</translation>
    </message>
    <message>
        <source>没有以前的标定</source>
        <translation>No earlier calibrations</translation>
    </message>
    <message>
        <source>“%1”不是数字，不能应用</source>
        <translation>“%1” is not a number and cannot be applied</translation>
    </message>
</context>
<context>
    <name>FourPointForm</name>
    <message>
        <source>图像四点坐标：</source>
        <translation>Image points (px):</translation>
    </message>
    <message>
        <source>场景四点坐标：</source>
        <translation>Machine points (mm):</translation>
    </message>
    <message>
        <source>测试点：</source>
        <translation>Test point:</translation>
    </message>
    <message>
        <source>像素坐标：</source>
        <translation>Pixel:</translation>
    </message>
    <message>
        <source>场景坐标：</source>
        <translation>Machine:</translation>
    </message>
    <message>
        <source>物理X方向偏移：</source>
        <translation>X offset (mm):</translation>
    </message>
    <message>
        <source>物理Y方向偏移：</source>
        <translation>Y offset (mm):</translation>
    </message>
    <message>
        <source>XY坐标输出：</source>
        <translation>X/Y output:</translation>
    </message>
    <message>
        <source>位置互换</source>
        <translation>Swap X/Y</translation>
    </message>
</context>
<context>
    <name>FourPointPanel</name>
    <message>
        <source>X 方向：1 px = %1 mm，1 mm = %2 px</source>
        <translation>Along x: 1 px = %1 mm, 1 mm = %2 px</translation>
    </message>
    <message>
        <source>Y 方向：1 px = %1 mm，1 mm = %2 px</source>
        <translation>Along y: 1 px = %1 mm, 1 mm = %2 px</translation>
    </message>
    <message>
        <source>P4 残差：X %1 mm，Y %2 mm</source>
        <translation>Residual at P4: X %1 mm, Y %2 mm</translation>
    </message>
    <message>
        <source>测试点往返：%1 → %2，误差 %3 px</source>
        <translation>Test point and back: %1 → %2, error %3 px</translation>
    </message>
    <message>
        <source>P%1 与 P%2 重合</source>
        <translation>P%1 equals P%2</translation>
    </message>
    <message>
        <source>图像点 P1、P2、P3 共线</source>
        <translation>Image points P1, P2, P3 lie on one line</translation>
    </message>
    <message>
        <source>场景点 P1、P2、P3 共线</source>
        <translation>Machine points P1, P2, P3 lie on one line</translation>
    </message>
    <message>
        <source>场景坐标过大，无法计算</source>
        <translation>Machine points too large to compute</translation>
    </message>
</context>
<context>
    <name>ImageExport</name>
    <message>
        <source>图像另存为</source>
        <translation>Save image as</translation>
    </message>
    <message>
        <source>已保存：%1</source>
        <translation>Saved: %1</translation>
    </message>
    <message>
        <source>未能保存：%1</source>
        <translation>Not saved: %1</translation>
    </message>
    <message>
        <source>上一幅图像仍在保存，请稍后再试</source>
        <translation>The image before is still being saved; try again in a moment</translation>
    </message>
</context>
<context>
    <name>RoiImgViewer</name>
    <message>
        <source>撤销移动	Ctrl+Z</source>
        <translation>Undo move	Ctrl+Z</translation>
    </message>
</context>
<context>
    <name>TwoPointForm</name>
    <message>
        <source>P1_X：</source>
        <translation>P1_X:</translation>
    </message>
    <message>
        <source>P1_Y:</source>
        <translation>P1_Y:</translation>
    </message>
    <message>
        <source>P2_X:</source>
        <translation>P2_X:</translation>
    </message>
    <message>
        <source>P2_Y:</source>
        <translation>P2_Y:</translation>
    </message>
    <message>
        <source>两点实际距离mm：</source>
        <translation>Distance (mm):</translation>
    </message>
    <message>
        <source>两点像素距离px：</source>
        <translation>Pixels:</translation>
    </message>
    <message>
        <source>像素比例值(mm/px)：</source>
        <translation>Scale (mm/px):</translation>
    </message>
    <message>
        <source>XY坐标输出：</source>
        <translation>X/Y output:</translation>
    </message>
    <message>
        <source>位置互换</source>
        <translation>Swap X/Y</translation>
    </message>
    <message>
        <source>物理X方向偏移：</source>
        <translation>X offset (mm):</translation>
    </message>
    <message>
        <source>物理Y方向偏移：</source>
        <translation>Y offset (mm):</translation>
    </message>
</context>
<context>
    <name>TwoPointPanel</name>
    <message>
        <source>比例：1 px = %1 mm，1 mm = %2 px</source>
        <translation>Scale: 1 px = %1 mm, 1 mm = %2 px</translation>
    </message>
    <message>
        <source>P1 与 P2 重合</source>
        <translation>P1 equals P2</translation>
    </message>
    <message>
        <source>两点实际距离应大于 0</source>
        <translation>The real distance must be above 0</translation>
    </message>
    <message>
        <source>原标定不可用（%1），比例将为 %2 mm/px</source>
        <translation>The calibration so far cannot be used (%1); the scale becomes %2 mm/px</translation>
    </message>
    <message>
        <source>比例将由 %1 变为 %2 mm/px</source>
        <translation>The scale changes from %1 to %2 mm/px</translation>
    </message>
</context>
<context>
    <name>CalibrationFit</name>
    <message>
        <source>P4 残差过大：X %1 mm，Y %2 mm</source>
        <translation>The residual of P4 is too large: X %1 mm, Y %2 mm</translation>
    </message>
</context>
</TS>
