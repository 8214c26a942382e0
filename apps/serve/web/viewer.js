// The viewer's page: shows the chart drawn by the server at the size of the chart pane, maps
// the mouse to states through the server, and edits the scene (points, processes, ratio
// lines, settings) that the server draws. The server holds the scene; the page only sends
// edits and redraws.
"use strict";

const RESIZE_DEBOUNCE_MS = 150;

const chartPane = document.getElementById("chart-pane");
const chartImg = document.getElementById("chart");
const readout = document.getElementById("readout");
const messageBox = document.getElementById("message");

// What the image on screen was drawn at; hover and clicks map pixels of this size.
// sceneSerial counts scene changes; each drawing records the one it shows.
const view = { w: 0, h: 0, drawn: { w: 0, h: 0 }, redraws: 0, sceneSerial: 0 };
let scene = null;

// ---------- talking to the server ----------

async function api(method, path, body) {
  const init = { method, headers: {} };
  if (body !== undefined) {
    init.headers["Content-Type"] = "application/json";
    init.body = JSON.stringify(body);
  }
  const res = await fetch(path, init);
  const text = await res.text();
  let data = null;
  try { data = text ? JSON.parse(text) : null; } catch (e) { data = null; }
  if (!res.ok) throw new Error((data && data.error) || `${res.status} ${res.statusText}`);
  return data;
}

function showMessage(text, isError) {
  messageBox.textContent = text;
  messageBox.classList.toggle("error", !!isError);
  messageBox.hidden = !text;
}

// ---------- drawing ----------

let redrawController = null;
let redrawQueued = false;

function paneSize() {
  const r = chartPane.getBoundingClientRect();
  return { w: Math.max(1, Math.floor(r.width)), h: Math.max(1, Math.floor(r.height)) };
}

// Asks for the chart at the pane's size; a newer request cancels an older one in flight.
async function redraw() {
  const { w, h } = paneSize();
  // Drawn at the screen's own pixels (high-density screens, browser zoom), shown at CSS size.
  const dpr = Math.min(4, Math.max(1, window.devicePixelRatio || 1));
  const dw = Math.round(w * dpr), dh = Math.round(h * dpr);
  const serial = view.sceneSerial;
  view.w = w;
  view.h = h;
  if (redrawController) redrawController.abort();
  const controller = new AbortController();
  redrawController = controller;
  try {
    const res = await fetch(`/api/chart?w=${dw}&h=${dh}`, { signal: controller.signal });
    if (!res.ok) {
      const data = await res.json().catch(() => null);
      throw new Error((data && data.error) || `${res.status}`);
    }
    const blob = await res.blob();
    const url = URL.createObjectURL(blob);
    await new Promise((resolve, reject) => {
      chartImg.onload = resolve;
      chartImg.onerror = reject;
      const old = chartImg.src;
      chartImg.src = url;
      if (old.startsWith("blob:")) URL.revokeObjectURL(old);
    });
    chartImg.style.width = `${w}px`;
    chartImg.style.height = `${h}px`;
    view.drawn = { w: dw, h: dh };
    view.redraws += 1;
    document.body.dataset.drawnSize = `${dw}x${dh}`;
    document.body.dataset.redraws = String(view.redraws);
    document.body.dataset.drawnScene = String(serial);
    updateExportLinks();
  } catch (err) {
    if (err.name !== "AbortError") showMessage(`The chart could not be drawn: ${err.message}`, true);
  } finally {
    if (redrawController === controller) redrawController = null;
  }
}

let resizeTimer = 0;
new ResizeObserver(() => {
  const { w, h } = paneSize();
  if (w === view.w && h === view.h) return;  // the size already drawn or being drawn
  clearTimeout(resizeTimer);
  resizeTimer = setTimeout(redraw, RESIZE_DEBOUNCE_MS);
}).observe(chartPane);

// ---------- the state under the mouse ----------

// The pixel of the drawn image under a mouse event, or null outside it.
function imagePixel(ev) {
  const r = chartImg.getBoundingClientRect();
  if (!view.drawn.w || r.width <= 0 || r.height <= 0) return null;
  const x = Math.floor((ev.clientX - r.left) * view.drawn.w / r.width);
  const y = Math.floor((ev.clientY - r.top) * view.drawn.h / r.height);
  if (x < 0 || y < 0 || x >= view.drawn.w || y >= view.drawn.h) return null;
  return { x, y, w: view.drawn.w, h: view.drawn.h };
}

function stateQuery(p) { return `x=${p.x}&y=${p.y}&w=${p.w}&h=${p.h}`; }

// A number with digits decimals, or a dash for none; the one number format of the page.
const fmt = (v, digits) => (typeof v === "number" && isFinite(v) ? v.toFixed(digits) : "—");

// The readout's rows, as the server lists the properties of a state: {key, label, unit, digits}.
let readoutRows = [];

