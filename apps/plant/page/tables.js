// Comparison, drift, shift report, what was kept aside.

import {get, state} from "./app.js";
import {hoursChart, localDay} from "./cell.js";
import {card, el, lines, pill, table} from "./draw.js";
import {local, number, percent, shiftName, tr} from "./words.js";

const today = () => localDay([...state.cells.values()][0]);
const daysBefore = (day, count) => new Date(Date.parse(day) - 86400000 * count).toISOString().slice(0, 10);

/// Two dates and the usual ranges; calls `changed` with both.
function range(days, changed) {
  const from = el("input", {type: "date", "aria-label": tr("从"), value: daysBefore(today(), days - 1), onchange: () => changed(from.value, to.value)});
  const to = el("input", {type: "date", "aria-label": tr("到"), value: today(), onchange: () => changed(from.value, to.value)});
  const quick = (text, count) => el("button", {type: "button", onclick: () => {
    from.value = daysBefore(today(), count - 1);
    to.value = today();
    changed(from.value, to.value);
  }}, tr(text));
  return {box: el("span", {class: "range"}, quick("今天", 1), quick("7 天", 7), quick("30 天", 30), from, "–", to), from, to};
}

const all = row => row.found + row.notFound + row.refused;

function yieldBar(row) {
  const share = all(row) ? row.found / all(row) : 0;
  // From 80 % on: the difference is what is compared.
  return el("meter", {min: 0.8, max: 1, low: 0.95, high: 0.98, optimum: 1, value: Math.max(0.8, share), title: percent(row.found, all(row))});
}

export function comparePage(page) {
  const body = el("div");
  const by = el("select", {"aria-label": tr("对比"), onchange: () => load()},
    [["cell", "按单元"], ["model", "按型号"], ["shift", "按班次"]].map(([value, text]) => el("option", {value}, tr(text))));
  const dates = range(7, () => load());
  page.append(el("div", {class: "bar"}, el("h1", {}, tr("对比")), by, dates.box), card(null, body));
  async function load() {
    const rows = await get(`compare?by=${by.value}&from=${dates.from.value}&to=${dates.to.value}`);
    rows.sort((a, b) => by.value === "shift" ? a.key - b.key : a.found / all(a) - b.found / all(b));
    const name = row => by.value === "shift" ? shiftName(Number(row.key), state.me.shifts.length) : row.key || "–";
    body.replaceChildren(rows.length ? table(
      [[tr({cell: "单元", model: "型号", shift: "班"}[by.value])], [tr("件数"), "n"], [tr("合格率"), "n"], ["", "wide"], [tr("未找到"), "n"], [tr("拒绝"), "n"],
        [tr("得分"), "n"], [tr("响应"), "n"], [tr("最长响应"), "n"]],
      rows.map(row => [name(row), number(all(row)), percent(row.found, all(row)), yieldBar(row), number(row.notFound), number(row.refused),
        number(row.score, 1), number(row.reply) + " ms", number(row.replyMax) + " ms"])) : el("p", {class: "empty"}, tr("没有数据")));
  }
  load();
  return {};
}

export function driftPage(page) {
  const body = el("div", {class: "drifts"});
  const dates = range(30, () => load());
  page.append(el("div", {class: "bar"}, el("h1", {}, tr("漂移")), dates.box),
    el("p", {class: "faint"}, tr("各工位找到位置的日均值，相对同一校准、同一型号的第一天（毫米）。变动最大的在前。")), body);
  async function load() {
    const rows = await get(`drift?from=${dates.from.value}&to=${dates.to.value}`);
    const moved = row => Math.hypot(...row.days[row.days.length - 1].slice(1, 3));
    rows.sort((a, b) => moved(b) - moved(a));
    const bounds = rows.flatMap(row => row.days).reduce((most, day) => Math.max(most, Math.abs(day[1]), Math.abs(day[2])), 0.05);
    body.replaceChildren(...rows.map(row => {
      const last = row.days[row.days.length - 1];
      return el("a", {class: "card drift", href: "#/cell/" + row.cell},
        el("div", {class: "line"}, el("b", {}, row.name), el("span", {class: "faint"}, `${tr("工位")} ${row.station}`),
          el("span", {class: "spring"}), pill(moved(row) > 0.2 ? "bad" : moved(row) > 0.1 ? "caution" : "good", number(moved(row), 3) + " mm")),
        lines([{kind: "x", values: row.days.map(day => day[1])}, {kind: "y", values: row.days.map(day => day[2])}],
          `${row.days[0][0]} – ${last[0]}`, bounds),
        el("div", {class: "line faint"}, el("span", {class: "key x"}, "X " + number(last[1], 3)), el("span", {class: "key y"}, "Y " + number(last[2], 3)),
          el("span", {class: "spring"}), el("span", {class: "faint"}, last[3])));
    }));
    if (!rows.length) body.append(el("p", {class: "empty"}, tr("没有数据")));
  }
  load();
  return {};
}

