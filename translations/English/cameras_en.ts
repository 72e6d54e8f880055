<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="zh_CN">
<context>
    <name>FeatureJob</name>
    <message>
        <source>相机没有提供参数列表</source>
        <translation>The camera shows no features</translation>
    </message>
</context>
<context>
    <name>AravisBus</name>
    <message>
        <source>相机地址 %1 从本机无法到达：请把相机和网卡设为同一网段的地址</source>
        <translation>The camera's address %1 cannot be reached from this machine: give camera and network adapter addresses of the same subnet</translation>
    </message>
    <message>
        <source>相机正被另一个程序使用：请先关闭那个程序</source>
        <translation>Another program uses the camera: close that program first</translation>
    </message>
</context>
<context>
    <name>AravisDevice</name>
    <message>
        <source>地址 %1 上没有相机应答：请检查电源、网线和相机地址，并确认网卡与相机在同一网段</source>
        <translation>No camera answers at the address %1: check power, cable and the camera's address, and whether network adapter and camera are in the same subnet</translation>
    </message>
    <message>
        <source>没有任何相机</source>
        <translation>no camera at all</translation>
    </message>
    <message>
        <source>没有找到相机“%1”，现在能看到：%2。请检查电源和网线，或改用相机的网络地址</source>
        <translation>The camera “%1” was not found; visible now: %2. Check power and cable, or name the camera by its network address</translation>
    </message>
    <message>
        <source>无法打开相机</source>
        <translation>The camera cannot be opened</translation>
    </message>
    <message>
        <source>相机不能开始采集：%1</source>
        <translation>The camera cannot begin to acquire: %1</translation>
    </message>
    <message>
        <source>网络不能传送 %1 字节的数据包，已改用 %2 字节：要用更大的包，请在网卡和交换机上启用巨型帧</source>
        <translation>The network does not carry packets of %1 bytes; %2 bytes are used: for larger ones, enable jumbo frames on network adapter and switch</translation>
    </message>
    <message>
        <source>不支持相机的像素格式 %1：请在相机参数中把 PixelFormat 改为 %2</source>
        <translation>The camera's pixel format %1 is not supported: set PixelFormat to %2 among the camera's features</translation>
    </message>
    <message>
        <source>正在打开另一台相机</source>
        <translation>Opening the other camera</translation>
    </message>
    <message>
        <source>相机没有接受触发</source>
        <translation>The camera did not take the trigger</translation>
    </message>
    <message>
        <source>相机的图像时间与触发不符；已改为按到达时间判断，请重新触发</source>
        <translation>The times of the camera's images do not fit its triggers; from now on their arrival counts, please trigger again</translation>
    </message>
    <message>
        <source>相机在触发后 %1 毫秒内没有传来图像：请检查网线；图像大而网络慢时，请增大响应时限</source>
        <translation>No image came within %1 ms of the trigger: check the cable; for large images on a slow network, raise the response limit</translation>
    </message>
    <message>
        <source>%1 毫秒内没有触发信号（%2）：请检查触发线和触发源设置</source>
        <translation>No trigger signal (%2) within %1 ms: check the trigger line and the setting of the trigger source</translation>
    </message>
    <message>
        <source>图像不完整，丢失了数据包：请检查网线、网卡和交换机，减小数据包大小或增大数据包间隔</source>
        <translation>The image is incomplete, packets were lost: check cable, network adapter and switch, lower the packet size or raise the packet delay</translation>
    </message>
    <message>
        <source>图像的大小与相机的设置不符</source>
        <translation>The size of the image does not fit the camera's settings</translation>
    </message>
    <message>
        <source>相机中断了采集</source>
        <translation>The camera broke off the acquisition</translation>
    </message>
    <message>
        <source>图像不完整（状态 %1）</source>
        <translation>The image is incomplete (status %1)</translation>
    </message>
    <message>
        <source>与相机的连接已中断：请检查电源和网线</source>
        <translation>The connection to the camera broke: check power and cable</translation>
    </message>
    <message>
        <source>相机 %1 不再应答：请检查电源和网线</source>
        <translation>The camera %1 no longer answers: check power and cable</translation>
    </message>
    <message>
        <source>相机重新启动过，正在重新打开</source>
        <translation>The camera has restarted and is being opened again</translation>
    </message>