function renderReadout(state, ev) {
  if (state.inside) {
    readout.classList.remove("outside");
    readout.innerHTML = "<table>" + readoutRows.map(({ key, label, unit, digits }) =>
      `<tr data-key="${key}"><td>${label}</td><td class="v">${fmt(state[key], digits)}</td><td>${unit}</td></tr>`
    ).join("") + "</table>";
  } else {
    readout.classList.add("outside");
    readout.textContent = state.message || "";
  }
  const pane = chartPane.getBoundingClientRect();
  let left = ev.clientX - pane.left + 16;
  let top = ev.clientY - pane.top + 16;
  readout.hidden = false;
  if (left + readout.offsetWidth > pane.width) left = Math.max(0, left - readout.offsetWidth - 32);
  if (top + readout.offsetHeight > pane.height) top = Math.max(0, top - readout.offsetHeight - 32);
  readout.style.left = `${left}px`;
  readout.style.top = `${top}px`;
}

// One hover request in flight at a time; the latest position waits for it.
let hoverBusy = false;
let hoverNext = null;

async function hover(ev) {
  const p = imagePixel(ev);
  if (!p) return;
  if (hoverBusy) { hoverNext = ev; return; }
  hoverBusy = true;
  try {
    const state = await api("GET", `/api/state?${stateQuery(p)}`);
    renderReadout(state, ev);
  } catch (err) {
    readout.hidden = true;
  } finally {
    hoverBusy = false;
    if (hoverNext) { const next = hoverNext; hoverNext = null; hover(next); }
  }
}

chartImg.addEventListener("mousemove", hover);
chartImg.addEventListener("mouseleave", () => { hoverNext = null; readout.hidden = true; });

// ---------- export ----------

function updateExportLinks() {
  const size = `w=${view.drawn.w}&h=${view.drawn.h}`;
  for (const f of ["png", "svg", "pdf"]) {
    const a = document.getElementById(`export-${f}`);
    a.href = `/api/chart?${size}&format=${f}&download=1`;
    a.setAttribute("download", `kygraph-chart.${f}`);
  }
  const s = document.getElementById("export-scene");
  s.href = `/api/scene?${size}&download=1`;
  s.setAttribute("download", "kygraph-scene.json");
}

document.getElementById("panel-toggle").addEventListener("click", () => {
  document.body.classList.toggle("panel-hidden");
});

// ---------- the scene: points, processes, ratio lines ----------

const pointList = document.getElementById("point-list");
const processList = document.getElementById("process-list");
const ratioList = document.getElementById("ratio-list");
const selected = new Set();  // names of the points ticked in the list

function el(tag, props, ...children) {
  const e = document.createElement(tag);
  Object.assign(e, props || {});
  for (const c of children) e.append(c);
  return e;
}

function deleteButton(title, onClick) {
  return el("button", { type: "button", className: "delete", title, textContent: "✕", onclick: onClick });
}

// The properties a scene gives of a state, as the readout shows them.
function describeState(s) {
  return readoutRows.filter(({ key }) => typeof s[key] === "number")
    .map(({ key, unit, digits }) => `${key} ${fmt(s[key], digits)} ${unit}`).join(", ");
}

// Every reference to a state name in processes and ratio lines, renamed or (to === null) dropped.
function renameReferences(next, from, to) {
  const fix = (ref) => (ref === from ? to : ref);
  for (const proc of next.processes || []) {
    for (const step of proc.steps || []) {
      for (const key of ["from", "to", "a", "b"]) if (key in step) step[key] = fix(step[key]);
      if (step.points) step.points = step.points.map(fix).filter((r) => r !== null);
    }
    proc.steps = (proc.steps || []).filter((st) => !["from", "to", "a", "b"].some((k) => k in st && st[k] === null) &&
                                                   (!st.points || st.points.length > 0));
  }
  next.processes = (next.processes || []).filter((p) => p.steps.length > 0);
  next.ratio_lines = (next.ratio_lines || []).filter((r) => r.from !== from || to !== null)
    .map((r) => ({ ...r, from: fix(r.from), ...(r.to !== undefined ? { to: fix(r.to) } : {}) }))
    .filter((r) => r.to !== null);
  for (const key of ["processes", "ratio_lines"]) if (next[key].length === 0) delete next[key];
}

// The scene the server returned after an edit; the drawing that follows shows it.
function sceneChanged(next) {
  scene = next;
  view.sceneSerial += 1;
  document.body.dataset.scene = String(view.sceneSerial);
}

