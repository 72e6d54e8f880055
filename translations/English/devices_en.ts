<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="zh_CN">
<context>
    <name>CameraAccess</name>
    <message>
        <source>工位%1</source>
        <translation>Station %1</translation>
    </message>
    <message>
        <source>、</source>
        <translation>, </translation>
    </message>
</context>
<context>
    <name>CameraDraft</name>
    <message>
        <source>至少要保留一个相机，否则程序无法启动</source>
        <translation>At least one camera has to stay, or the program does not start</translation>
    </message>
    <message>
        <source>、</source>
        <translation>, </translation>
    </message>
    <message>
        <source>新增，尚未应用</source>
        <translation>New, not applied yet</translation>
    </message>
    <message>
        <source>已修改，尚未应用</source>
        <translation>Changed, not applied yet</translation>
    </message>
    <message>
        <source>将删除，尚未应用</source>
        <translation>To be removed, not applied yet</translation>
    </message>
    <message>
        <source>相机</source>
        <translation>Camera</translation>
    </message>
    <message>
        <source>类型</source>
        <translation>Type</translation>
    </message>
    <message>
        <source>状态</source>
        <translation>State</translation>
    </message>
    <message>
        <source>像素格式</source>
        <translation>Pixel format</translation>
    </message>
    <message>
        <source>工位</source>
        <translation>Station</translation>
    </message>
    <message>
        <source>说明</source>
        <translation>Note</translation>
    </message>
</context>
<context>
    <name>CameraFeatureModel</name>
    <message>
        <source>不能修改：%1</source>
        <translation>Cannot be changed: %1</translation>
    </message>
    <message>
        <source>%1：%2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>%1，正在写入…</source>
        <translation>%1, writing…</translation>
    </message>
    <message>
        <source>执行…</source>
        <translation>Execute…</translation>
    </message>
    <message>
        <source>（读不到）</source>
        <translation>(not readable)</translation>
    </message>
    <message>
        <source>开</source>
        <translation>on</translation>
    </message>
    <message>
        <source>关</source>
        <translation>off</translation>
    </message>
    <message>
        <source>%1 种</source>
        <translation>%1 choices</translation>
    </message>
    <message>
        <source>其他</source>
        <translation>Other</translation>
    </message>
    <message>
        <source>“%1”不是整数</source>
        <translation>“%1” is no whole number</translation>
    </message>
    <message>
        <source>“%1”不是数字</source>
        <translation>“%1” is no number</translation>
    </message>
    <message>
        <source>%1不在%2到%3之间</source>
        <translation>%1 is not between %2 and %3</translation>
    </message>
    <message>
        <source>执行</source>
        <translation>Execute</translation>
    </message>
    <message>
        <source>名称</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>值</source>
        <translation>Value</translation>
    </message>
    <message>
        <source>范围</source>
        <translation>Range</translation>
    </message>
</context>
<context>
    <name>CameraFeaturesPage</name>
    <message>
        <source>按名称或说明筛选</source>
        <translation>Filter by name or description</translation>
    </message>
    <message>
        <source>筛选</source>
        <translation>Filter</translation>
    </message>
    <message>
        <source>重新读取(&amp;U)</source>
        <translation>Read again (&amp;U)</translation>
    </message>
    <message>
        <source>相机功能</source>
        <translation>Features of the camera</translation>
    </message>
    <message>
        <source>读不到相机功能：%1</source>
        <translation>The features of the camera cannot be read: %1</translation>
    </message>
</context>
<context>
    <name>CameraFile</name>
    <message>
        <source>相机名称不能为空</source>
        <translation>A camera needs a name</translation>
    </message>
    <message>
        <source>相机名称不能以空格或点开头或结尾</source>
        <translation>A camera’s name cannot begin or end with a blank or a dot</translation>
    </message>
    <message>
        <source>相机名称不能超过 %1 个字符</source>
        <translation>A camera’s name has %1 characters at most</translation>
    </message>
    <message>
        <source>相机名称不能含有字符“%1”</source>
        <translation>A camera’s name cannot hold the character “%1”</translation>
    </message>
    <message>
        <source>%1 中没有相机“%2”</source>
        <translation>%1 holds no camera “%2”</translation>
    </message>
    <message>
        <source>%1 中已有相机“%2”，重新启动后生效</source>
        <translation>%1 holds a camera “%2” already, which comes with the next start</translation>
    </message>
    <message>
        <source>相机数量必须在 1 到 %1 之间</source>
        <translation>There must be 1 to %1 cameras</translation>
    </message>