</context>
<context>
    <name>AravisFeatures</name>
    <message>
        <source>这台相机没有参数 %1</source>
        <translation>This camera has no feature %1</translation>
    </message>
    <message>
        <source>由相机设置 %1 决定</source>
        <translation>Decided by the camera's setting %1</translation>
    </message>
    <message>
        <source>在相机现在的状态下不可用</source>
        <translation>Not available in the camera's present state</translation>
    </message>
    <message>
        <source>只读</source>
        <translation>Read only</translation>
    </message>
    <message>
        <source>参数 %1 不能写入：%2</source>
        <translation>The feature %1 cannot be written: %2</translation>
    </message>
    <message>
        <source>参数 %1 的值 %2 超出范围 %3 到 %4</source>
        <translation>The value %2 of the feature %1 is beyond %3 to %4</translation>
    </message>
    <message>
        <source>参数 %1 没有值“%2”，可选：%3</source>
        <translation>The feature %1 has no value “%2”; choose from: %3</translation>
    </message>
    <message>
        <source>相机没有接受参数 %1</source>
        <translation>The camera did not take the feature %1</translation>
    </message>
</context>
<context>
    <name>AravisSettings</name>
    <message>
        <source>相机(&amp;D)</source>
        <translation>&amp;Device</translation>
    </message>
    <message>
        <source>序列号、相机名称或网络地址</source>
        <translation>Serial number, name of the camera, or network address</translation>
    </message>
    <message>
        <source>触发源(&amp;S)</source>
        <translation>Trigger &amp;source</translation>
    </message>
    <message>
        <source>软件触发</source>
        <translation>Software trigger</translation>
    </message>
    <message>
        <source>硬件触发时，取触发请求之后开始曝光的第一幅图像</source>
        <translation>With a hardware trigger, the first image whose exposure began after the request is taken</translation>
    </message>
    <message>
        <source>硬件输入 Line%1</source>
        <translation>Hardware input Line%1</translation>
    </message>
    <message>
        <source>像素</source>
        <translation>pixels</translation>
    </message>
    <message>
        <source>0 表示整幅</source>
        <translation>0 means all of it</translation>
    </message>
    <message>
        <source>区域左边(&amp;X)</source>
        <translation>Region left (&amp;X)</translation>
    </message>
    <message>
        <source>区域上边(&amp;Y)</source>
        <translation>Region top (&amp;Y)</translation>
    </message>
    <message>
        <source>区域宽度(&amp;W)</source>
        <translation>Region &amp;width</translation>
    </message>
    <message>
        <source>区域高度(&amp;H)</source>
        <translation>Region &amp;height</translation>
    </message>
    <message>
        <source>数据包大小(&amp;Z)</source>
        <translation>Packet si&amp;ze</translation>
    </message>
    <message>
        <source>字节</source>
        <translation>bytes</translation>
    </message>
    <message>
        <source>0 表示自动选择网络能传送的最大值</source>
        <translation>0 takes the largest that the network carries</translation>
    </message>
    <message>
        <source>数据包间隔(&amp;V)</source>
        <translation>Packet inter&amp;val</translation>
    </message>
    <message>
        <source>微秒</source>
        <translation>µs</translation>
    </message>
    <message>
        <source>多台相机共用一个网口时增大</source>
        <translation>Raise it when several cameras share one network port</translation>
    </message>
    <message>
        <source>无法设置触发源 %1</source>
        <translation>The trigger source %1 cannot be set</translation>
    </message>
    <message>
        <source>这台相机没有触发源 %1，可选：%2</source>
        <translation>This camera has no trigger source %1; choose from: %2</translation>
    </message>
    <message>
        <source>无法设置连续采集</source>
        <translation>Continuous acquisition cannot be set</translation>
    </message>
    <message>
        <source>无法读取触发方式</source>
        <translation>The way of triggering cannot be read</translation>
    </message>
    <message>
        <source>这台相机不能由软件触发；它连续拍照，取请求之后的第一幅</source>
        <translation>This camera cannot be triggered by software; it captures continuously, and the first image after the request is taken</translation>
    </message>
    <message>
        <source>%1 的值 %2 超出相机的范围 %3 到 %4，已改用 %5</source>
        <translation>The value %2 of %1 is beyond the camera's range, %3 to %4; %5 is used</translation>
    </message>
    <message>
        <source>这台相机没有曝光时间</source>
        <translation>This camera has no exposure time</translation>
    </message>
    <message>
        <source>无法设置曝光时间</source>
        <translation>The exposure time cannot be set</translation>
    </message>
    <message>
        <source>这台相机没有以 dB 为单位的增益；请在相机参数列表中查找 GainRaw</source>
        <translation>This camera has no gain in dB; look for GainRaw among the camera's features</translation>
    </message>
    <message>
        <source>无法设置增益</source>
        <translation>The gain cannot be set</translation>
    </message>
    <message>
        <source>无法设置图像区域</source>
        <translation>The image region cannot be set</translation>
    </message>
    <message>
        <source>这台相机的图像区域不能移动</source>
        <translation>The image region of this camera cannot be moved</translation>
    </message>
    <message>
        <source>区域位置已按相机的步长改为 (%1, %2)</source>
        <translation>The region was moved to (%1, %2), by the camera's steps</translation>
    </message>
    <message>
        <source>区域大小已按相机的步长和范围改为 %1 × %2</source>
        <translation>The region was made %1 × %2, by the camera's steps and range</translation>
    </message>
    <message>
        <source>USB 相机没有网络数据包</source>
        <translation>A USB camera has no network packets</translation>
    </message>
    <message>
        <source>无法设置数据包大小</source>
        <translation>The packet size cannot be set</translation>
    </message>
    <message>
        <source>无法设置数据包间隔</source>
        <translation>The packet interval cannot be set</translation>
    </message>
