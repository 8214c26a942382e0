// Air-handling builders in the viewer: add a mixing, heating/cooling, coil, humidifier or
// ratio step to a process with the inputs an engineer thinks in; the states they make listed
// with t, φ, d, h; each step's inputs editable afterwards (the chain follows, as the server
// recomputes the scene); undo and redo of every edit of the scene; the loads of a process step
// in a tooltip over its segment; the report export; collapsible panel sections.
// Runs after viewer.js and uses its scene, putScene, sceneChanged, redraw, el and api.
"use strict";

// ---------- undo and redo ----------

const editHistory = { undo: [], redo: [], restoring: false };
const HISTORY_LIMIT = 200;

// Every edit of the scene ends in sceneChanged; the scene before it becomes an undo step.
const sceneChangedBase = sceneChanged;
sceneChanged = function (next) {
  // An edit that changes nothing (a field's change event fired twice) is no step of its own.
  if (!editHistory.restoring && scene && JSON.stringify(scene) !== JSON.stringify(next)) {
    editHistory.undo.push(structuredClone(scene));
    if (editHistory.undo.length > HISTORY_LIMIT) editHistory.undo.shift();
    editHistory.redo = [];
  }
  sceneChangedBase(next);
  updateHistoryButtons();
  renderBuilders();
};

async function travel(from, to) {
  if (from.length === 0) return;
  const target = from.pop();
  to.push(structuredClone(scene));
  editHistory.restoring = true;
  try { await putScene(target); } finally { editHistory.restoring = false; }
  updateHistoryButtons();
}
const undo = () => travel(editHistory.undo, editHistory.redo);
const redo = () => travel(editHistory.redo, editHistory.undo);

document.addEventListener("keydown", (ev) => {
  if (!(ev.ctrlKey || ev.metaKey)) return;
  if (ev.target instanceof HTMLInputElement && ev.target.type === "text") return;  // the field's own undo
  const key = ev.key.toLowerCase();
  if (key === "z" && !ev.shiftKey) { ev.preventDefault(); undo(); }
  else if (key === "y" || (key === "z" && ev.shiftKey)) { ev.preventDefault(); redo(); }
});

// ---------- the panel section ----------

const STEP_KINDS = {
  mixing: { label: "Mixing", fields: [["a", "ref", "Air a (fresh)"], ["b", "ref", "Air b (return)"], ["fraction", "num", "Fresh-air fraction (0–1)"], ["mass_a", "num", "or flow a"], ["mass_b", "num", "flow b"]] },
  sensible: { label: "Heating / cooling", fields: [["from", "ref", "From"], ["tdb", "numref", "To t, °C"]] },
  cooling_dehumidify: { label: "Cooling coil", fields: [["from", "ref", "From"], ["rh", "num", "Leaving φ, %"], ["d", "numref", "with d, g/kg (or state)"], ["tdb", "numref", "or t, °C"], ["adp", "num", "or ADP, °C"], ["bf", "num", "bypass factor"]] },
  steam_humidify: { label: "Steam humidifier", fields: [["from", "ref", "From"], ["rh", "num", "To φ, %"], ["d", "numref", "or d, g/kg"]] },
  adiabatic_humidify: { label: "Spray humidifier", fields: [["from", "ref", "From"], ["rh", "num", "To φ, %"], ["d", "numref", "or d, g/kg"]] },
  ratio: { label: "Ratio (ε) line", fields: [["from", "ref", "From"], ["ratio", "num", "ε, kJ/kg"], ["dt0", "num", "Δt₀, K"], ["tdb", "numref", "or t, °C"], ["d", "num", "or d"], ["h", "num", "or h"], ["rh", "num", "or φ, %"]] },
};

const style = document.createElement("style");
style.textContent = `
#panel > section > h2 { cursor: pointer; }
#panel > section > h2::before { content: "▾ "; }
#panel > section.collapsed > h2::before { content: "▸ "; }
#panel > section.collapsed > :not(h2) { display: none; }
#panel > section.export-section { position: sticky; bottom: -24px; background: #f7f8fa; padding-bottom: 8px; z-index: 1; }
#builders label { display: block; margin: 2px 0; }
#builders input[type=number], #builders input[type=text] { width: 80px; }
#builder-states td, #builder-steps td { padding: 0 4px; font-size: 12px; white-space: nowrap; }
#builder-steps input { width: 58px; }
#builder-steps tr { display: flex; flex-wrap: wrap; border-bottom: 1px solid #ddd; }
.loads-tip { position: absolute; pointer-events: none; background: #fffffe; border: 1px solid #888; padding: 4px 6px;
  font: 12px sans-serif; white-space: pre; z-index: 5; box-shadow: 0 1px 4px rgba(0,0,0,.2); }
`;
document.head.append(style);