</context>
<context>
    <name>CameraForm</name>
    <message>
        <source>浏览(&amp;B)…</source>
        <translation>&amp;Browse…</translation>
    </message>
    <message>
        <source>%1：%2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>%1：不能为空</source>
        <translation>%1: must not be empty</translation>
    </message>
    <message>
        <source>图像文件夹“%1”不存在</source>
        <translation>The image folder “%1” does not exist</translation>
    </message>
</context>
<context>
    <name>CameraParameter</name>
    <message>
        <source>曝光时间(&amp;E)</source>
        <translation>&amp;Exposure</translation>
    </message>
    <message>
        <source>毫秒</source>
        <translation>ms</translation>
    </message>
    <message>
        <source>增益(&amp;G)</source>
        <translation>&amp;Gain</translation>
    </message>
    <message>
        <source>dB</source>
        <translation>dB</translation>
    </message>
    <message>
        <source>传输时间(&amp;R)</source>
        <translation>T&amp;ransfer time</translation>
    </message>
    <message>
        <source>图像文件夹(&amp;F)</source>
        <translation>Image &amp;folder</translation>
    </message>
    <message>
        <source>没有参数“%1”</source>
        <translation>there is no setting “%1”</translation>
    </message>
    <message>
        <source>相机“%1”：%2</source>
        <translation>Camera “%1”: %2</translation>
    </message>
    <message>
        <source>整数 </source>
        <translation>a whole number, </translation>
    </message>
    <message>
        <source>%1 到 %2</source>
        <translation>%1 to %2</translation>
    </message>
    <message>
        <source>文字，不能为空</source>
        <translation>a text that is not empty</translation>
    </message>
    <message>
        <source>图像文件夹的路径</source>
        <translation>the path of an image folder</translation>
    </message>
    <message>
        <source>%1 (%2) 的值“%3”不对，应为：%4</source>
        <translation>%1 (%2) cannot be “%3”; right is: %4</translation>
    </message>
</context>
<context>
    <name>CoreCtrl</name>
    <message>
        <source>没有名为“%1”的相机</source>
        <translation>There is no camera “%1”</translation>
    </message>
    <message>
        <source>已有名为“%1”的相机</source>
        <translation>There is a camera “%1” already</translation>
    </message>
    <message>
        <source>没有相机类型 %1 的驱动程序</source>
        <translation>There is no driver for cameras of type %1</translation>
    </message>
</context>
<context>
    <name>DriverlessCamera</name>
    <message>
        <source>相机类型不是数字</source>
        <translation>The camera’s type is no number</translation>
    </message>
    <message>
        <source>没有相机类型 %1 的驱动程序</source>
        <translation>There is no driver for cameras of type %1</translation>
    </message>
</context>
<context>
    <name>FoundCameras</name>
    <message>
        <source>正在搜索</source>
        <translation>Searching</translation>
    </message>
    <message>
        <source>重新搜索(&amp;A)</source>
        <translation>Search &amp;again</translation>
    </message>
    <message>
        <source>找到的相机</source>
        <translation>Cameras found</translation>
    </message>
    <message>
        <source>类型</source>
        <translation>Type</translation>
    </message>
    <message>
        <source>厂商</source>
        <translation>Vendor</translation>
    </message>
    <message>
        <source>型号</source>
        <translation>Model</translation>
    </message>
    <message>
        <source>序列号</source>
        <translation>Serial number</translation>
    </message>
    <message>
        <source>用户名称</source>
        <translation>User name</translation>
    </message>
    <message>
        <source>地址</source>
        <translation>Address</translation>
    </message>
    <message>
        <source>说明</source>
        <translation>Note</translation>
    </message>
    <message>
        <source>已配置为“%1”</source>
        <translation>configured as “%1”</translation>
    </message>
    <message>
        <source>%1；%2</source>
        <translation>%1; %2</translation>
    </message>
    <message>
        <source>正在搜索相机，也可以直接在下面填写</source>
        <translation>Searching for cameras; the fields below can be filled in meanwhile</translation>
    </message>
    <message>
        <source>找到 %1 个相机，选择一个即填入下面</source>
        <translation>Cameras found: %1. Choose one to fill in the fields below</translation>
    </message>
    <message>
        <source>没有找到相机：检查电源、网线和网段，或直接在下面填写</source>
        <translation>No camera found: check power, cable and network, or fill in the fields below</translation>
    </message>
    <message>
        <source>可以搜索网络和总线上的相机</source>
        <translation>Cameras on network and bus can be searched for</translation>
    </message>
