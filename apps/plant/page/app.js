// The frame: log-in, pages by the address after #, what happens meanwhile.

import {cellPage} from "./cell.js";
import {cellsPage} from "./cells.js";
import {el} from "./draw.js";
import {comparePage, driftPage, faultsPage, shiftPage} from "./tables.js";
import {language, setLanguage, tr} from "./words.js";

const page = document.getElementById("page");
export const state = {me: null, cells: new Map(), health: {}};
let current = null; // the page that is shown: {cells?(changed), aside?(), end?()}
let events = null;

export async function get(path) {
  const answer = await fetch("/api/" + path);
  if (answer.status === 401) {
    logIn();
    throw new Error("login");
  }
  const value = await answer.json();
  if (!answer.ok) throw new Error(value.text || value.error);
  return value;
}

function setLook(look) {
  document.documentElement.dataset.look = look;
  localStorage.setItem("look", look);
}

function showHealth() {
  const words = {
    "database diskFull": "数据库磁盘已满：行留在代理服务器和单元中，腾出空间后自动继续",
    "database away": "数据库不可用，正在重试", "broker away": "代理服务器不可用，正在重试",
    "broker tls": "代理服务器的证书不被接受", "broker login": "代理服务器拒绝登录",
    "broker settings": "代理服务器设置不可用", "broker takenOver": "另一个收集器使用了同一实例名",
    "server away": "无法连接服务器，正在重试"};
  const bar = document.getElementById("health");
  const lines = Object.entries(state.health).map(([part, {kind, text}]) =>
    el("p", {}, el("b", {}, tr(words[`${part} ${kind}`] ?? kind)), text ? " " + text : ""));
  bar.replaceChildren(...lines);
  bar.hidden = lines.length === 0;
}

function listen() {
  events?.close();
  events = new EventSource("/api/live");
  const on = (name, work) => events.addEventListener(name, event => work(JSON.parse(event.data)));
  on("cells", changed => {
    for (const cell of changed) state.cells.set(cell.id, cell);
    current?.cells?.(changed);
  });
  on("health", health => {
    state.health = health;
    showHealth();
  });
  on("aside", () => current?.aside?.());
  on("reload", loadCells);
  events.onopen = () => {
    if (!state.health.server) return;
    delete state.health.server;
    showHealth();
    loadCells();
  };
  events.onerror = () => {
    state.health.server = {kind: "away"};
    showHealth();
    if (events.readyState === EventSource.CLOSED) // it gives up when the answer is no stream: the log-in has ended, say
      setTimeout(() => state.me && get("me").then(listen, error => error.message !== "login" && listen()), 2000);
  };
}

async function loadCells() {
  const cells = await get("cells");
  state.cells = new Map(cells.map(cell => [cell.id, cell]));
  current?.cells?.(cells);
}

function frame() {
  document.getElementById("head").hidden = false;
  const links = [["#/", "单元"], ["#/compare", "对比"], ["#/drift", "漂移"], ["#/shift", "班次报告"], ["#/faults", "待查"]];
  const here = location.hash || "#/";
  document.getElementById("nav").replaceChildren(...links.map(([target, text]) => el("a", {
    href: target, "aria-current": (target === "#/" ? here === "#/" || here.startsWith("#/cell") : here.startsWith(target)) && "page",
  }, tr(text))));
  document.getElementById("tongue").textContent = tr("EN");
  document.getElementById("leave").textContent = tr("退出");
  document.getElementById("look").title = tr("深浅");
}

function show() {
  if (!state.me) return;
  frame();
  current?.end?.();
  const [, name, argument] = (location.hash || "#/").split("/");
  const pages = {"": cellsPage, cell: cellPage, compare: comparePage, drift: driftPage, shift: shiftPage, faults: faultsPage};
  page.replaceChildren();
  current = (pages[name] ?? cellsPage)(page, argument);
  scrollTo(0, 0);
}

function logIn() {
  events?.close();
  state.me = null;
  state.health = {};
  showHealth();
  current?.end?.();
  current = null;
  document.getElementById("head").hidden = true;
  const problem = el("p", {class: "problem", role: "alert"});
  const form = el("form", {class: "card login"},
    el("img", {src: "icon.svg", alt: "", width: 56, height: 56}), el("h1", {}, "ValveCell"),
    el("label", {}, tr("用户名"), el("input", {name: "name", autocomplete: "username", required: true, autofocus: true})),
    el("label", {}, tr("密码"), el("input", {name: "password", type: "password", autocomplete: "current-password", required: true})),
    problem, el("button", {class: "main"}, tr("登录")),
    el("button", {type: "button", class: "plain", onclick: () => { setLanguage(language === "zh" ? "en" : "zh"); logIn(); }},
      language === "zh" ? "English" : "中文"));
  form.addEventListener("submit", async event => {
    event.preventDefault();
    const given = new FormData(form);
    const answer = await fetch("/api/login", {method: "POST", headers: {"Content-Type": "application/json"},
      body: JSON.stringify({name: given.get("name"), password: given.get("password")})}).catch(() => null);
    if (answer?.ok) return begin();
    problem.textContent = !answer || answer.status === 503 ? tr("无法连接服务器，正在重试") :
      tr(answer.status === 429 ? "尝试次数过多，请五分钟后再试" : "用户名或密码不正确");
  });
  page.replaceChildren(form);
  form.querySelector("input").focus();
}

async function begin() {
  const [me, cells] = await Promise.all([get("me"), get("cells")]);
  state.me = me;
  state.health = me.health;
  state.cells = new Map(cells.map(cell => [cell.id, cell]));
  showHealth();
  show();
  listen();
}

setLanguage(language);
setLook(new URLSearchParams(location.search).get("look") || localStorage.getItem("look") || "");
addEventListener("hashchange", show);
document.getElementById("tongue").addEventListener("click", () => { setLanguage(language === "zh" ? "en" : "zh"); show(); });
document.getElementById("look").addEventListener("click", () => {
  const dark = document.documentElement.dataset.look === "dark" ||
    (!document.documentElement.dataset.look && matchMedia("(prefers-color-scheme: dark)").matches);
  setLook(dark ? "light" : "dark");
});
document.getElementById("leave").addEventListener("click", () => fetch("/api/logout", {method: "POST"}).finally(logIn));
begin().catch(error => {
  if (error.message === "login") return;
  state.health = {server: {kind: "away"}};
  showHealth();
  setTimeout(() => location.reload(), 3000);
});