function renderLists() {
  const points = scene.points || [];
  for (const name of [...selected]) if (!points.some((p) => p.name === name)) selected.delete(name);
  pointList.replaceChildren(...points.map((p, i) => {
    // Processes and ratio lines refer to points by name, so an unnamed point cannot be chosen.
    const tick = el("input", { type: "checkbox", checked: selected.has(p.name), disabled: !p.name,
                               title: p.name ? "Select" : "Name the point to use it in a process" });
    tick.addEventListener("change", () => {
      if (tick.checked) selected.add(p.name); else selected.delete(p.name);
      updateButtons();
    });
    const name = el("input", { type: "text", value: p.name || "", title: "Name" });
    name.addEventListener("change", () => {
      const next = structuredClone(scene);
      next.points[i].name = name.value;
      if (p.name) renameReferences(next, p.name, name.value);
      if (selected.delete(p.name)) selected.add(name.value);
      putScene(next);
    });
    const del = deleteButton("Delete the point", () => {
      const next = structuredClone(scene);
      next.points.splice(i, 1);
      if (next.points.length === 0) delete next.points;
      if (p.name) renameReferences(next, p.name, null);
      putScene(next);
    });
    return el("li", {}, tick, name, del, el("span", { className: "detail", textContent: describeState(p) }));
  }));

  const processes = scene.processes || [];
  processList.replaceChildren(...processes.map((proc, i) => {
    const ref = (r) => (typeof r === "string" ? r : (r && r.name) || "·");
    const text = (proc.steps || []).map((st) =>
      `${st.name || st.type}: ${(st.points || [st.a || st.from, st.result || st.to, st.b].filter((r) => r !== undefined)).map(ref).join(" → ")}`).join("; ");
    return el("li", {}, el("span", { textContent: "" }), el("span", { textContent: text }),
      deleteButton("Delete the process", () => {
        const next = structuredClone(scene);
        next.processes.splice(i, 1);
        if (next.processes.length === 0) delete next.processes;
        putScene(next);
      }));
  }));

  const ratios = scene.ratio_lines || [];
  ratioList.replaceChildren(...ratios.map((r, i) => {
    const from = typeof r.from === "string" ? r.from : "(state)";
    const end = r.to !== undefined ? "to a state" : ["d", "h", "rh"].filter((k) => k in r).map((k) => `${k} ${+Number(r[k]).toFixed(2)}`).join("");
    const eps = r.ratio !== undefined ? `ε ${r.ratio}` : "ε";
    const to = r.to !== undefined ? `to ${typeof r.to === "string" ? r.to : "(state)"}` : end;
    return el("li", {}, el("span", { textContent: "" }), el("span", { textContent: `${eps} from ${from}, ${to}` }),
      deleteButton("Delete the ratio line", () => {
        const next = structuredClone(scene);
        next.ratio_lines.splice(i, 1);
        if (next.ratio_lines.length === 0) delete next.ratio_lines;
        putScene(next);
      }));
  }));
  updateButtons();
}

function updateButtons() {
  document.getElementById("join-process").disabled = selected.size < 2;
  document.getElementById("add-ratio").disabled = selected.size !== 1;
}

document.getElementById("join-process").addEventListener("click", () => {
  const names = (scene.points || []).map((p) => p.name).filter((n) => selected.has(n));
  if (names.length < 2) return;
  const next = structuredClone(scene);
  next.processes = next.processes || [];
  next.processes.push({ steps: [{ type: "path", name: `process ${next.processes.length + 1}`, points: names }] });
  selected.clear();
  putScene(next);
});

document.getElementById("add-ratio").addEventListener("click", () => {
  const name = [...selected][0];
  const epsText = document.getElementById("ratio-eps").value.trim();
  const eps = epsText === "inf" || epsText === "-inf" ? epsText : Number(epsText);
  const d = Number(document.getElementById("ratio-d").value);
  if (eps !== epsText && !isFinite(eps)) { showMessage("ε must be a number, inf or -inf", true); return; }
  const point = (scene.points || []).find((p) => p.name === name);
  const line = { from: name, ratio: eps };
  // Without an end d the line runs 3 g/kg towards drier air, as supply air usually lies.
  if (document.getElementById("ratio-d").value !== "" && isFinite(d)) line.d = d;
  else if (typeof eps === "string") line.h = (point && typeof point.h === "number" ? point.h : 50) + (eps === "inf" ? 10 : -10);
  else line.d = Math.max(0, Math.round(((point && typeof point.d === "number" ? point.d : 10) - 3) * 100) / 100);
  const next = structuredClone(scene);
  next.ratio_lines = next.ratio_lines || [];
  next.ratio_lines.push(line);
  putScene(next);
});

// Sends the whole edited scene; the server checks it as it checks a scene file.
async function putScene(next) {
  try {
    sceneChanged(await api("PUT", "/api/scene", next));
    showMessage("");
  } catch (err) {
    showMessage(err.message, true);
  }
  renderLists();
  await fillSettings();
  await redraw();
}

