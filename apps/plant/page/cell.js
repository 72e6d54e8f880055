// One cell: how it is, its hours and month, its parts with pictures, its log.

import {get, state} from "./app.js";
import {parts, statePill, total} from "./cells.js";
import {bars, card, el, pill, table} from "./draw.js";
import {ago, bytes, local, number, percent, span, tr} from "./words.js";

export const outcomes = [["good", "找到"], ["caution", "未找到"], ["bad", "拒绝"]];
const healths = {ok: ["good", "正常"], waiting: ["caution", "等待"], warning: ["caution", "警告"], fault: ["bad", "故障"]};
const kinds = {alarm: ["bad", "报警"], audit: ["faint", "审计"], warning: ["caution", "警告"], information: ["faint", "信息"]};

/// Today where the cell stands.
export const localDay = cell => new Date(Date.now() + 1000 * (cell?.utcOff ?? 0)).toISOString().slice(0, 10);

function head(cell) {
  const item = (name, content) => el("div", {class: "item"}, el("span", {}, name), el("b", {}, content));
  const health = value => {
    const [kind, text] = healths[value] ?? ["faint", "–"];
    return pill(kind, tr(text));
  };
  const off = Math.abs(cell.clockOff ?? 0) > 60000;
  return [
    el("div", {class: "title"}, el("a", {href: "#/", class: "back", "aria-label": tr("返回")}, "‹"),
      el("h1", {}, cell.name), el("span", {class: "faint"}, cell.group), statePill(cell)),
    cell.twice && el("p", {class: "problem"}, tr("同名单元：两个单元使用了同一名称，请改名")),
    off && el("p", {class: "problem"}, tr("时钟偏差超过一分钟，请校时")),
    cell.alarms.map(alarm => el("p", {class: alarm.severity === "fault" ? "problem" : "problem caution"}, alarm.text)),
    el("div", {class: "items"}, item(tr("今日"), `${number(parts(cell))} ${tr("件")}`),
      item(tr("合格率"), percent(total(cell, 1), parts(cell))), item(tr("PLC"), health(cell.plc)),
      item(tr("相机1"), health(cell.camera1)), item(tr("相机2"), health(cell.camera2)), item(tr("记录"), health(cell.recording)),
      item(tr("等待"), number(cell.waiting)), item(tr("缺失"), number(cell.missing ?? 0)),
      item(tr("磁盘剩余"), bytes(cell.diskFree)), item(tr("时钟偏差"), cell.clockOff == null ? "–" : span(cell.clockOff)),
      item(tr("最近一件"), ago(cell.lastPart)), item(tr("软件"), cell.software ?? "–")),
  ].flat().filter(Boolean);
}

const hint = (label, f, n, r) => `${label}: ${tr("找到")} ${number(f)}, ${tr("未找到")} ${number(n)}, ${tr("拒绝")} ${number(r)}`;

/// The hours from `first` on, `count` of them, with those of which nothing is known.
export function hoursChart(rows, first = 0, count = 24, wide = false) {
  const known = new Map(rows.map(row => [Number(row[0].slice(11, 13)), row]));
  return bars(Array.from({length: count}, (_, i) => {
    const hour = (first + i) % 24, name = String(hour).padStart(2, "0");
    const [, f, n, r] = known.get(hour) ?? ["", 0, 0, 0];
    return [name, f, n, r, hint(name + ":00", f, n, r)];
  }), wide);
}

function monthChart(month, rows) {
  const known = new Map(rows.map(row => [Number(row.day.slice(8)), row]));
  const length = new Date(Number(month.slice(0, 4)), Number(month.slice(5)), 0).getDate();
  return bars(Array.from({length}, (_, i) => {
    const day = known.get(i + 1) ?? {found: 0, notFound: 0, refused: 0};
    return [String(i + 1), day.found, day.notFound, day.refused, hint(`${month}-${i + 1}`, day.found, day.notFound, day.refused)];
  }));
}

