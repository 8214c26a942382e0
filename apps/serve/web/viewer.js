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
const view = { w: 0, h: 0, drawn: { w: 0, h: 0 }, redraws: 0 };
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
  view.w = w;
  view.h = h;
  if (redrawController) redrawController.abort();
  const controller = new AbortController();
  redrawController = controller;
  try {
    const res = await fetch(`/api/chart?w=${w}&h=${h}`, { signal: controller.signal });
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
    view.drawn = { w, h };
    view.redraws += 1;
    document.body.dataset.drawnSize = `${w}x${h}`;
    document.body.dataset.redraws = String(view.redraws);
    updateExportLinks();
  } catch (err) {
    if (err.name !== "AbortError") showMessage(`The chart could not be drawn: ${err.message}`, true);
  } finally {
    if (redrawController === controller) redrawController = null;
  }
}

let resizeTimer = 0;
new ResizeObserver(() => {
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

const fmt = (v, digits) => (typeof v === "number" && isFinite(v) ? v.toFixed(digits) : "—");

const READOUT_ROWS = [
  ["Dry bulb", "tdb", 1, "°C"],
  ["Wet bulb", "twb", 1, "°C"],
  ["Dew point", "tdp", 1, "°C"],
  ["RH", "rh", 1, "%", 100],
  ["d", "d", 2, "g/kg"],
  ["h", "h", 2, "kJ/kg"],
  ["pv", "pv", 0, "Pa"],
  ["Density", "rho", 3, "kg/m³"],
];

function renderReadout(state, ev) {
  if (state.inside) {
    readout.classList.remove("outside");
    readout.innerHTML = "<table>" + READOUT_ROWS.map(([label, key, digits, unit, scale]) =>
      `<tr data-key="${key}"><td>${label}</td><td class="v">${fmt(state[key] * (scale || 1), digits)}</td><td>${unit}</td></tr>`
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

redraw();