</context>
<context>
    <name>LineFault</name>
    <message>
        <source>波特率“%1”不对：应为大于0的整数，例如115200</source>
        <translation>The baud rate cannot be “%1”: right is a whole number above 0, such as 115200</translation>
    </message>
    <message>
        <source>没有设备%1：检查转换器是否插好，或在系统设置中另选端口</source>
        <translation>There is no device %1: check that the converter is plugged in, or choose another port in the settings</translation>
    </message>
    <message>
        <source>没有权限打开%1：把运行程序的用户加入dialout组，然后重新登录</source>
        <translation>%1 may not be opened: add the user who runs the program to the group dialout, then log in anew</translation>
    </message>
    <message>
        <source>%1正被另一个程序使用：关闭那个程序</source>
        <translation>%1 is in use by another program: close that program</translation>
    </message>
    <message>
        <source>%1打不开（%2）：检查它是不是串口</source>
        <translation>%1 does not open (%2): check that it is a serial port</translation>
    </message>
    <message>
        <source>%1的线路断了：检查电缆和转换器的供电</source>
        <translation>The line at %1 is lost: check the cable and the converter’s power</translation>
    </message>
    <message>
        <source>找不到主机%1：检查名称和DNS，或改用IP地址</source>
        <translation>There is no host %1: check its name and the DNS, or give its IP address</translation>
    </message>
    <message>
        <source>%1拒绝连接：检查端口号，串口服务器应为TCP服务器模式且没有被占用</source>
        <translation>%1 refuses the connection: check the port; the device server should be in TCP server mode and not in use</translation>
    </message>
    <message>
        <source>网络到不了%1：检查网线、IP地址和子网掩码</source>
        <translation>The network does not reach %1: check network cable, IP address and mask</translation>
    </message>
    <message>
        <source>%1没有应答：检查它的供电、网线和IP地址</source>
        <translation>%1 does not answer: check its power, network cable and IP address</translation>
    </message>
</context>
<context>
    <name>LivePicture</name>
    <message>
        <source>相机现在不能取像</source>
        <translation>The camera cannot take a picture now</translation>
    </message>
</context>
<context>
    <name>ModuleReport</name>
    <message>
        <source>模块用 Qt %1 编译，本程序使用 Qt %2</source>
        <translation>The module was built with Qt %1; this program uses Qt %2</translation>
    </message>
    <message>
        <source>%1；查找过：%2，以及系统的库目录</source>
        <translation>%1; looked for in: %2, and in the system's library folders</translation>
    </message>
    <message>
        <source>模块按接口版本 %1 编译，本程序的接口版本为 %2</source>
        <translation>The module was built for interface version %1; this program has version %2</translation>
    </message>
    <message>
        <source>文件中没有函数 %1</source>
        <translation>The file holds no function %1</translation>
    </message>
    <message>
        <source>模块未能启动，原因见系统日志</source>
        <translation>The module did not start; the system log tells why</translation>
    </message>
</context>
<context>
    <name>PictureGauges</name>
    <message>
        <source>灰度直方图</source>
        <translation>Histogram</translation>
    </message>
    <message>
        <source>过曝</source>
        <translation>Overexposed</translation>
    </message>
    <message>
        <source>清晰度</source>
        <translation>Focus</translation>
    </message>
    <message>
        <source>清零(&amp;Z)</source>
        <translation>Reset (&amp;Z)</translation>
    </message>
    <message>
        <source>清晰度与最大值之比</source>
        <translation>Focus as a share of its maximum</translation>
    </message>
    <message>
        <source>无图像</source>
        <translation>no picture</translation>
    </message>
    <message>
        <source>%1，最大 %2</source>
        <translation>%1, best %2</translation>
    </message>
    <message>
        <source>每秒 %1 幅，丢失数据包 %2（重发 %3），不完整图像 %4，重新打开 %5 次</source>
        <translation>%1 images per second, lost packets %2 (resent %3), incomplete images %4, reopened %5</translation>
    </message>
