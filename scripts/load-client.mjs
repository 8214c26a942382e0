// A bounded load run against a viewer on this machine (scripts/load-test.sh starts one):
// hover requests and full redraws from a few concurrent clients, every one checked, then the
// latency of each kind. Only loopback addresses are accepted; the run stops after its count
// or its time limit, whichever comes first, and exits non-zero on any error.
const base = new URL(process.argv[2] || "");
if (!["127.0.0.1", "localhost", "[::1]"].includes(base.hostname)) {
  console.error("load-client: only a viewer on this machine may be loaded");
  process.exit(2);
}
const HOVERS = Number(process.env.KY_LOAD_HOVERS || 3000);
const REDRAWS = Number(process.env.KY_LOAD_REDRAWS || 300);
const CLIENTS = 4;
const TIME_LIMIT_MS = 120000;
const REQUEST_TIMEOUT_MS = 10000;

const started = Date.now();
const stats = { hover: [], redraw: [] };
let errors = 0;

async function timed(kind, path, check) {
  const t0 = performance.now();
  try {
    const res = await fetch(new URL(path, base), { signal: AbortSignal.timeout(REQUEST_TIMEOUT_MS) });
    const body = Buffer.from(await res.arrayBuffer());
    if (res.status !== 200 || !check(body)) throw new Error(`${path}: status ${res.status}`);
    stats[kind].push(performance.now() - t0);
  } catch (err) {
    errors++;
    if (errors <= 5) console.error(`load-client: ${err.message}`);
  }
}

// The work, shared out in order: mostly hovers, a full redraw every tenth request.
const jobs = [];
for (let i = 0; i < HOVERS; i++) {
  const x = 90 + (i * 37) % 820, y = 110 + (i * 53) % 620;
  jobs.push(["hover", `/api/state?x=${x}&y=${y}&w=1000&h=800`, (b) => JSON.parse(b).inside !== undefined]);
  if (i % Math.max(1, Math.floor(HOVERS / REDRAWS)) === 0 && jobs.filter((j) => j[0] === "redraw").length < REDRAWS)
    jobs.push(["redraw", `/api/chart?w=1000&h=800`, (b) => b.subarray(1, 4).toString() === "PNG"]);
}

let next = 0;
async function client() {
  while (next < jobs.length && Date.now() - started < TIME_LIMIT_MS) {
    const job = jobs[next++];
    await timed(...job);
  }
}
await Promise.all(Array.from({ length: CLIENTS }, client));

const pct = (a, p) => a[Math.min(a.length - 1, Math.floor(p * a.length))];
for (const [kind, list] of Object.entries(stats)) {
  const a = list.sort((x, y) => x - y);
  if (!a.length) continue;
  const mean = a.reduce((s, v) => s + v, 0) / a.length;
  console.log(`${kind.padEnd(7)} n=${a.length}  mean ${mean.toFixed(2)} ms  p50 ${pct(a, 0.5).toFixed(2)}  ` +
              `p95 ${pct(a, 0.95).toFixed(2)}  p99 ${pct(a, 0.99).toFixed(2)}  max ${a[a.length - 1].toFixed(2)} ms`);
}
const done = stats.hover.length + stats.redraw.length;
console.log(`${done} requests in ${((Date.now() - started) / 1000).toFixed(1)} s, ${CLIENTS} clients, ${errors} errors`);
if (done < jobs.length) console.error(`load-client: stopped by the time limit after ${done} of ${jobs.length}`);
process.exit(errors || done < jobs.length ? 1 : 0);