chartImg.addEventListener("click", async (ev) => {
  const p = imagePixel(ev);
  if (!p) return;
  try {
    sceneChanged(await api("POST", "/api/points", p));
    showMessage("");
    renderLists();
    await redraw();
  } catch (err) {
    showMessage(err.message, true);
  }
});

// ---------- settings ----------

const settingsForm = document.getElementById("settings");

function getPath(obj, path) {
  return path.split(".").reduce((o, k) => (o && typeof o === "object" ? o[k] : undefined), obj);
}

function setPath(obj, path, value) {
  const keys = path.split(".");
  let o = obj;
  for (const k of keys.slice(0, -1)) o = o[k] = o[k] && typeof o[k] === "object" ? o[k] : {};
  o[keys[keys.length - 1]] = value;
}

// Builds the form from the server's table of settings: a fieldset per group, a control per
// field named by its path; the winter switch is the season, whose design conditions show alone.
function buildSettingsForm(fields) {
  const make = (tag, props, ...children) => {
    const e = Object.assign(document.createElement(tag), props);
    e.append(...children);
    return e;
  };
  const groups = new Map();
  for (const f of fields) {
    if (!groups.has(f.group))
      groups.set(f.group, settingsForm.appendChild(make("fieldset", {}, make("legend", { textContent: f.group }))));
    let parent = groups.get(f.group);
    if (f.path === "winter") {
      for (const season of ["Summer", "Winter"])
        parent.append(make("label", {}, make("input", { type: "radio", name: "season", value: season.toLowerCase() }), ` ${season}`));
      continue;
    }
    const [section, season] = f.path.split(".");
    if (section === "design") {
      parent = parent.querySelector(`.season[data-season="${season}"]`) ||
        parent.appendChild(make("div", { className: "season" }));
      parent.dataset.season = season;
    }
    let input;
    if (f.type === "choice") input = make("select", {}, ...f.choices.map((c) => make("option", { value: c.value, textContent: c.label })));
    else if (f.type === "bool") input = make("input", { type: "checkbox" });
    else input = make("input", { type: "number", step: "any", min: f.min, max: f.max });
    input.name = f.path;
    input.id = f.path.replaceAll(".", "-");
    parent.append(f.type === "bool" ? make("label", {}, input, ` ${f.label}`)
      : make("label", {}, `${f.label} `, input, ...(f.unit ? [` ${f.unit}`] : [])));
  }
}

// What the chart draws with: the scene's values and the defaults it leaves alone. A field the
// chart keeps no value of (the altitude) shows the scene's, and may be left empty.
let effective = {};
const shownValue = (name) => getPath(effective, name) ?? getPath(scene, name);

async function fillSettings() {
  let eff;
  try { eff = effective = await api("GET", "/api/settings"); } catch (err) { return; }
  for (const input of settingsForm.elements) {
    if (!input.name) continue;
    if (input.name === "season") input.checked = (input.value === "winter") === !!eff.winter;
    else if (input.type === "checkbox") input.checked = !!shownValue(input.name);
    else if (input.tagName === "SELECT") input.value = String(shownValue(input.name));
    else {
      const v = shownValue(input.name);
      input.value = typeof v === "number" ? String(v) : "";
    }
  }
  for (const div of settingsForm.querySelectorAll(".season"))
    div.hidden = (div.dataset.season === "winter") !== !!eff.winter;
}

settingsForm.addEventListener("change", (ev) => {
  const input = ev.target;
  if (!input.name) return;
  const next = structuredClone(scene);
  if (input.name === "season") next.winter = input.value === "winter";
  else if (input.type === "checkbox") setPath(next, input.name, input.checked);
  else if (input.tagName === "SELECT") setPath(next, input.name, input.value);
  else if (input.value === "" && getPath(effective, input.name) === undefined) setPath(next, input.name, undefined);
  else if (input.value === "") {
    showMessage(`${input.name}: a value is needed`, true);
    return;
  } else setPath(next, input.name, Number(input.value));
  putScene(next);
});
settingsForm.addEventListener("submit", (ev) => ev.preventDefault());

// ---------- save ----------

const saveButton = document.getElementById("save");
saveButton.addEventListener("click", async () => {
  try {
    const r = await api("POST", "/api/save", {});
    showMessage(`Saved to ${r.saved}`);
  } catch (err) {
    showMessage(err.message, true);
  }
});

async function start() {
  try {
    const schema = await api("GET", "/api/schema");
    buildSettingsForm(schema.settings);
    readoutRows = schema.state;
    const info = await api("GET", "/api/info");
    saveButton.disabled = !info.file;
    document.getElementById("save-target").textContent = info.file ? info.file : "no scene file given";
    scene = await api("GET", "/api/scene");
  } catch (err) {
    showMessage(err.message, true);
    scene = {};
  }
  renderLists();
  await fillSettings();
  await redraw();
}

start();
