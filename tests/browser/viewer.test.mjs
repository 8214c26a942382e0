// Browser tests of the viewer: Debian's Chromium, headless, driven by playwright-core against
// a running `kygraph serve` whose address is in KYGRAPH_VIEWER_URL (scripts/browser-test.sh
// starts it). The tests share the server's scene and run in order; each puts back what it
// changed.
import { test, before, after } from "node:test";
import assert from "node:assert/strict";
import { mkdtempSync, readFileSync, rmSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { chromium } from "playwright-core";

const BASE = process.env.KYGRAPH_VIEWER_URL;
if (!BASE) throw new Error("KYGRAPH_VIEWER_URL is not set (run scripts/browser-test.sh)");

const CHROMIUM_ARGS = [
  "--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
  "--disable-background-networking", "--disable-component-update", "--disable-sync",
];
const WAIT_MS = 15000;

let profileDir;
let context;

before(async () => {
  profileDir = mkdtempSync(join(tmpdir(), "kygraph-chromium-"));
  context = await chromium.launchPersistentContext(profileDir, {
    executablePath: "/usr/bin/chromium",
    headless: true,
    args: CHROMIUM_ARGS,
    viewport: { width: 1280, height: 860 },
    acceptDownloads: true,
  });
});

after(async () => {
  if (context) await context.close();
  if (profileDir) rmSync(profileDir, { recursive: true, force: true });
});

// A fresh page with its first chart drawn.
async function openViewer() {
  const page = await context.newPage();
  await page.goto(BASE);
  await page.waitForFunction(() => Number(document.body.dataset.redraws || 0) >= 1, null, { timeout: WAIT_MS });
  return page;
}

// Scene edits are counted by the page; this waits until the chart on screen shows the
// scene as it was after the next edit.
async function sceneSerial(page) {
  return page.evaluate(() => Number(document.body.dataset.scene || 0));
}

async function waitForEditDrawn(page, before) {
  await page.waitForFunction((n) => Number(document.body.dataset.scene || 0) > n &&
                                    document.body.dataset.drawnScene === document.body.dataset.scene,
                             before, { timeout: WAIT_MS });
}

async function drawnSize(page) {
  const [w, h] = (await page.evaluate(() => document.body.dataset.drawnSize)).split("x").map(Number);
  return { w, h };
}

// Keeps the drawn image's pixels in a rectangle (the whole image by default) in the page
// under key; the pixels stay in the page, only counts come back.
async function snapshot(page, key, rect) {
  await page.evaluate(async ([key, rect]) => {
    const img = document.getElementById("chart");
    // A redraw of the same scene may be swapping the image in: wait for the one shown.
    for (let i = 0; i < 100 && !(img.complete && img.naturalWidth > 0); i++) {
      await img.decode().catch(() => new Promise((r) => setTimeout(r, 50)));
    }
    const c = document.createElement("canvas");
    c.width = img.naturalWidth;
    c.height = img.naturalHeight;
    const g = c.getContext("2d");
    g.drawImage(img, 0, 0);
    const r = rect || { x: 0, y: 0, w: c.width, h: c.height };
    window.kySnapshots = window.kySnapshots || {};
    window.kySnapshots[key] = g.getImageData(r.x, r.y, r.w, r.h).data;
  }, [key, rect || null]);
}

// Pixels whose colour differs between two snapshots (of the same rectangle).
async function differing(page, a, b) {
  return page.evaluate(([a, b]) => {
    const p = window.kySnapshots[a], q = window.kySnapshots[b];
    if (p.length !== q.length) return Math.max(p.length, q.length) / 4;
    let n = 0;
    for (let i = 0; i < p.length; i += 4) if (p[i] !== q[i] || p[i + 1] !== q[i + 1] || p[i + 2] !== q[i + 2]) n++;
    return n;
  }, [a, b]);
}

// Pixels of a snapshot darker than light grey in some channel.
async function inked(page, key) {
  return page.evaluate((key) => {
    const p = window.kySnapshots[key];
    let n = 0;
    for (let i = 0; i < p.length; i += 4) if (p[i] < 200 || p[i + 1] < 200 || p[i + 2] < 200) n++;
    return n;
  }, key);
}

// Moves the mouse onto pixel (x, y) of the drawn image.
async function moveToPixel(page, x, y) {
  const box = await page.locator("#chart").boundingBox();
  const { w, h } = await drawnSize(page);
  await page.mouse.move(box.x + (x + 0.5) * box.width / w, box.y + (y + 0.5) * box.height / h);
}

async function readoutValue(page, key) {
  const text = await page.locator(`#readout tr[data-key="${key}"] td.v`).textContent({ timeout: WAIT_MS });
  return Number(text);
}

async function geometry(page) {
  const { w, h } = await drawnSize(page);
  const res = await page.request.get(`${BASE}api/geometry?w=${w}&h=${h}`);
  assert.equal(res.status(), 200);
  return res.json();
}

test("the page shows a chart drawn at the size of its pane", async () => {
  const page = await openViewer();
  const { w, h } = await drawnSize(page);
  const pane = await page.locator("#chart-pane").boundingBox();
  assert.equal(w, Math.floor(pane.width));
  assert.equal(h, Math.floor(pane.height));
  await snapshot(page, "chart");
  const ink = await inked(page, "chart");
  assert.ok(ink > (w * h) / 50, `only ${ink} dark pixels: the chart looks blank`);
  await page.close();
});

test("hovering the indoor design point reads 25 °C and 60 %", async () => {
  const page = await openViewer();
  const g = await geometry(page);
  assert.ok(g.indoor, "the indoor design point is placed");
  await moveToPixel(page, g.indoor.pixel.x, g.indoor.pixel.y);
  await page.locator("#readout tr[data-key=tdb]").waitFor({ timeout: WAIT_MS });
  const tdb = await readoutValue(page, "tdb");
  const rh = await readoutValue(page, "rh");
  assert.ok(Math.abs(tdb - 25) < 0.5, `dry bulb ${tdb}`);
  assert.ok(Math.abs(rh - 60) < 1.5, `relative humidity ${rh}`);

  // Outside the chart the readout gives the chart's own message instead.
  await moveToPixel(page, 2, 2);
  await page.locator("#readout.outside").waitFor({ timeout: WAIT_MS });
  assert.match(await page.locator("#readout").textContent(), /焓湿图/);
  await page.close();
});

test("a click places a point that is listed and drawn where the click was", async () => {
  const page = await openViewer();
  const g = await geometry(page);
  // Halfway between the design points: inside the chart, away from their markers.
  const x = Math.round((g.indoor.pixel.x + g.outdoor.pixel.x) / 2) + 40;
  const y = Math.round((g.indoor.pixel.y + g.outdoor.pixel.y) / 2) + 20;
  const around = { x: x - 8, y: y - 8, w: 17, h: 17 };
  await snapshot(page, "before", around);
  const listed = await page.locator("#point-list li").count();
  let serial = await sceneSerial(page);
  await moveToPixel(page, x, y);
  await page.mouse.down();
  await page.mouse.up();
  await waitForEditDrawn(page, serial);
  assert.equal(await page.locator("#point-list li").count(), listed + 1);
  await snapshot(page, "after", around);
  assert.ok(await differing(page, "before", "after") > 10, "the chart did not change at the click");

  // Deleting it puts the picture back.
  serial = await sceneSerial(page);
  await page.locator("#point-list li").last().locator("button.delete").click();
  await waitForEditDrawn(page, serial);
  assert.equal(await page.locator("#point-list li").count(), listed);
  await snapshot(page, "deleted", around);
  assert.equal(await differing(page, "before", "deleted"), 0);
  await page.close();
});

test("switching the isotherms off and on changes the image and back", async () => {
  const page = await openViewer();
  const box = page.locator('#settings input[name="display.isotherms"]');
  assert.equal(await box.isChecked(), true);
  await snapshot(page, "with");
  let serial = await sceneSerial(page);
  await box.uncheck();
  await waitForEditDrawn(page, serial);
  await snapshot(page, "without");
  assert.ok(await differing(page, "with", "without") > 500, "the isotherms did not disappear");
  serial = await sceneSerial(page);
  await box.check();
  await waitForEditDrawn(page, serial);
  await snapshot(page, "again");
  assert.equal(await differing(page, "with", "again"), 0);
  await page.close();
});

test("the language switch turns the chart and the panel Chinese and back", async () => {
  const page = await openViewer();
  const select = page.locator("#language");
  const heading = page.locator("#panel h2", { hasText: /^(State points|状态点)$/ });
  // A scene without a language draws the chart in Chinese: English is chosen first.
  let serial = await sceneSerial(page);
  await select.selectOption("en");
  await waitForEditDrawn(page, serial);
  assert.equal(await heading.textContent(), "State points");
  await snapshot(page, "en");
  serial = await sceneSerial(page);
  await select.selectOption("zh");
  await waitForEditDrawn(page, serial);
  assert.equal(await heading.textContent(), "状态点");
  await snapshot(page, "zh");
  assert.ok(await differing(page, "en", "zh") > 200, "the chart's texts did not change");
  assert.equal((await (await page.request.get(`${BASE}api/scene`)).json()).lang, "zh");
  serial = await sceneSerial(page);
  await select.selectOption("en");
  await waitForEditDrawn(page, serial);
  assert.equal(await heading.textContent(), "State points");
  // The scene as it was: no language of its own.
  const scene = await (await page.request.get(`${BASE}api/scene`)).json();
  delete scene.lang;
  assert.equal((await page.request.put(`${BASE}api/scene`, { data: scene })).status(), 200);
  await page.close();
});

test("resizing the window redraws the chart at the new size", async () => {
  const page = await openViewer();
  const first = await drawnSize(page);
  await page.setViewportSize({ width: 900, height: 600 });
  await page.waitForFunction((old) => document.body.dataset.drawnSize !== old, `${first.w}x${first.h}`,
                             { timeout: WAIT_MS });
  const pane = await page.locator("#chart-pane").boundingBox();
  const now = await drawnSize(page);
  assert.deepEqual(now, { w: Math.floor(pane.width), h: Math.floor(pane.height) });
  assert.equal(await page.evaluate(() => document.getElementById("chart").naturalWidth), now.w);
  await page.close();
});

test("the SVG export downloads an SVG document of the chart", async () => {
  const page = await openViewer();
  const [download] = await Promise.all([page.waitForEvent("download", { timeout: WAIT_MS }),
                                        page.locator("#export-svg").click()]);
  assert.match(download.suggestedFilename(), /\.svg$/);
  const text = readFileSync(await download.path(), "utf8");
  assert.match(text, /<svg[^>]*viewBox/);
  const { w, h } = await drawnSize(page);
  assert.match(text, new RegExp(`viewBox="0 0 ${w} ${h}"`));
  await page.close();
});

test("the PDF export can be a page of paper", async () => {
  const page = await openViewer();
  await page.locator("#export-paper").selectOption("A3");
  await page.locator("#export-landscape").check();
  const [download] = await Promise.all([page.waitForEvent("download", { timeout: WAIT_MS }),
                                        page.locator("#export-pdf").click()]);
  const pdf = readFileSync(await download.path(), "latin1");
  assert.match(pdf, /^%PDF-/);
  assert.match(pdf, /\/MediaBox \[ 0 0 1190\.55\d* 841\.88\d* \]/);
  await page.close();
});

test("a builder step, undo and redo, the loads tooltip and the report export", async () => {
  const page = await openViewer();
  const original = await (await page.request.get(`${BASE}api/scene`)).json();
  const start = { ...original, points: [{ name: "W", tdb: 35, twb: 28 }, { name: "N", tdb: 26, rh: 55 }] };
  delete start.processes;
  assert.equal((await page.request.put(`${BASE}api/scene`, { data: start })).status(), 200);
  await page.reload();
  await page.waitForFunction(() => Number(document.body.dataset.redraws || 0) >= 1, null, { timeout: WAIT_MS });

  // A mixing by fresh-air fraction, then heating to 40 °C, both with the builder.
  const addStep = async (kind, fields, result) => {
    const serial = await sceneSerial(page);
    await page.selectOption("#builder-kind", kind);
    for (const [key, value] of Object.entries(fields)) {
      const f = page.locator(`#builder-fields [name="${key}"]`);
      if ((await f.evaluate((e) => e.tagName)) === "SELECT") await f.selectOption(value);
      else await f.fill(String(value));
    }
    await page.fill("#builder-result", result);
    await page.click("#builder-add");
    await waitForEditDrawn(page, serial);
  };
  await page.fill("#builder-flow", "10000");
  await addStep("mixing", { a: "W", b: "N", fraction: 0.3 }, "C");
  await page.selectOption("#builder-process", "0");
  await addStep("sensible", { from: "C", tdb: 40 }, "H");
  await page.waitForFunction(() => document.body.dataset.geometry === document.body.dataset.redraws, null, { timeout: WAIT_MS });
  assert.match(await page.locator("#builder-states").textContent(), /H\s*40\.0/);

  // A bad input is refused with its place and leaves the scene as it was.
  let res = await page.request.put(`${BASE}api/scene`, { data: { ...start, processes: [{ steps: [
    { type: "mixing", a: "W", b: "N", fraction: 1.5 }] }] } });
  assert.equal(res.status(), 400);
  assert.match((await res.json()).error, /fraction: 1\.5 is out of range 0\.\.1/);

  // The heating segment's loads in a tooltip.
  const g = await geometry(page);
  const heat = g.steps.find((s) => s.kind === "sensible");
  assert.ok(heat.loads.total > 0);
  await moveToPixel(page, Math.round((heat.from.x + heat.to.x) / 2), Math.round((heat.from.y + heat.to.y) / 2));
  await page.locator("#loads-tip:not([hidden])").waitFor({ timeout: WAIT_MS });
  assert.match(await page.locator("#loads-tip").textContent(), new RegExp(`total ${heat.loads.total.toFixed(2)} kW`));

  // Editing the fraction moves the chain; Ctrl+Z takes the edit back, Ctrl+Y makes it again.
  let serial = await sceneSerial(page);
  await page.locator('#builder-steps input[name="fraction"]').fill("0.5");
  await page.locator('#builder-steps input[name="fraction"]').dispatchEvent("change");
  await waitForEditDrawn(page, serial);
  const fractionOf = async () => (await (await page.request.get(`${BASE}api/scene`)).json()).processes[0].steps[0].fraction;
  assert.equal(await fractionOf(), 0.5);
  serial = await sceneSerial(page);
  await page.locator("#chart").click({ position: { x: 1, y: 1 }, trial: true });
  await page.keyboard.press("Control+z");
  await waitForEditDrawn(page, serial);
  assert.equal(await fractionOf(), 0.3);
  serial = await sceneSerial(page);
  await page.keyboard.press("Control+y");
  await waitForEditDrawn(page, serial);
  assert.equal(await fractionOf(), 0.5);

  // The report: a PDF download.
  const [download] = await Promise.all([page.waitForEvent("download", { timeout: WAIT_MS }),
                                        page.locator("#export-report").click()]);
  assert.match(download.suggestedFilename(), /\.pdf$/);
  assert.equal(readFileSync(await download.path()).subarray(0, 5).toString(), "%PDF-");

  assert.equal((await page.request.put(`${BASE}api/scene`, { data: original })).status(), 200);
  await page.close();
});

test("at 1280 x 720 Export and Save are in sight without scrolling", async () => {
  const page = await openViewer();
  await page.setViewportSize({ width: 1280, height: 720 });
  for (const id of ["#save", "#export-png", "#export-report"]) {
    const box = await page.locator(id).boundingBox();
    assert.ok(box && box.y + box.height <= 720, `${id} at ${box && box.y}`);
  }
  await page.close();
});

test("an altitude in place of the pressure gives the standard atmosphere's", async () => {
  const page = await openViewer();
  const original = await (await page.request.get(`${BASE}api/scene`)).json();
  const serial = await sceneSerial(page);
  await page.fill("#altitude", "2000");
  await page.locator("#altitude").dispatchEvent("change");
  await waitForEditDrawn(page, serial);
  const settings = await (await page.request.get(`${BASE}api/settings`)).json();
  assert.ok(Math.abs(settings.pressure - 79495.1) < 0.5, `pressure ${settings.pressure}`);
  assert.equal((await page.request.put(`${BASE}api/scene`, { data: original })).status(), 200);
  await page.close();
});
