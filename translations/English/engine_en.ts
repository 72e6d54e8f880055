<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="zh_CN">
<context>
    <name>FindResult</name>
    <message>
        <source>没有像孔的地方</source>
        <translation>nothing like a hole</translation>
    </message>
    <message>
        <source>轮廓不规则</source>
        <translation>ragged outline</translation>
    </message>
    <message>
        <source>没有深度</source>
        <translation>nothing deep</translation>
    </message>
    <message>
        <source>像字符</source>
        <translation>like a letter</translation>
    </message>
    <message>
        <source>像槽或开口的边缘</source>
        <translation>like a slot or an edge</translation>
    </message>
    <message>
        <source>不在模型的圆周上</source>
        <translation>off the model's ring</translation>
    </message>
    <message>
        <source>尺寸与模型不符</source>
        <translation>not of the model's size</translation>
    </message>
    <message>
        <source>与排除的示例相似</source>
        <translation>like a rejected example</translation>
    </message>
    <message>
        <source>一圈相同孔之一</source>
        <translation>one of a round of holes</translation>
    </message>
    <message>
        <source>两处相似</source>
        <translation>two alike</translation>
    </message>
    <message>
        <source>定位成功</source>
        <translation>Located</translation>
    </message>
    <message>
        <source>未找到气门孔</source>
        <translation>No valve hole found</translation>
    </message>
    <message>
        <source>存在多个相似的气门孔</source>
        <translation>Several similar valve holes</translation>
    </message>
    <message>
        <source>未找到轮毂</source>
        <translation>No wheel found</translation>
    </message>
    <message>
        <source>轮毂超出视野</source>
        <translation>Wheel out of view</translation>
    </message>
    <message>
        <source>图像过暗</source>
        <translation>Image too dark</translation>
    </message>
    <message>
        <source>图像过亮</source>
        <translation>Image too bright</translation>
    </message>
    <message>
        <source>图像模糊</source>
        <translation>Image out of focus</translation>
    </message>
    <message>
        <source>图像无效</source>
        <translation>Invalid image</translation>
    </message>
    <message>
        <source>模型参数无效</source>
        <translation>Invalid model parameters</translation>
    </message>
</context>
<context>
    <name>HoleModel</name>
    <message>
        <source>%1 应为 %2 到 %3 之间的数</source>
        <translation>%1 must be a number from %2 to %3</translation>
    </message>
    <message>
        <source>ring_radius 应小于 rim_radius</source>
        <translation>ring_radius must be smaller than rim_radius</translation>
    </message>
    <message>
        <source>hole_radius 应小于 ring_radius 的一半</source>
        <translation>hole_radius must be smaller than half of ring_radius</translation>
    </message>
    <message>
        <source>taught 应为 true 或 false</source>
        <translation>taught must be true or false</translation>
    </message>
</context>
<context>
    <name>ModelExamples</name>
    <message>
        <source>所点位置不在轮缘以内</source>
        <translation>The point is not inside of the rim</translation>
    </message>
    <message>
        <source>所点位置附近没有可测量的孔</source>
        <translation>There is no hole near the point that can be measured</translation>
    </message>
    <message>
        <source>部分示例无法读取，型号照常运行：%1</source>
        <translation>Some examples cannot be read; the model runs all the same: %1</translation>
    </message>
    <message>
        <source>没有第 %1 个示例</source>
        <translation>There is no example %1</translation>
    </message>
    <message>
        <source>至少需要 %1 个孔示例，现有 %2 个</source>
        <translation>At least %1 examples of the hole are needed, there are %2</translation>
    </message>
    <message>
        <source>方案“%1”中没有型号“%2”</source>
        <translation>There is no model "%2" in solution "%1"</translation>
    </message>
</context>
<context>
    <name>ModelTeacher</name>
    <message>
        <source>所点位置不在图像内</source>
        <translation>the point lies outside of the image</translation>
    </message>
    <message>
        <source>所点位置附近不是轮缘外边</source>
        <translation>no outer edge of a rim near the point</translation>
    </message>
    <message>
        <source>气门孔应在轮缘以内</source>
        <translation>the valve hole must lie inside of the rim</translation>
    </message>
    <message>
        <source>所点位置附近没有清晰的孔</source>
        <translation>no clear hole near the point</translation>
    </message>
    <message>
        <source>用提出的参数找到的是另一个孔</source>
        <translation>with the proposed parameters another hole is found</translation>
    </message>
