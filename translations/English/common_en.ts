<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="zh_CN">
<context>
    <name>ChoiceBox</name>
    <message>
        <source>（未选择）</source>
        <translation>(none)</translation>
    </message>
    <message>
        <source>%1（不存在）</source>
        <translation>%1 (missing)</translation>
    </message>
</context>
<context>
    <name>DecimalField</name>
    <message>
        <source>请输入数字</source>
        <translation>Please enter a number</translation>
    </message>
    <message>
        <source>“%1”不是数字</source>
        <translation>“%1” is no number</translation>
    </message>
    <message>
        <source>应在%1到%2之间</source>
        <translation>must be between %1 and %2</translation>
    </message>
</context>
<context>
    <name>FormDialog</name>
    <message>
        <source>请稍候…</source>
        <translation>One moment…</translation>
    </message>
</context>
<context>
    <name>ImageFile</name>
    <message>
        <source>本机没有读取 TIFF 的插件，请安装 qt5-image-formats-plugins，或把图像存为 PNG</source>
        <translation>this machine has no plug-in that reads TIFF: install qt5-image-formats-plugins, or save the image as PNG</translation>
    </message>
    <message>
        <source>图像过大（%1 × %2）</source>
        <translation>the image is too large (%1 × %2)</translation>
    </message>
    <message>
        <source>%1：%2</source>
        <translation>%1: %2</translation>
    </message>
</context>
<context>
    <name>QuestionStrip</name>
    <message>
        <source>取消</source>
        <translation>Cancel</translation>
    </message>
</context>
<context>
    <name>WholeNumber</name>
    <message>
        <source>请输入数字</source>
        <translation>a number is needed</translation>
    </message>
    <message>
        <source>“%1”不是整数</source>
        <translation>“%1” is no whole number</translation>
    </message>
    <message>
        <source>应在%1到%2之间</source>
        <translation>it has to be between %1 and %2</translation>
    </message>
</context>
<context>
    <name>Calibration</name>
    <message>
        <source>缺少“%1”</source>
        <translation>“%1” is missing</translation>
    </message>
    <message>
        <source>“%1”的值 %2 不可用</source>
        <translation>“%1” cannot be %2</translation>
    </message>
    <message>
        <source>，</source>
        <translation>, </translation>
    </message>
    <message>
        <source>物理偏移不是数字</source>
        <translation>an offset is no number</translation>
    </message>
    <message>
        <source>像素比例值不是数字</source>
        <translation>the scale is no number</translation>
    </message>
    <message>
        <source>像素比例值 %1 mm/px 应大于 0</source>
        <translation>the scale of %1 mm/px should be above 0</translation>
    </message>
    <message>
        <source>四点标定的映射不是数字</source>
        <translation>the four-point map is no number</translation>
    </message>
    <message>
        <source>尚未进行四点标定</source>
        <translation>the four-point calibration was never made</translation>
    </message>
    <message>
        <source>四点标定的点共线或重合</source>
        <translation>the points of the four-point calibration lie on a line or on each other</translation>
    </message>
</context>
</TS>