</context>
<context>
    <name>PortName</name>
    <message>
        <source>缺少主机名或IP地址</source>
        <translation>there is no host or IP address</translation>
    </message>
    <message>
        <source>方括号中的“%1”不是IPv6地址</source>
        <translation>“%1” in the brackets is no IPv6 address</translation>
    </message>
    <message>
        <source>IPv6地址要放在方括号中</source>
        <translation>an IPv6 address belongs into brackets</translation>
    </message>
    <message>
        <source>“%1”不是主机名或IP地址</source>
        <translation>“%1” is no host name or IP address</translation>
    </message>
    <message>
        <source>没有端口名：例如 COM3、/dev/ttyUSB0 或 tcp:192.168.1.50:4001</source>
        <translation>The port has no name: COM3, /dev/ttyUSB0 or tcp:192.168.1.50:4001, for example</translation>
    </message>
    <message>
        <source>缺少端口号</source>
        <translation>there is no port number</translation>
    </message>
    <message>
        <source>端口号“%1”不在1到65535之间</source>
        <translation>the port number “%1” is not between 1 and 65535</translation>
    </message>
    <message>
        <source>%1：%2，应写成 tcp:192.168.1.50:4001 这样</source>
        <translation>%1: %2; right would be tcp:192.168.1.50:4001, for example</translation>
    </message>
</context>
<context>
    <name>QCameraEditUI</name>
    <message>
        <source>相机名称(&amp;N)</source>
        <translation>&amp;Name</translation>
    </message>
    <message>
        <source>相机名称</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>类型(&amp;T)</source>
        <translation>&amp;Type</translation>
    </message>
    <message>
        <source>类型</source>
        <translation>Type</translation>
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
        <source>没有类型“%1”的驱动程序，请选择其他类型</source>
        <translation>There is no driver for “%1”: choose another type</translation>
    </message>
    <message>
        <source>添加相机</source>
        <translation>Add camera</translation>
    </message>
    <message>
        <source>修改相机</source>
        <translation>Change camera</translation>
    </message>
</context>
<context>
    <name>QCameraManagerUI</name>
    <message>
        <source>相机管理</source>
        <translation>Cameras</translation>
    </message>
    <message>
        <source>相机</source>
        <translation>Camera</translation>
    </message>
    <message>
        <source>添加(&amp;A)…</source>
        <translation>&amp;Add…</translation>
    </message>
    <message>
        <source>修改(&amp;M)…</source>
        <translation>Chan&amp;ge…</translation>
    </message>
    <message>
        <source>删除(&amp;D)</source>
        <translation>&amp;Remove</translation>
    </message>
    <message>
        <source>参数与图像(&amp;S)…</source>
        <translation>&amp;Settings and picture…</translation>
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
        <source>应用(&amp;P)</source>
        <translation>A&amp;pply</translation>
    </message>
    <message>
        <source>恢复(&amp;D)</source>
        <translation>&amp;Keep</translation>
    </message>
    <message>
        <source>%1的相机将被删除</source>
        <translation>%1: the camera is to be removed</translation>
    </message>
    <message>
        <source>此核心控制模块的相机不能在这里添加和删除</source>
        <translation>This core control’s cameras cannot be added or removed here</translation>
    </message>
    <message>
        <source>与相机“%1”看起来相同</source>
        <translation>Looks like camera “%1”</translation>
    </message>
    <message>
        <source>已有名为“%1”的相机</source>
        <translation>There is a camera “%1” already</translation>
    </message>
    <message>
        <source>相机“%1”已不存在</source>
        <translation>The camera “%1” is gone</translation>
    </message>
    <message>
        <source>删除后%1不能拍照，直到在系统设置中为它选择其他相机。</source>
        <translation>%1 cannot take pictures any more until another camera is chosen for it in the system settings.</translation>
    </message>
    <message>
        <source>删除</source>
        <translation>Remove</translation>
    </message>
    <message>
        <source>未能保存，相机没有改变：%1</source>
        <translation>Not saved, the cameras are as before: %1</translation>
    </message>
    <message>
        <source>已保存；重新启动后窗口按新的相机数量显示工位</source>
        <translation>Saved; with the next start the window shows as many stations as there are cameras now</translation>
    </message>
    <message>
        <source>已保存</source>
        <translation>Saved</translation>
    </message>
    <message>
        <source>重新启动后窗口按新的相机数量显示工位</source>
        <translation>With the next start the window shows as many stations as there are cameras then</translation>
    </message>
