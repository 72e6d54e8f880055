// All cells at a glance.

import {state} from "./app.js";
import {el, pill} from "./draw.js";
import {ago, number, percent, tr} from "./words.js";

const modes = {run: ["good", "运行"], test: ["caution", "测试"], offline: ["faint", "离线"], starting: ["faint", "启动中"]};

export const total = (cell, i) => (cell.counts ?? []).reduce((sum, station) => sum + station[i], 0);
export const parts = cell => total(cell, 1) + total(cell, 2) + total(cell, 3);

/// How bad it is, from 0 (all well) on.
export function urgency(cell) {
  if (!cell.online) return 4;
  const health = [cell.plc, cell.camera1, cell.camera2, cell.recording];
  if (health.includes("fault") || cell.alarms.some(alarm => alarm.severity === "fault")) return 3;
  if (cell.twice || Math.abs(cell.clockOff ?? 0) > 60000) return 2;
  if (health.includes("warning") || cell.alarms.length) return 2;
  return cell.missing > 0 || cell.waiting > 100 ? 1 : 0;
}

export function statePill(cell) {
  if (!cell.online) return pill("bad", tr("断开"));
  if (urgency(cell) === 3) return pill("bad", tr("故障"));
  const [kind, text] = modes[cell.mode] ?? ["faint", "未知"];
  return pill(urgency(cell) === 2 && kind === "good" ? "caution" : kind, tr(text));
}

function notes(cell) {
  const list = cell.alarms.map(alarm => alarm.text);
  if (cell.twice) list.unshift(tr("同名单元：两个单元使用了同一名称，请改名"));
  if (Math.abs(cell.clockOff ?? 0) > 60000) list.unshift(tr("时钟偏差超过一分钟，请校时"));
  if (!cell.online) list.unshift(ago(cell.seen));
  if (cell.missing > 0) list.push(`${tr("缺失")} ${number(cell.missing)}`);
  return list;
}

function tile(cell) {
  const all = parts(cell), found = total(cell, 1);
  const share = all > 0 ? 100 * found / all : null;
  const told = notes(cell);
  return el("a", {class: "tile level" + urgency(cell), href: "#/cell/" + cell.id, "data-id": cell.id, title: told.join("\n")},
    el("span", {class: "name"}, cell.name), statePill(cell),
    el("span", {class: "yield" + (share != null && share < 95 ? " low" : "")}, percent(found, all)),
    el("span", {class: "count"}, `${number(all)} ${tr("件")}`),
    el("span", {class: "note"}, told.length ? told[0] : cell.waiting > 100 ? `${tr("等待")} ${number(cell.waiting)}` : ""),
    told.length > 1 && el("span", {class: "more"}, "+" + (told.length - 1)));
}

function summary(cells) {
  const sum = of => cells.reduce((all, cell) => all + of(cell), 0);
  const found = sum(cell => total(cell, 1)), all = sum(parts);
  const figure = (value, text, kind = "") => el("div", {class: "figure " + kind}, el("b", {}, value), el("span", {}, text));
  const urgent = cells.filter(cell => urgency(cell) > 1).length;
  return [
    figure(`${cells.filter(cell => cell.online).length} / ${cells.length}`, tr("单元在线")),
    figure(number(urgent), tr("需要处理"), urgent ? "bad" : ""),
    figure(number(all), tr("今日件数")),
    figure(percent(found, all), tr("合格率")),
    figure(number(sum(cell => cell.waiting ?? 0)), tr("待传行")),
  ];
}

export function cellsPage(page) {
  const figures = el("div", {class: "figures"});
  const grid = el("div", {class: "tiles"});
  const search = el("input", {type: "search", placeholder: tr("搜索单元"), "aria-label": tr("搜索单元"), oninput: () => draw()});
  const only = el("input", {type: "checkbox", onchange: () => draw()});
  page.append(el("div", {class: "bar"}, figures, el("span", {class: "spring"}), search,
    el("label", {class: "check"}, only, tr("只看需要处理的"))), grid);

  const wanted = cell => (!only.checked || urgency(cell) > 1) &&
    `${cell.group} ${cell.name}`.toLowerCase().includes(search.value.trim().toLowerCase());
  function draw() {
    const cells = [...state.cells.values()];
    figures.replaceChildren(...summary(cells));
    const shown = cells.filter(wanted);
    const groups = [...new Set(shown.map(cell => cell.group))];
    grid.replaceChildren(...groups.flatMap(group => [groups.length > 1 && el("h2", {class: "group"}, group),
      ...shown.filter(cell => cell.group === group).map(tile)]).filter(Boolean));
    if (!shown.length)
      grid.append(el("p", {class: "empty"}, tr(cells.length ? "没有符合条件的单元" : "没有单元。单元启用转发后会出现在这里。")));
  }
  draw();
  return {
    cells(changed) {
      if (changed.some(cell => !grid.querySelector(`[data-id="${cell.id}"]`)) || only.checked || changed.length >= state.cells.size)
        return draw();
      for (const cell of changed) grid.querySelector(`[data-id="${cell.id}"]`).replaceWith(tile(cell));
      figures.replaceChildren(...summary([...state.cells.values()]));
    },
  };
}
