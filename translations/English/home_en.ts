<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="zh_CN">
<context>
    <name>Backup</name>
    <message>
        <source>备份由更新的程序版本建立（格式%1，本程序为%2）</source>
        <translation>it was made by a newer program (form %1, this program reads %2)</translation>
    </message>
    <message>
        <source>备份的目录无法读取</source>
        <translation>its list of files cannot be read</translation>
    </message>
    <message>
        <source>备份的目录中有不允许的路径：%1</source>
        <translation>its list of files holds a path that is not allowed: %1</translation>
    </message>
    <message>
        <source>备份 %1 已损坏：%2</source>
        <translation>the backup %1 is damaged: %2</translation>
    </message>
    <message>
        <source>没有文件 %1</source>
        <translation>there is no file %1</translation>
    </message>
    <message>
        <source>不是完整的备份文件</source>
        <translation>it is no whole backup file</translation>
    </message>
    <message>
        <source>其中没有目录</source>
        <translation>it holds no list of files</translation>
    </message>
    <message>
        <source>目录不完整</source>
        <translation>the list of files is not whole</translation>
    </message>
    <message>
        <source>备份 %1 来自更新的程序版本 %2，请先更新本程序</source>
        <translation>the backup %1 comes from the newer program %2: update this program first</translation>
    </message>
    <message>
        <source>缺少 %1</source>
        <translation>%1 is missing</translation>
    </message>
    <message>
        <source>已取消</source>
        <translation>cancelled</translation>
    </message>
    <message>
        <source>%1 与校验和不符</source>
        <translation>%1 does not match its checksum</translation>
    </message>
    <message>
        <source>磁盘空间不足：需要 %1 MiB，剩余 %2 MiB</source>
        <translation>the disk is too full: %1 MiB are needed, %2 MiB are free</translation>
    </message>
    <message>
        <source>备份 %1 中没有所选的内容</source>
        <translation>the backup %1 holds nothing of what was chosen</translation>
    </message>
    <message>
        <source>%1 中没有可备份的文件</source>
        <translation>there is nothing to back up in %1</translation>
    </message>
    <message>
        <source>无法写入 %1：%2</source>
        <translation>%1 cannot be written: %2</translation>
    </message>
    <message>
        <source>备份 %1 没有完成：%2</source>
        <translation>the backup %1 was not made: %2</translation>
    </message>
    <message>
        <source>恢复备份时无法移动 %1；重新启动后会继续</source>
        <translation>%1 cannot be moved while the backup is restored; it goes on at the next start</translation>
    </message>
    <message>
        <source>上一次恢复尚未完成，请先重新启动程序</source>
        <translation>a restoration before is not finished: start the program anew first</translation>
    </message>
</context>
<context>
    <name>HomeVersion</name>
    <message>
        <source>文件夹 %1 需要升级，但升级前无法备份：%2</source>
        <translation>the folder %1 needs an upgrade, but cannot be backed up before it: %2</translation>
    </message>
    <message>
        <source>文件夹 %1 升级到版本%2失败：%3</source>
        <translation>the upgrade of the folder %1 to version %2 failed: %3</translation>
    </message>
    <message>
        <source>文件夹 %1 由更新的程序版本使用过（版本%2，本程序为%3）。请安装更新的程序，或换用其他文件夹。其中的文件没有改动。</source>
        <translation>a newer program has used the folder %1 (version %2, this program knows %3). Install the newer program, or use another folder. Its files are as they were.</translation>
    </message>
</context>
<context>
    <name>QBackupUI</name>
    <message>
        <source>设置：参数、相机、PLC索引、用户</source>
        <translation>Settings: parameters, cameras, PLC indices, users</translation>
    </message>
    <message>
        <source>型号：型号库与方案</source>
        <translation>Models: the model library and the solutions</translation>
    </message>
    <message>
        <source>标定：标定值、记录与标定图</source>
        <translation>Calibration: values, history and reference images</translation>
    </message>
    <message>
        <source>结果：检测记录与系统日志</source>
        <translation>Results: records and system log</translation>
    </message>
    <message>
        <source>图像：存档的图像（可能很大）</source>
        <translation>Pictures: the image archive (may be large)</translation>
    </message>
    <message>
        <source>备份到文件</source>
        <translation>Back up to a file</translation>
    </message>
    <message>
        <source>备份 (*.vcbackup)</source>
        <translation>Backups (*.vcbackup)</translation>
    </message>
    <message>
        <source>选择备份文件</source>
        <translation>Choose a backup</translation>
    </message>
    <message>
        <source>备份 (*.vcbackup);;所有文件 (*)</source>
        <translation>Backups (*.vcbackup);;All files (*)</translation>
    </message>
    <message>
        <source>备份完成：%1（%2个文件，%3）</source>
        <translation>backed up: %1 (%2 files, %3)</translation>
    </message>
    <message>
        <source>备份完好：%1 在 %2 建立，%3个文件</source>
        <translation>the backup is whole: made on %1, %2, %3 files</translation>
    </message>
    <message>
        <source>已取消恢复，没有改动任何文件</source>
        <translation>the restoration is cancelled; no file was changed</translation>
    </message>
    <message>
        <source>备份与恢复</source>
        <translation>Backup</translation>
    </message>
    <message>
        <source>内容</source>
        <translation>Contents</translation>
    </message>
    <message>
        <source>备份时生产照常进行。恢复在下次启动程序时生效，被替换的文件保留在旁边的文件夹中。授权不在备份中：它与电脑绑定，另一台电脑需要自己的授权。</source>
        <translation>Production goes on during a backup. A restoration takes effect when the program is started next; the files that it replaces are kept in a folder beside. The licence is not part of a backup: it is bound to its machine, and another machine needs its own.</translation>
    </message>
    <message>
        <source>备份到文件(&amp;B)…</source>
        <translation>&amp;Back up to a file…</translation>
    </message>
    <message>
        <source>从备份恢复(&amp;R)…</source>
        <translation>&amp;Restore from a backup…</translation>
    </message>
    <message>
        <source>停止(&amp;S)</source>
        <translation>&amp;Stop</translation>
    </message>
    <message>
        <source>已准备好一次恢复，下次启动程序时生效。</source>
        <translation>A restoration is laid ready; it takes effect when the program is started next.</translation>
    </message>
    <message>
        <source>取消恢复(&amp;D)</source>
        <translation>&amp;Discard the restoration</translation>
    </message>
    <message>
        <source>关闭(&amp;C)</source>
        <translation>&amp;Close</translation>
    </message>
</context>
</TS>