</context>
<context>
    <name>QCameraSettingsUI</name>
    <message>
        <source>相机设置</source>
        <translation>Camera settings</translation>
    </message>
    <message>
        <source>相机</source>
        <translation>Camera</translation>
    </message>
    <message>
        <source>名称</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>类型</source>
        <translation>Type</translation>
    </message>
    <message>
        <source>状态</source>
        <translation>State</translation>
    </message>
    <message>
        <source>像素格式</source>
        <translation>Pixel format</translation>
    </message>
    <message>
        <source>工位</source>
        <translation>Station</translation>
    </message>
    <message>
        <source>参数</source>
        <translation>Settings</translation>
    </message>
    <message>
        <source>图像</source>
        <translation>Picture</translation>
    </message>
    <message>
        <source>实时图像(&amp;L)</source>
        <translation>&amp;Live picture</translation>
    </message>
    <message>
        <source>取一帧(&amp;I)</source>
        <translation>S&amp;ingle picture</translation>
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
        <source>应用(&amp;P)</source>
        <translation>A&amp;pply</translation>
    </message>
    <message>
        <source>（未使用）</source>
        <translation>(not used)</translation>
    </message>
    <message>
        <source>相机已不存在</source>
        <translation>The camera is gone</translation>
    </message>
    <message>
        <source>此核心控制模块没有实时图像</source>
        <translation>This core control has no live picture</translation>
    </message>
    <message>
        <source>在线模式下，工位的相机不能实时取像</source>
        <translation>No live picture of a station’s camera in online mode</translation>
    </message>
    <message>
        <source>相机“%1”已不存在</source>
        <translation>The camera “%1” is gone</translation>
    </message>
    <message>
        <source>已保存</source>
        <translation>Saved</translation>
    </message>
    <message>
        <source>未能保存，参数没有改变：%1</source>
        <translation>Not saved, the settings are as before: %1</translation>
    </message>
    <message>
        <source>专家</source>
        <translation>Expert</translation>
    </message>
</context>
<context>
    <name>QDeviceManagerUI</name>
    <message>
        <source>设备管理</source>
        <translation>Devices</translation>
    </message>
    <message>
        <source>模块</source>
        <translation>Module</translation>
    </message>
    <message>
        <source>状态</source>
        <translation>State</translation>
    </message>
    <message>
        <source>版本</source>
        <translation>Version</translation>
    </message>
    <message>
        <source>文件</source>
        <translation>File</translation>
    </message>
    <message>
        <source>串口</source>
        <translation>Serial line</translation>
    </message>
    <message>
        <source>设置的端口</source>
        <translation>Port as set</translation>
    </message>
    <message>
        <source>设备</source>
        <translation>Device</translation>
    </message>
    <message>
        <source>打开次数</source>
        <translation>Times opened</translation>
    </message>
    <message>
        <source>接收帧</source>
        <translation>Frames received</translation>
    </message>
    <message>
        <source>发送帧</source>
        <translation>Frames sent</translation>
    </message>
    <message>
        <source>放弃的帧</source>
        <translation>Frames given up</translation>
    </message>
    <message>
        <source>无效字节</source>
        <translation>Stray bytes</translation>
    </message>
    <message>
        <source>校验错误</source>
        <translation>Checksum errors</translation>
    </message>
    <message>
        <source>复制到剪贴板(&amp;Y)</source>
        <translation>Cop&amp;y to clipboard</translation>
    </message>
    <message>
        <source>关闭(&amp;C)</source>
        <translation>&amp;Close</translation>
    </message>
    <message>
        <source>核心控制</source>
        <translation>Core control</translation>
    </message>
    <message>
        <source>算法引擎</source>
        <translation>Engine</translation>
    </message>
    <message>
        <source>方案设计</source>
        <translation>Designer</translation>
    </message>
    <message>
        <source>用户管理</source>
        <translation>Users</translation>
    </message>
    <message>
        <source>正常</source>
        <translation>Working</translation>
    </message>
    <message>
        <source>不可用</source>
        <translation>Not working</translation>
    </message>
    <message>
        <source>%1：%2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>此串口模块不提供状态</source>
        <translation>This serial module does not tell its state</translation>
    </message>
    <message>
        <source>没有串口模块，不能与PLC通信</source>
        <translation>There is no serial module: no connection to the PLC</translation>
    </message>
    <message>
        <source>已打开</source>
        <translation>Open</translation>
    </message>
    <message>
        <source>未打开</source>
        <translation>Not open</translation>
    </message>
    <message>
        <source>最近的错误：%1</source>
        <translation>Last error: %1</translation>
    </message>
    <message>
        <source>已复制到剪贴板</source>
        <translation>Copied to the clipboard</translation>
    </message>