const stateRows = el("tbody");
const stepRows = el("tbody");
const kindSelect = el("select", { id: "builder-kind" }, ...Object.entries(STEP_KINDS).map(([k, v]) => el("option", { value: k, textContent: v.label })));
const fieldBox = el("div", { id: "builder-fields" });
const resultInput = el("input", { type: "text", id: "builder-result", placeholder: "e.g. C" });
const nameInput = el("input", { type: "text", id: "builder-name", placeholder: "step name" });
const processSelect = el("select", { id: "builder-process" });
const flowInput = el("input", { type: "number", step: "any", id: "builder-flow", placeholder: "m³/h" });
const undoButton = el("button", { type: "button", id: "undo", textContent: "Undo", title: "Ctrl+Z", onclick: undo });
const redoButton = el("button", { type: "button", id: "redo", textContent: "Redo", title: "Ctrl+Y", onclick: redo });
const addButton = el("button", { type: "button", id: "builder-add", textContent: "Add step" });

const section = el("section", { id: "builders" },
  el("h2", { textContent: "Air handling" }),
  el("div", { className: "row" }, undoButton, redoButton),
  el("label", {}, "Process ", processSelect, " flow ", flowInput, " m³/h"),
  el("label", {}, "Step ", kindSelect),
  fieldBox,
  el("label", {}, "Name ", nameInput, " result ", resultInput),
  el("div", { className: "row" }, addButton),
  el("h3", { textContent: "States" }),
  el("table", { id: "builder-states" }, el("thead", {}, el("tr", {}, ...["", "t °C", "φ %", "d g/kg", "h kJ/kg"].map((t) => el("th", { textContent: t })))), stateRows),
  el("h3", { textContent: "Steps" }),
  el("table", { id: "builder-steps" }, stepRows));
const panel = document.getElementById("panel");
panel.insertBefore(section, panel.firstElementChild);

// Sections fold by their heading; Export and Save stay at the panel's foot.
for (const s of panel.querySelectorAll(":scope > section")) {
  const h = s.querySelector(":scope > h2");
  if (h) h.addEventListener("click", () => s.classList.toggle("collapsed"));
  if (s.querySelector("#save")) {
    s.classList.add("export-section");
    const a = el("a", { className: "button", id: "export-report", textContent: "Report PDF" });
    a.setAttribute("download", "kygraph-report.pdf");
    s.querySelector(".row").append(a);
  }
}

function stateNames() {
  const names = new Set();
  for (const p of scene.points || []) if (p.name) names.add(p.name);
  for (const proc of scene.processes || []) {
    for (const s of proc.states || []) if (s.name) names.add(s.name);
    for (const st of proc.steps || []) {
      if (st.result) names.add(st.result);
      if (st.to && typeof st.to === "object" && st.to.name) names.add(st.to.name);
    }
  }
  return [...names];
}

function renderFields() {
  const names = stateNames();
  fieldBox.replaceChildren(...STEP_KINDS[kindSelect.value].fields.map(([key, kind, label]) => {
    const input = kind === "ref"
      ? el("select", { name: key }, ...names.map((n) => el("option", { value: n, textContent: n })))
      : el("input", { type: kind === "num" ? "number" : "text", step: "any", name: key });
    return el("label", {}, `${label} `, input);
  }));
}
kindSelect.addEventListener("change", renderFields);

// A field's text as the scene wants it: a number, a state name (where one may stand), or nothing.
function fieldValue(kind, text) {
  if (text === "") return undefined;
  const n = Number(text);
  if (Number.isFinite(n)) return n;
  return kind === "ref" || kind === "numref" ? text : undefined;
}

addButton.addEventListener("click", () => {
  const type = kindSelect.value;
  const step = { type };
  for (const [key, kind] of STEP_KINDS[type].fields) {
    const v = fieldValue(kind, fieldBox.querySelector(`[name="${key}"]`).value.trim());
    if (v !== undefined) step[key] = v;
  }
  if (nameInput.value.trim()) step.name = nameInput.value.trim();
  if (resultInput.value.trim()) step.result = resultInput.value.trim();
  const next = structuredClone(scene);
  next.processes = next.processes || [];
  let i = Number(processSelect.value);
  if (!(i >= 0 && i < next.processes.length)) i = next.processes.push({ steps: [] }) - 1;
  next.processes[i].steps.push(step);
  const flow = Number(flowInput.value);
  if (flowInput.value !== "" && Number.isFinite(flow)) next.processes[i].flow = { m3h: flow };
  putScene(next);
});

const EDITABLE = ["fraction", "mass_a", "mass_b", "tdb", "rh", "d", "h", "adp", "bf", "dt0", "ratio", "t_steam"];

function renderBuilders() {
  if (!scene) return;
  const procs = scene.processes || [];
  const keep = processSelect.value;
  processSelect.replaceChildren(...procs.map((p, i) => el("option", { value: String(i), textContent: `process ${i + 1}` })),
    el("option", { value: "new", textContent: "new process" }));
  if ([...processSelect.options].some((o) => o.value === keep)) processSelect.value = keep;
  renderFields();
  stepRows.replaceChildren(...procs.flatMap((proc, i) => (proc.steps || []).map((st, k) => {
    const cells = [el("td", { textContent: `${i + 1}.${k + 1} ${st.name || st.type}` })];
    for (const key of EDITABLE) {
      if (!(key in st) || typeof st[key] !== "number") continue;
      const input = el("input", { type: "number", step: "any", value: String(st[key]), name: key, title: key });
      input.dataset.step = `${i}.${k}`;
      input.addEventListener("change", () => {
        const v = Number(input.value);
        if (input.value === "" || !Number.isFinite(v)) return;
        const next = structuredClone(scene);
        next.processes[i].steps[k][key] = v;
        putScene(next);
      });
      cells.push(el("td", {}, `${key} `, input));
    }
    return el("tr", {}, ...cells);
  })));
}

