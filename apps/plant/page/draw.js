// Small tools to make elements and charts; nothing of them is HTML text, so nothing that a cell says is ever run.

export function el(name, attributes = {}, ...children) {
  const element = document.createElement(name);
  for (const [key, value] of Object.entries(attributes)) {
    if (key.startsWith("on")) element.addEventListener(key.slice(2), value);
    else if (value === true) element.setAttribute(key, "");
    else if (value !== false && value != null) element.setAttribute(key, value);
  }
  element.append(...children.flat().filter(child => child != null && child !== false));
  return element;
}

export function svg(name, attributes = {}, ...children) {
  const element = document.createElementNS("http://www.w3.org/2000/svg", name);
  for (const [key, value] of Object.entries(attributes)) element.setAttribute(key, value);
  element.append(...children.flat());
  return element;
}

const title = text => svg("title", {}, text);

/// Stacked bars of [label, found, notFound, refused, hint].
export function bars(rows, wide = false) {
  const width = innerWidth < 640 ? 330 : wide ? 1400 : 700, height = 170, base = height - 18;
  const most = Math.max(1, ...rows.map(row => row[1] + row[2] + row[3]));
  const step = width / Math.max(rows.length, 1);
  const every = Math.ceil(rows.length * 24 / width);
  const chart = svg("svg", {viewBox: `0 0 ${width} ${height}`, class: "chart", role: "img"});
  for (const share of [0.5, 1])
    chart.append(svg("line", {x1: 0, x2: width, y1: base - share * (base - 14), y2: base - share * (base - 14), class: "grid"}));
  chart.append(svg("text", {x: 0, y: 10, class: "scale"}, most.toLocaleString()));
  rows.forEach(([label, found, notFound, refused, hint], i) => {
    let y = base;
    const bar = svg("g", {}, title(hint));
    for (const [value, kind] of [[found, "found"], [notFound, "notFound"], [refused, "refused"]]) {
      if (!value) continue;
      const size = Math.max(kind === "found" ? 0 : 1.5, value / most * (base - 14));
      y -= size;
      bar.append(svg("rect", {x: i * step + step * 0.12, y, width: step * 0.76, height: size, class: kind}));
    }
    chart.append(bar);
    if (i % every === 0)
      chart.append(svg("text", {x: i * step + step / 2, y: height - 4, class: "tick"}, label));
  });
  return chart;
}

/// Lines of several series over the same points; each {name, kind, values}. `bounds`: the least and most of the scale.
export function lines(series, hint, bounds = null, height = 70) {
  const width = 300;
  const all = series.flatMap(one => one.values);
  const most = bounds ?? Math.max(0.05, ...all.map(Math.abs));
  const count = Math.max(...series.map(one => one.values.length));
  const at = (value, i) => `${count > 1 ? (4 + i / (count - 1) * (width - 8)).toFixed(1) : width / 2},${
    (height / 2 - value / most * (height / 2 - 6)).toFixed(1)}`;
  const chart = svg("svg", {viewBox: `0 0 ${width} ${height}`, class: "chart small", role: "img"}, title(hint));
  chart.append(svg("line", {x1: 0, x2: width, y1: height / 2, y2: height / 2, class: "grid"}));
  for (const {kind, values} of series) {
    chart.append(svg("polyline", {points: values.map(at).join(" "), class: kind}));
    const [x, y] = at(values[values.length - 1], values.length - 1).split(",");
    chart.append(svg("circle", {cx: x, cy: y, r: 3, class: kind}));
  }
  return chart;
}

export function table(columns, rows) {
  return el("div", {class: "scroll"}, el("table", {},
    el("thead", {}, el("tr", {}, columns.map(([text, kind]) => el("th", {class: kind}, text)))),
    el("tbody", {}, rows.map(cells => el("tr", {}, cells.map((cell, i) => el("td", {class: columns[i][1]}, cell ?? "–")))))));
}

export const pill = (kind, text) => el("span", {class: "pill " + kind}, text);

export const card = (heading, ...content) => el("section", {class: "card"}, heading && el("h2", {}, heading), content);