</context>
<context>
    <name>V4l2</name>
    <message>
        <source>USB 相机不在：检查插头和电源</source>
        <translation>The USB camera is not there: check plug and power</translation>
    </message>
    <message>
        <source>USB 相机正被其他程序使用：请先关闭该程序</source>
        <translation>The USB camera is used by another program: close that program first</translation>
    </message>
    <message>
        <source>没有使用 USB 相机的权限：把运行程序的用户加入 video 组，然后重新登录</source>
        <translation>No right to use the USB camera: add the user who runs the program to the group “video”, then log in anew</translation>
    </message>
    <message>
        <source>USB 带宽不够：把相机接到另一个 USB 控制器，或减小图像，或选 MJPG 格式</source>
        <translation>Not enough bandwidth on USB: plug the camera into another USB controller, or choose a smaller image or the format MJPG</translation>
    </message>
    <message>
        <source>USB 传输出错：检查线缆和集线器，线缆不要过长</source>
        <translation>USB transfer failed: check cable and hub, the cable must not be too long</translation>
    </message>
    <message>
        <source>内存不够，不能接收图像</source>
        <translation>Not enough memory to receive images</translation>
    </message>
    <message>
        <source>设备不是可用的 USB 相机（%1）</source>
        <translation>The device is no USB camera that can be used (%1)</translation>
    </message>
    <message>
        <source>USB 相机出错：%1，%2</source>
        <translation>USB camera failed: %1, %2</translation>
    </message>
</context>
<context>
    <name>V4l2Bus</name>
    <message>
        <source>有 %1 台 USB 相机都叫“%2”：请改用序列号或接口：%3</source>
        <translation>%1 USB cameras are called “%2”: use a serial number or a port instead: %3</translation>
    </message>
    <message>
        <source>找不到 USB 相机“%1”，也没有其他 USB 相机：检查插头和电源</source>
        <translation>USB camera “%1” not found, nor any other USB camera: check plug and power</translation>
    </message>
    <message>
        <source>找不到 USB 相机“%1”，有：%2</source>
        <translation>USB camera “%1” not found; there are: %2</translation>
    </message>