function part(row) {
  const [kind, text] = outcomes[row.outcome];
  const source = `/api/pictures/${row.source}/${row.row}`;
  return [local(row.local) + (row.clockWrong ? " ⚠" : ""), row.station, row.model || "–", pill(kind, tr(text)),
    row.error || "–", number(row.angle, 2), number(row.x, 3), number(row.y, 3), number(row.score, 1),
    row.reply == null ? "–" : number(row.reply) + " ms",
    row.picture ? el("a", {href: source, target: "_blank"}, el("img", {src: source, loading: "lazy", class: "thumb", alt: tr("图片")})) : ""];
}

export function cellPage(page, id) {
  const cell = () => state.cells.get(Number(id));
  if (!cell()) {
    page.append(el("p", {class: "empty"}, tr("没有符合条件的单元")));
    return {cells: () => cell() && location.reload()};
  }
  const top = el("div"), hours = el("div"), month = el("div"), models = el("div"), rows = el("div"), log = el("div");
  const outcome = el("select", {"aria-label": tr("结果"), onchange: () => loadParts()},
    el("option", {value: ""}, tr("全部")), outcomes.map(([, text], i) => el("option", {value: i}, tr(text))));
  const pictures = el("input", {type: "checkbox", onchange: () => loadParts()});
  const monthOf = el("input", {type: "month", "aria-label": tr("本月"), value: localDay(cell()).slice(0, 7), onchange: () => loadMonth()});
  const more = el("button", {type: "button", onclick: () => loadParts(oldest)}, tr("更早"));
  let oldest = null, busy = false, ended = false;

  page.append(top, el("div", {class: "two"}, card(tr("今日每小时"), hours),
    card(null, el("div", {class: "line"}, el("h2", {}, tr("本月")), monthOf), month)),
    card(null, el("div", {class: "line"}, el("h2", {}, tr("最近的件")), outcome,
      el("label", {class: "check"}, pictures, tr("仅有图片"))), rows, more),
    el("div", {class: "two"}, card(tr("型号汇总"), models), card(tr("日志"), log)));

  async function loadParts(before) {
    const list = await get(`cells/${id}/parts?outcome=${outcome.value}&pictures=${pictures.checked ? "true" : ""}` +
      (before ? "&before=" + encodeURIComponent(before) : ""));
    oldest = list.length ? list[list.length - 1].time : oldest;
    more.hidden = list.length < 50;
    const made = table([[tr("时间")], [tr("工位"), "n"], [tr("型号")], [tr("结果")], [tr("错误"), "n"], [tr("角度"), "n"], ["X", "n"],
      ["Y", "n"], [tr("得分"), "n"], [tr("响应"), "n"], [tr("图片")]], list.map(part));
    if (before) rows.querySelector("tbody").append(...made.querySelectorAll("tbody tr"));
    else rows.replaceChildren(list.length ? made : el("p", {class: "empty"}, tr("没有数据")));
  }
  async function loadMonth() {
    const value = await get(`cells/${id}/month?month=${monthOf.value}-01`);
    month.replaceChildren(monthChart(monthOf.value, value.days));
    models.replaceChildren(table([[tr("型号")], [tr("件数"), "n"], [tr("合格率"), "n"], [tr("得分"), "n"]], value.models.map(m =>
      [m.model || "–", number(m.found + m.notFound + m.refused), percent(m.found, m.found + m.notFound + m.refused), number(m.score, 1)])));
  }
  async function refresh() {
    if (busy || ended) return;
    busy = true;
    try {
      hours.replaceChildren(hoursChart(await get(`cells/${id}/hours?day=${localDay(cell())}`)));
      if (scrollY < 600 || !oldest) await loadParts();
    } finally {
      setTimeout(() => busy = false, 1000);
    }
  }
  top.replaceChildren(...head(cell()));
  refresh();
  loadMonth();
  get(`cells/${id}/log`).then(list => log.replaceChildren(list.length ? table([[tr("时间")], [""], [tr("详情")]], list.slice(0, 30).map(line => {
    const [kind, text] = kinds[line.kind] ?? ["faint", line.kind];
    return [local(line.local), pill(kind, tr(text)), line.text];
  })) : el("p", {class: "empty"}, tr("没有数据"))));
  return {
    cells(changed) {
      if (!changed.some(one => one.id === Number(id))) return;
      top.replaceChildren(...head(cell()));
      refresh();
    },
    end() { ended = true; },
  };
}