export function shiftPage(page, only) {
  const count = state.me.shifts.length;
  const body = el("div");
  const cell = el("select", {"aria-label": tr("单元"), onchange: () => load()}, el("option", {value: ""}, tr("全部单元")),
    [...state.cells.values()].map(one => el("option", {value: one.id, selected: only === String(one.id)}, one.name)));
  const day = el("input", {type: "date", "aria-label": tr("日期"), value: today(), onchange: () => load()});
  const shift = el("select", {"aria-label": tr("班"), onchange: () => load()},
    state.me.shifts.map((begins, i) => el("option", {value: i + 1}, `${shiftName(i + 1, count)} ${begins}`)));
  const now = new Date(Date.now() + 1000 * ([...state.cells.values()][0]?.utcOff ?? 0)).toISOString().slice(11, 16);
  const begun = state.me.shifts.filter(begins => begins <= now).length;
  shift.value = begun || count;
  if (!begun) day.value = daysBefore(today(), 1);
  page.append(el("div", {class: "bar noprint"}, el("h1", {}, tr("班次报告")), cell, day, shift,
    el("button", {type: "button", class: "main", onclick: () => print()}, tr("打印"))), body);
  async function load() {
    const report = await get(`shift?cell=${cell.value}&day=${day.value}&shift=${shift.value}`);
    const rows = report.rows;
    const sum = key => rows.reduce((value, row) => value + row[key], 0);
    const total = {found: sum("found"), notFound: sum("notFound"), refused: sum("refused")};
    const one = cell.value !== "";
    const fields = row => [number(all(row)), number(row.found), number(row.notFound), number(row.refused), percent(row.found, all(row)),
      number(row.score, 1), row.reply == null ? "–" : number(row.reply) + " ms", row.replyMax == null ? "–" : number(row.replyMax) + " ms"];
    const columns = [[tr("单元")], [tr("工位"), "n"], one && [tr("型号")], [tr("件数"), "n"], [tr("找到"), "n"], [tr("未找到"), "n"], [tr("拒绝"), "n"],
      [tr("合格率"), "n"], [tr("得分"), "n"], [tr("响应"), "n"], [tr("最长响应"), "n"]].filter(Boolean);
    body.replaceChildren(
      el("div", {class: "card sheet"},
        el("h2", {}, `${tr("班次报告")} · ${cell.selectedOptions[0].textContent}`),
        el("p", {}, `${day.value} ${shiftName(Number(shift.value), count)} (${local(report.begin).slice(0, 11)} – ${local(report.end).slice(0, 11)}) · ` +
          `${tr("报告时间")} ${new Date().toLocaleString()}`),
        el("div", {class: "items"}, [[tr("件数"), number(all(total))], [tr("合格率"), percent(total.found, all(total))], [tr("未找到"), number(total.notFound)],
          [tr("拒绝"), number(total.refused)]].map(([name, value]) => el("div", {class: "item"}, el("span", {}, name), el("b", {}, value)))),
        el("h2", {}, tr("按小时")), hoursChart(report.hours, Number(report.begin.slice(11, 13)), Math.ceil((Date.parse(report.end) - Date.parse(report.begin)) / 3600000), true),
        rows.length > 0 && table(columns, rows.map(row => [row.name, row.station, ...(one ? [row.model || "–"] : []), ...fields(row)])),
        report.errors?.length && [el("h2", {}, tr("错误代码")), table([[tr("代码"), "n"], [tr("件数"), "n"]], report.errors.map(e => [e.error, number(e.parts)]))],
        report.alarms.length > 0 && [el("h2", {}, tr("报警")), table([[tr("时间")], [tr("单元")], [tr("详情")]], report.alarms.map(a => [local(a.local), a.name, a.text]))]));
  }
  load();
  return {};
}

const reasons = {damaged: "消息损坏", newer: "版本更新", identity: "冒用他人标识", range: "范围不符"};

export function faultsPage(page) {
  const body = el("div");
  page.append(el("div", {class: "bar"}, el("h1", {}, tr("待查"))), body);
  async function load() {
    const {aside, missing} = await get("faults");
    body.replaceChildren(
      card(tr("被搁置的消息"), aside.length ? table([[tr("最近")], [tr("原因")], [tr("主题")], [tr("详情"), "long"], [tr("次数"), "n"], [tr("内容"), "n"]],
        aside.map(one => [new Date(one.last).toLocaleString(), pill(one.reason === "newer" ? "caution" : "bad", tr(reasons[one.reason] ?? one.reason)), one.topic, one.detail,
          number(one.times), state.me.admin ? el("a", {href: "/api/aside/" + one.id}, `${number(one.bytes)} B`) : `${number(one.bytes)} B`])) :
        el("p", {class: "empty"}, tr("没有被搁置的消息"))),
      card(tr("缺失的行"), missing.length ? table([[tr("单元")], [tr("数据流")], [tr("从"), "n"], [tr("到"), "n"], [tr("已请求"), "n"]],
        missing.map(gap => [gap.name, gap.stream, number(gap.after + 1), number(gap.upto), number(gap.asks)])) :
        el("p", {class: "empty"}, tr("没有缺失的行"))));
  }
  load();
  return {aside: load};
}