</context>
<context>
    <name>V4l2Controls</name>
    <message>
        <source>相机增益范围的百分比</source>
        <translation>Percent of the range of the gain of the camera</translation>
    </message>
    <message>
        <source>这台相机不能设置曝光时间</source>
        <translation>The exposure time of this camera cannot be set</translation>
    </message>
    <message>
        <source>曝光时间 %1 毫秒不在相机的范围 %2 到 %3 内，使用 %4 毫秒</source>
        <translation>Exposure time %1 ms is outside of the range of the camera, %2 to %3 ms; %4 ms is used</translation>
    </message>
    <message>
        <source>这台相机不能设置增益</source>
        <translation>The gain of this camera cannot be set</translation>
    </message>
    <message>
        <source>只读</source>
        <translation>read only</translation>
    </message>
    <message>
        <source>取像时不能修改</source>
        <translation>cannot be changed while images are captured</translation>
    </message>
    <message>
        <source>现在不起作用：先关闭相应的自动功能</source>
        <translation>without effect now: switch off the automatic that rules it first</translation>
    </message>
    <message>
        <source>%1 到 %2</source>
        <translation>%1 to %2</translation>
    </message>
    <message>
        <source>相机没有“%1”</source>
        <translation>The camera has no “%1”</translation>
    </message>
    <message>
        <source>“%1”没有“%2”可选</source>
        <translation>“%1” has no choice “%2”</translation>
    </message>
    <message>
        <source>相机不接受 %1，应在 %2 之间</source>
        <translation>The camera does not accept %1; right is %2</translation>
    </message>
    <message>
        <source>只读，或现在不起作用</source>
        <translation>read only, or without effect now</translation>
    </message>
</context>
<context>
    <name>V4l2Device</name>
    <message>
        <source>序列号、USB 接口（例如 usb-0000:00:14.0-1）、型号，或 /dev/video0 这样的路径</source>
        <translation>Serial number, USB port (such as usb-0000:00:14.0-1), model, or a path such as /dev/video0</translation>
    </message>
    <message>
        <source>相机(&amp;D)</source>
        <translation>Camera (&amp;D)</translation>
    </message>
    <message>
        <source>%1：%2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>USB 相机的图像不完整：检查线缆和集线器，线缆不要过长</source>
        <translation>The image of the USB camera is incomplete: check cable and hub, the cable must not be too long</translation>
    </message>
    <message>
        <source>USB 相机在 %1 毫秒内没有给出图像：加大响应时限，或减小图像</source>
        <translation>The USB camera gave no image within %1 ms: raise the time limit, or choose a smaller image</translation>
    </message>
</context>
<context>
    <name>V4l2Format</name>
    <message>
        <source>像素格式(&amp;M)</source>
        <translation>Pixel for&amp;mat</translation>
    </message>
    <message>
        <source>自动：优先灰度</source>
        <translation>automatic: gray if there is</translation>
    </message>
    <message>
        <source>0 表示相机能给出的最大值</source>
        <translation>0 stands for the largest that the camera has</translation>
    </message>
    <message>
        <source>宽度(&amp;W)</source>
        <translation>&amp;Width</translation>
    </message>
    <message>
        <source>像素</source>
        <translation>pixels</translation>
    </message>
    <message>
        <source>高度(&amp;H)</source>
        <translation>&amp;Height</translation>
    </message>
    <message>
        <source>相机的像素格式 %1 不能使用：请选择能给出 GREY、YUYV 或 MJPG 的相机</source>
        <translation>Pixel format %1 of the camera cannot be used: choose a camera with GREY, YUYV or MJPG</translation>
    </message>
    <message>
        <source>相机没有像素格式 %1，使用 %2</source>
        <translation>The camera has no pixel format %1; %2 is used</translation>
    </message>
    <message>
        <source>相机没有 %1 × %2 的图像，使用 %3 × %4</source>
        <translation>The camera has no images of %1 × %2; %3 × %4 is used</translation>
    </message>
</context>
<context>
    <name>VirtualCamera</name>
    <message>
        <source>没有设置图像文件夹 (folder)</source>
        <translation>No image folder is set (folder)</translation>
    </message>
    <message>
        <source>相机已关闭</source>
        <translation>The camera is closed</translation>
    </message>
    <message>
        <source>等待的触发过多，已丢弃一次触发</source>
        <translation>Too many triggers wait; one was dropped</translation>
    </message>
    <message>
        <source>已跳过无法读取的图像 %1</source>
        <translation>Skipped an image that cannot be read: %1</translation>
    </message>
    <message>
        <source>图像文件夹 %1 不存在</source>
        <translation>The image folder %1 does not exist</translation>
    </message>
    <message>
        <source>图像文件夹 %1 中没有可读的图像</source>
        <translation>The image folder %1 holds no image that can be read</translation>
    </message>
    <message>
        <source>没有图像</source>
        <translation>No image</translation>
    </message>
</context>
</TS>