</context>
<context>
    <name>SolutionStore</name>
    <message>
        <source>“%1”：名称应为 1 到 %2 个字符，首尾不能有空格</source>
        <translation>"%1": a name has 1 to %2 characters and no spaces at its ends</translation>
    </message>
    <message>
        <source>“%1”是内置型号，不能修改</source>
        <translation>"%1" is built in and cannot be changed</translation>
    </message>
    <message>
        <source>没有方案“%1”</source>
        <translation>There is no solution "%1"</translation>
    </message>
    <message>
        <source>方案“%2”中没有可删除的型号“%1”</source>
        <translation>Solution "%2" has no model "%1" that can be removed</translation>
    </message>
    <message>
        <source>已有方案“%1”</source>
        <translation>There is a solution "%1" already</translation>
    </message>
    <message>
        <source>方案“%1”中没有型号“%2”</source>
        <translation>There is no model "%2" in solution "%1"</translation>
    </message>
    <message>
        <source>方案文件损坏：%1</source>
        <translation>the solution's file is damaged: %1</translation>
    </message>
    <message>
        <source>方案文件 %1：“result”的值“%2”不是 hole 或 hub</source>
        <translation>solution file %1: “result” is “%2”, not hole or hub</translation>
    </message>
</context>
<context>
    <name>TrialStages</name>
    <message>
        <source>轮毂拟合</source>
        <translation>Hub fit</translation>
    </message>
    <message>
        <source>轮缘可见 %1%，残差 %2 px，边缘宽 %3 px</source>
        <translation>%1% of the rim seen, residual %2 px, edge width %3 px</translation>
    </message>
    <message>
        <source>%1：%2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>展开的环</source>
        <translation>Unwrapped ring</translation>
    </message>
    <message>
        <source>从轮毂中心起 %1 到 %2 px，上方为外侧，角度同结果</source>
        <translation>%1 to %2 px from the hub centre, outside up, angles as in the result</translation>
    </message>
    <message>
        <source>候选孔与得分</source>
        <translation>Candidates and scores</translation>
    </message>
    <message>
        <source>%1 处，得分下限 %2</source>
        <translation>Places: %1, score limit %2</translation>
    </message>
    <message>
        <source>；最佳 %1（图像 %2，位置 %3，尺寸 %4，示例 %5，同类 %6），次高 %7</source>
        <translation>; best %1 (picture %2, place %3, size %4, examples %5, others alike %6), second %7</translation>
    </message>
    <message>
        <source>边缘点</source>
        <translation>Edge points</translation>
    </message>
    <message>
        <source>%1 点中采用 %2 点，孔半径 %3 px</source>
        <translation>%2 of %1 points used, hole radius %3 px</translation>
    </message>
    <message>
        <source>残差</source>
        <translation>Residuals</translation>
    </message>
    <message>
        <source>均方根 %1 px；横轴：方向（°），纵轴：偏离轮廓（px），灰圈未采用</source>
        <translation>RMS %1 px; across: direction (°), up: distance from the outline (px), gray circles not used</translation>
    </message>
    <message>
        <source>孔口拟合</source>
        <translation>Mouth fit</translation>
    </message>
    <message>
        <source>倒角</source>
        <translation>Chamfer</translation>
    </message>
    <message>
        <source>沉孔</source>
        <translation>Counterbore</translation>
    </message>
    <message>
        <source>直边</source>
        <translation>Plain edge</translation>
    </message>
    <message>
        <source>%1 像素，残差 %2 灰度，中心不确定度 %3 px；%4，孔口半径 %5 px，外缘半径 %6 px；%7，孔壁 %8 px，模糊 %9 px</source>
        <translation>%1 pixels, residual %2 gray levels, uncertainty of the centre %3 px; %4, mouth radius %5 px, outer radius %6 px; %7, wall %8 px, blur %9 px</translation>
    </message>
    <message>
        <source>孔内有物</source>
        <translation>something in the hole</translation>
    </message>
    <message>
        <source>通孔</source>
        <translation>open</translation>
    </message>
    <message>
        <source>未能拟合孔口，中心与半径取自边缘点的轮廓</source>
        <translation>The mouth could not be fitted; centre and radius are those of the edge points&apos; outline</translation>
    </message>
    <message>
        <source>外缘</source>
        <translation>Outer edge</translation>
    </message>
</context>
<context>
    <name>ModelProposer</name>
    <message>
        <source>在所点中心周围没有看到轮毂：请换一幅整个轮毂都在内的清晰图像</source>
        <translation>No wheel around that centre: take a clear picture with the whole wheel in it</translation>
    </message>
    <message>
        <source>没有看到轮毂：请点击轮毂的中心</source>
        <translation>No wheel seen: click the wheel’s centre</translation>
    </message>
    <message>
        <source>没有看到气门孔：请点击气门孔的中心</source>
        <translation>No valve hole seen: click the hole’s centre</translation>
    </message>
    <message>
        <source>%1；请点击气门孔的中心</source>
        <translation>%1; click the valve hole’s centre</translation>
    </message>
</context>
</TS>