// ---------- states, loads and the tooltip ----------

let geometry = null;
const tip = el("div", { className: "loads-tip", hidden: true, id: "loads-tip" });
document.getElementById("chart-pane").append(tip);

async function refreshGeometry() {
  if (!view.drawn.w) return;
  try {
    geometry = await api("GET", `/api/geometry?w=${view.drawn.w}&h=${view.drawn.h}`);
  } catch (err) {
    geometry = null;
    return;
  }
  stateRows.replaceChildren(...(geometry.states || []).filter(Boolean).map((s) =>
    el("tr", {}, ...[s.name, fmt(s.tdb, 1), fmt(s.rh, 1), fmt(s.d, 2), fmt(s.h, 2)].map((t) => el("td", { textContent: t })))));
  const a = document.getElementById("export-report");
  if (a) a.href = `/api/report?w=${Math.round(view.drawn.w / (window.devicePixelRatio || 1))}&h=${Math.round(view.drawn.h / (window.devicePixelRatio || 1))}`;
  document.body.dataset.geometry = String(view.redraws);
}

const redrawBase = redraw;
// After every drawing (viewer.js marks each on the body), the states, loads and pixels of
// that drawing; this script may load after the first one.
let buildersShown = false;
function afterDrawing() {
  if (!buildersShown && scene) { buildersShown = true; renderBuilders(); }
  refreshGeometry();
}
new MutationObserver(afterDrawing).observe(document.body, { attributes: true, attributeFilter: ["data-redraws"] });
if (view.redraws > 0) afterDrawing();

function segmentDistance(p, a, b) {
  const dx = b.x - a.x, dy = b.y - a.y;
  const len = dx * dx + dy * dy;
  const t = len > 0 ? Math.max(0, Math.min(1, ((p.x - a.x) * dx + (p.y - a.y) * dy) / len)) : 0;
  return Math.hypot(p.x - (a.x + t * dx), p.y - (a.y + t * dy));
}

function loadsText(st) {
  const l = st.loads;
  const lines = [`${st.name} (${st.fromName || "·"} → ${st.toName || "·"})`,
    `Δt ${fmt(l.dt, 2)} K   Δd ${fmt(l.dd, 2)} g/kg   Δh ${fmt(l.dh, 2)} kJ/kg`,
    `ε ${fmt(l.ratio, 0)} kJ/kg   SHR ${fmt(l.shr, 2)}`];
  if (l.total !== null && l.total !== undefined)
    lines.push(`sensible ${fmt(l.sensible, 2)} kW   latent ${fmt(l.latent, 2)} kW`, `total ${fmt(l.total, 2)} kW   moisture ${fmt(l.moisture, 2)} kg/h`);
  else lines.push(st.kind === "mixing" ? "a mixing exchanges no heat" : "no air flow given");
  return lines.join("\n");
}

chartImg.addEventListener("mousemove", (ev) => {
  const p = imagePixel(ev);
  const steps = (geometry && geometry.steps) || [];
  let best = null, bestDist = 6 * (window.devicePixelRatio || 1);
  if (p) for (const st of steps) {
    if (!st.from || !st.to) continue;
    const d = segmentDistance(p, st.from, st.to);
    if (d < bestDist) { best = st; bestDist = d; }
  }
  if (!best) { tip.hidden = true; return; }
  const r = chartPane.getBoundingClientRect();
  tip.textContent = loadsText(best);
  tip.hidden = false;
  // Above and to the left of the pointer: the state readout takes the side below and right.
  const x = ev.clientX - r.left, y = ev.clientY - r.top;
  tip.style.left = `${Math.max(0, x - tip.offsetWidth - 14)}px`;
  tip.style.top = `${y - tip.offsetHeight - 14 >= 0 ? y - tip.offsetHeight - 14 : y + 14}px`;
});
chartImg.addEventListener("mouseleave", () => { tip.hidden = true; });

function updateHistoryButtons() {
  undoButton.disabled = editHistory.undo.length === 0;
  redoButton.disabled = editHistory.redo.length === 0;
}
updateHistoryButtons();

// ---------- altitude ----------

// The site's altitude in place of the pressure (both are fields of the settings form);
// whichever of the two was edited last counts.
const putSceneBase = putScene;
putScene = async function (next) {
  if (next && "pressure" in next && "altitude" in next) {
    if (scene && next.pressure !== scene.pressure) delete next.altitude;
    else delete next.pressure;
  }
  await putSceneBase(next);
};
