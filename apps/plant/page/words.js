// Words of the page in both languages; Chinese is what it was written in.

const english = {
  "单元": "Cells", "对比": "Compare", "漂移": "Drift", "班次报告": "Shift report", "待查": "Kept aside",
  "登录": "Log in", "退出": "Log out", "用户名": "Name", "密码": "Password", "EN": "中",
  "用户名或密码不正确": "The name or the password is not right",
  "尝试次数过多，请五分钟后再试": "Too many attempts: please try again in five minutes",
  "无法连接服务器，正在重试": "The server cannot be reached; trying again",
  "运行": "Run", "测试": "Test", "离线": "Offline", "启动中": "Starting", "断开": "Gone", "未知": "Unknown",
  "故障": "Fault", "警告": "Warning", "正常": "Good", "报警": "Alarms", "等待": "Waiting", "缺失": "Missing",
  "今日": "Today", "件": "parts", "合格率": "Yield", "找到": "Found", "未找到": "Not found", "拒绝": "Refused",
  "全部": "All", "全部单元": "All cells", "只看需要处理的": "Only what needs attention", "搜索单元": "Search cells",
  "单元在线": "online", "需要处理": "need attention", "今日件数": "parts today", "待传行": "rows waiting",
  "没有单元。单元启用转发后会出现在这里。": "No cells yet. A cell appears here once its forwarding is switched on.",
  "没有符合条件的单元": "No cell matches", "返回": "Back",
  "工位": "Station", "型号": "Model", "角度": "Angle", "得分": "Score", "响应": "Reply", "时间": "Time", "结果": "Outcome",
  "图片": "Picture", "校准": "Calibration", "错误": "Error", "代码": "Code", "更早": "Earlier", "仅有图片": "With picture",
  "今日每小时": "Today by hour", "本月": "This month", "最近的件": "Latest parts", "日志": "Log", "型号汇总": "By model",
  "PLC": "PLC", "相机1": "Camera 1", "相机2": "Camera 2", "记录": "Recording", "磁盘剩余": "Disk free", "时钟偏差": "Clock off",
  "软件": "Software", "最近一件": "Last part", "此时钟不可信": "This clock is not to be trusted",
  "同名单元：两个单元使用了同一名称，请改名": "Two cells bear this name: please rename one",
  "时钟偏差超过一分钟，请校时": "The clock is off by more than a minute: please set it",
  "从": "From", "到": "To", "按单元": "By cell", "按型号": "By model", "按班次": "By shift", "最长响应": "Longest reply",
  "今天": "Today", "7 天": "7 days", "30 天": "30 days", "班": "Shift",
  "各工位找到位置的日均值，相对同一校准、同一型号的第一天（毫米）。变动最大的在前。":
    "Mean place of the parts found each day, against the first day with the same calibration and model (mm). The largest first.",
  "变动": "Moved", "天数": "Days", "没有数据": "Nothing recorded", "日期": "Day", "打印": "Print", "合计": "Total",
  "按小时": "By hour", "错误代码": "Error codes", "件数": "Parts", "报告时间": "Printed",
  "早班": "Early shift", "中班": "Late shift", "夜班": "Night shift",
  "没有被搁置的消息": "Nothing was kept aside", "缺失的行": "Missing rows", "没有缺失的行": "No rows are missing",
  "被搁置的消息": "Messages kept aside", "原因": "Reason", "主题": "Topic", "次数": "Times", "最近": "Last", "详情": "Detail",
  "内容": "Content", "下载": "Download", "数据流": "Stream", "已请求": "Asked",
  "消息损坏": "Damaged", "版本更新": "Newer version", "冒用他人标识": "Another cell's identity", "范围不符": "Not one batch",
  "信息": "Information", "审计": "Audit",
  "数据库磁盘已满：行留在代理服务器和单元中，腾出空间后自动继续": "The database's disk is full: rows wait at the broker and in the cells; it goes on by itself once there is room",
  "数据库不可用，正在重试": "The database does not answer; trying again",
  "代理服务器不可用，正在重试": "The broker does not answer; trying again",
  "代理服务器的证书不被接受": "The broker's certificate was not accepted",
  "代理服务器拒绝登录": "The broker refused the log-in",
  "代理服务器设置不可用": "The broker's settings cannot be used",
  "另一个收集器使用了同一实例名": "Another collector bears this instance's name",
  "深浅": "Light or dark", "需要管理员": "For administrators", "出错": "It went wrong", "前": "ago", "秒": "s", "分": "min", "时": "h", "天": "d",
};

export let language = new URLSearchParams(location.search).get("lang") || localStorage.getItem("language") || "zh";

export function setLanguage(name) {
  language = name;
  localStorage.setItem("language", name);
  document.documentElement.lang = name === "zh" ? "zh-CN" : "en";
}

export const tr = text => language === "zh" ? text : english[text] ?? text;

const locale = () => language === "zh" ? "zh-CN" : "en-GB";
export const number = (value, digits = 0) => value == null ? "–" :
  Number(value).toLocaleString(locale(), {minimumFractionDigits: digits, maximumFractionDigits: digits});
export const percent = (part, all) => all > 0 ? number(Math.floor(10000 * part / all) / 100, 2) + " %" : "–";
export const bytes = value => value == null ? "–" : number(value / 1e9, 1) + " GB";

/// A cell's local time, which comes without a zone: "11-22 18:15:30".
export const local = text => text ? text.slice(5, 19).replace("T", " ") : "–";

export function ago(text) {
  if (!text) return "–";
  const seconds = Math.max(0, (Date.now() - Date.parse(text)) / 1000);
  const [value, unit] = seconds < 90 ? [seconds, "秒"] : seconds < 5400 ? [seconds / 60, "分"] :
    seconds < 129600 ? [seconds / 3600, "时"] : [seconds / 86400, "天"];
  return `${Math.round(value)} ${tr(unit)}${language === "zh" ? "" : " "}${tr("前")}`;
}

export function span(ms) {
  const seconds = Math.abs(ms) / 1000;
  const sign = ms < 0 ? "−" : "+";
  return sign + (seconds < 120 ? number(seconds, 1) + " s" : seconds < 7200 ? number(seconds / 60) + " min" :
    seconds < 172800 ? number(seconds / 3600) + " h" : number(seconds / 86400) + " d");
}

export const shiftName = (n, count) => count === 3 ? tr(["早班", "中班", "夜班"][n - 1]) :
  language === "zh" ? `第${n}班` : `Shift ${n}`;