</context>
<context>
    <name>AravisText</name>
    <message>
        <source>相机正被另一个程序（或本机另一个工位）使用：请先关闭那个程序，或选择另一台相机</source>
        <translation>Another program (or the other station of this machine) uses the camera: close that program first, or choose another camera</translation>
    </message>
    <message>
        <source>%1：相机不应答，请检查电源和网线</source>
        <translation>%1: the camera does not answer; check power and cable</translation>
    </message>
    <message>
        <source>%1：%2</source>
        <translation>%1: %2</translation>
    </message>
</context>
<context>
    <name>DeviceCamera</name>
    <message>
        <source>响应时限(&amp;M)</source>
        <translation>Response li&amp;mit</translation>
    </message>
    <message>
        <source>毫秒</source>
        <translation>ms</translation>
    </message>
    <message>
        <source>曝光之外，从触发到图像最多等待的时间；超过后本次触发按无图像处理</source>
        <translation>How long an image may take from the trigger, beyond the exposure; after that the trigger stays without one</translation>
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
        <source>相机没有打开：%1</source>
        <translation>The camera is not open: %1</translation>
    </message>
    <message>
        <source>相机已恢复</source>
        <translation>The camera is back</translation>
    </message>
    <message>
        <source>相机还没有打开</source>
        <translation>The camera is not open yet</translation>
    </message>
    <message>
        <source>相机没有在时限内响应，正在重新连接</source>
        <translation>The camera did not answer in time and is being connected again</translation>
    </message>
</context>
<context>
    <name>FeatureDesk</name>
    <message>
        <source>这种相机没有自己的参数列表</source>
        <translation>Cameras of this kind have no features of their own</translation>
    </message>
    <message>
        <source>没有名为“%1”的相机</source>
        <translation>There is no camera named “%1”</translation>
    </message>
</context>
</TS>
