// The viewer's overlays panel: wet-bulb and volume lines, the legend, the ready-made comfort
// zones, and CSV tables of measured or hourly states imported as data sets. Edits go to the
// server as scene changes, as the rest of the page's do; an imported table is sent once and
// kept by the server under its file name (the JSON body is at most 1 MiB: some 40 000 rows).
"use strict";

(() => {
  const PRESETS = [
    ["gb50736-summer-1", "GB 50736 summer I"],
    ["gb50736-summer-2", "GB 50736 summer II"],
    ["gb50736-winter-1", "GB 50736 winter I"],
    ["gb50736-winter-2", "GB 50736 winter II"],
    ["ashrae55-summer", "ASHRAE 55 summer"],
    ["ashrae55-winter", "ASHRAE 55 winter"],
  ];

  const section = document.createElement("section");
  section.id = "overlays";
  section.innerHTML = `
    <h2>Overlays</h2>
    <div class="row">
      <label><input type="checkbox" data-family="wet_bulb_lines"> Wet-bulb lines</label>
      <label><input type="checkbox" data-family="volume_lines"> Volume lines</label>
      <label><input type="checkbox" id="overlay-legend"> Legend</label>
    </div>
    <fieldset><legend>Comfort zones</legend>
      ${PRESETS.map(([key, text]) => `<label><input type="checkbox" data-preset="${key}"> ${text}</label>`).join("")}
    </fieldset>
    <div class="row">
      <label class="button">Import CSV… <input type="file" id="overlay-csv" accept=".csv,text/csv,text/plain" hidden></label>
      <span class="hint">a header naming a pair, e.g. time,tdb,rh</span>
    </div>
    <ul id="overlay-data" class="list"></ul>`;
  const exportSection = [...document.querySelectorAll("#panel > section")].find((s) => s.querySelector("#save"));
  document.getElementById("panel").insertBefore(section, exportSection || null);

  const dataList = section.querySelector("#overlay-data");

  function edited(change) {
    if (!scene) return;
    const next = structuredClone(scene);
    change(next);
    for (const key of ["zones", "data"]) if (next[key] && next[key].length === 0) delete next[key];
    putScene(next);
  }

  // The controls follow whatever scene the server holds.
  function sync() {
    if (!scene) return;
    for (const box of section.querySelectorAll("[data-family]")) box.checked = !!(scene[box.dataset.family] || {}).show;
    section.querySelector("#overlay-legend").checked = !!(scene.legend || {}).show;
    const presets = new Set((scene.zones || []).map((z) => z.preset));
    for (const box of section.querySelectorAll("[data-preset]")) box.checked = presets.has(box.dataset.preset);
    dataList.replaceChildren(...(scene.data || []).map((d) => {
      const li = document.createElement("li");
      li.textContent = d.name || d.file;
      const remove = document.createElement("button");
      remove.type = "button";
      remove.textContent = "×";
      remove.title = "Remove this data set";
      remove.addEventListener("click", () => edited((n) => { n.data = (n.data || []).filter((x) => x.file !== d.file); }));
      li.append(" ", remove);
      return li;
    }));
  }
  // Every change of the scene, the first load included, ends by listing it again.
  const baseRenderLists = renderLists;
  // eslint-disable-next-line no-global-assign
  renderLists = function () {
    baseRenderLists();
    sync();
  };

  for (const box of section.querySelectorAll("[data-family]")) {
    box.addEventListener("change", () => edited((n) => {
      n[box.dataset.family] = { ...(n[box.dataset.family] || {}), show: box.checked };
    }));
  }
  section.querySelector("#overlay-legend").addEventListener("change", (ev) => edited((n) => {
    n.legend = { ...(n.legend || {}), show: ev.target.checked };
  }));
  for (const box of section.querySelectorAll("[data-preset]")) {
    box.addEventListener("change", () => edited((n) => {
      n.zones = (n.zones || []).filter((z) => z.preset !== box.dataset.preset);
      if (box.checked) n.zones.push({ preset: box.dataset.preset });
    }));
  }

  section.querySelector("#overlay-csv").addEventListener("change", async (ev) => {
    const file = ev.target.files[0];
    ev.target.value = "";
    if (!file) return;
    try {
      const data = await api("POST", "/api/data", { name: file.name, csv: await file.text() });
      sceneChanged(data.scene);
      showMessage(data.note || "", false);
    } catch (err) {
      showMessage(err.message, true);
    }
    renderLists();
    await redraw();
  });

  sync();
})();
