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

async function redrawCount(page) {
  return page.evaluate(() => Number(document.body.dataset.redraws || 0));
}

async function waitForRedrawAfter(page, count) {
  await page.waitForFunction((n) => Number(document.body.dataset.redraws || 0) > n, count, { timeout: WAIT_MS });
}

// The drawn image's pixels in a rectangle (image coordinates), as RGBA bytes.
async function imagePixels(page, x, y, w, h) {
  return page.evaluate(([x, y, w, h]) => {
    const img = document.getElementById("chart");
    const c = document.createElement("canvas");
    c.width = img.naturalWidth;
    c.height = img.naturalHeight;
    const g = c.getContext("2d");
    g.drawImage(img, 0, 0);
    return Array.from(g.getImageData(x, y, w, h).data);
  }, [x, y, w, h]);
}

async function drawnSize(page) {
  const [w, h] = (await page.evaluate(() => document.body.dataset.drawnSize)).split("x").map(Number);
  return { w, h };
}

async function wholeImage(page) {
  const { w, h } = await drawnSize(page);
  return imagePixels(page, 0, 0, w, h);
}

function countDifferent(a, b) {
  let n = 0;
  for (let i = 0; i < Math.min(a.length, b.length); i += 4)
    if (a[i] !== b[i] || a[i + 1] !== b[i + 1] || a[i + 2] !== b[i + 2]) n++;
  return n + Math.abs(a.length - b.length) / 4;
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
  const px = await wholeImage(page);
  let ink = 0;
  for (let i = 0; i < px.length; i += 4) if (px[i] < 200 || px[i + 1] < 200 || px[i + 2] < 200) ink++;
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
  const before = await imagePixels(page, x - 8, y - 8, 17, 17);
  const listed = await page.locator("#point-list li").count();
  const count = await redrawCount(page);
  await moveToPixel(page, x, y);
  await page.mouse.down();
  await page.mouse.up();
  await waitForRedrawAfter(page, count);
  assert.equal(await page.locator("#point-list li").count(), listed + 1);
  const after = await imagePixels(page, x - 8, y - 8, 17, 17);
  assert.ok(countDifferent(before, after) > 10, "the chart did not change at the click");

  // Deleting it puts the picture back.
  const again = await redrawCount(page);
  await page.locator("#point-list li").last().locator("button.delete").click();
  await waitForRedrawAfter(page, again);
  assert.equal(await page.locator("#point-list li").count(), listed);
  assert.equal(countDifferent(before, await imagePixels(page, x - 8, y - 8, 17, 17)), 0);
  await page.close();
});

test("switching the isotherms off and on changes the image and back", async () => {
  const page = await openViewer();
  const box = page.locator('#settings input[name="display.isotherms"]');
  assert.equal(await box.isChecked(), true);
  const before = await wholeImage(page);
  let count = await redrawCount(page);
  await box.uncheck();
  await waitForRedrawAfter(page, count);
  const without = await wholeImage(page);
  assert.ok(countDifferent(before, without) > 500, "the isotherms did not disappear");
  count = await redrawCount(page);
  await box.check();
  await waitForRedrawAfter(page, count);
  assert.equal(countDifferent(before, await wholeImage(page)), 0);
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
