// The page in headless Chromium: each view used, its figures beside those of the programs, its pixels looked at.
import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { mkdtempSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import http from "node:http";
import { createRequire } from "node:module";
import { tmpdir } from "node:os";
import { extname, join } from "node:path";
import { after, before, beforeEach, test } from "node:test";
import { gzipSync } from "node:zlib";

const { PAGE, MODULES, PROGRAMS } = process.env;
const { chromium } = createRequire(join(MODULES, "x.js"))("playwright-core");
const scratch = mkdtempSync(join(tmpdir(), "dsp-page-"));
const types = { ".html": "text/html", ".js": "text/javascript", ".css": "text/css", ".wasm": "application/wasm" };
const served = http.createServer(({ url }, answer) => {
  const path = new URL(url, "http://x").pathname.replace(/\/$/, "/index.html");
  answer.setHeader("Content-Type", types[extname(path)] ?? "text/plain");
  answer.end(readFileSync(join(PAGE, path)));
});
let browser, page, address;
const complaints = [];

before(async () => {
  await new Promise((done) => served.listen(0, "127.0.0.1", done));
  address = `http://127.0.0.1:${served.address().port}/`;
  const flags = "--no-sandbox --disable-gpu --disable-quic --no-first-run --disable-background-networking " +
    "--disable-component-update --disable-sync --use-fake-ui-for-media-stream --use-fake-device-for-media-stream";
  browser = await chromium.launchPersistentContext(join(scratch, "profile"), {
    executablePath: "/usr/bin/chromium", args: flags.split(" "), acceptDownloads: true,
    viewport: { width: 1100, height: 900 },
  });
  const is_ours = (url) => url.startsWith(address) || /^(data|blob):/.test(url);
  browser.on("request", (r) => is_ours(r.url()) || complaints.push(r.url()));
});
after(async () => {
  await browser.close();
  served.close();
  rmSync(scratch, { recursive: true });
});

async function open(link = "") {
  page = await browser.newPage();
  page.on("console", (m) => m.type() === "error" && complaints.push(m.text()));
  page.on("pageerror", (e) => complaints.push(e.message));
  await page.goto(address + link);
  await page.waitForSelector("body[data-ready]", { timeout: 30000 });
}
beforeEach(() => (complaints.length = 0));
const quiet = () => assert.deepEqual(complaints, []);
const text = (id) => page.locator(id).innerText();
const rows = (id) =>
  page.locator(`${id} tr`).evaluateAll((all) => all.map((tr) => [...tr.cells].map((c) => c.textContent)));
const shows = (id, pattern) =>
  page.waitForFunction(([id, p]) => new RegExp(p).test(document.getElementById(id).innerText), [id, pattern], {
    timeout: 60000,
  });
const status = (pattern) => shows("status", pattern);
const set = (view, values) =>
  page.evaluate(([v, all]) => {
    const { form } = document.querySelector(`#${v} select`);
    for (const [name, value] of Object.entries(all))
      form.elements[name][typeof value === "boolean" ? "checked" : "value"] = value;
    form.dispatchEvent(new Event("change"));
  }, [view, values]);
const load = async (path) => {
  await page.locator("#recording").setInputFiles(path);
};

/** How many pixels of a canvas have about this colour. */
const pixels = (selector, red, green, blue) =>
  page.locator(selector).first().evaluate((canvas, [r, g, b]) => {
    const { data } = canvas.getContext("2d").getImageData(0, 0, canvas.width, canvas.height);
    let count = 0;
    for (let i = 0; i < data.length; i += 4)
      count += Math.abs(data[i] - r) + Math.abs(data[i + 1] - g) + Math.abs(data[i + 2] - b) < 60 && data[i + 3] > 128;
    return count;
  }, [red, green, blue]);

function wav(samples, { rate = 48000, channels = 1, bits = 24 } = {}) {
  const bytes = bits / 8;
  const b = Buffer.alloc(44 + samples.length * bytes);
  b.write("RIFF"), b.writeUInt32LE(b.length - 8, 4), b.write("WAVEfmt ", 8), b.writeUInt32LE(16, 16);
  b.writeUInt16LE(1, 20), b.writeUInt16LE(channels, 22), b.writeUInt32LE(rate, 24);
  b.writeUInt32LE(rate * channels * bytes, 28), b.writeUInt16LE(channels * bytes, 32), b.writeUInt16LE(bits, 34);
  b.write("data", 36), b.writeUInt32LE(samples.length * bytes, 40);
  const full = 2 ** (bits - 1) - 1;
  samples.forEach((x, i) => b.writeIntLE(Math.round(x * full), 44 + i * bytes, bytes));
  return b;
}

test("the first load takes less than 400 kB compressed", async () => {
  const bodies = [];
  browser.on("response", (response) => bodies.push(response.body()));
  await open();
  const size = (await Promise.all(bodies)).reduce((sum, body) => sum + gzipSync(body).length, 0);
  assert.ok(size > 150000 && size < 400000, `${size} bytes`);
  browser.removeAllListeners("response");
  quiet();
});

test("the demonstration's recording reads as dsp-spectrum reads it", async () => {
  await open("#spectrum?block=8192");
  assert.ok((await pixels("#spectrum-plot canvas", 31, 111, 178)) > 300);
  const recording = "/usr/share/sounds/alsa/Front_Center.wav";
  await load(recording);
  await status("Front_Center.wav: ");
  const words = ["--block", "8192", "-o", join(scratch, "s.csv"), recording];
  const printed = execFileSync(join(PROGRAMS, "dsp-spectrum"), words).toString();
  const peaks = [...printed.matchAll(/^ +([\d.]+) +(-?[\d.]+)$/gm)].map((m) => [m[1], m[2]]);
  assert.ok(peaks.length > 5);
  assert.deepEqual((await rows("#peaks")).slice(1), peaks);
  const how = (line) => line.match(/\d+ blocks.*, (bins .*)/)[1];
  assert.equal(how(await text("#method")), how(printed));
  assert.ok((await pixels("#waterfall canvas", 255, 0, 0)) + (await pixels("#waterfall canvas", 255, 120, 0)) > 50);
  quiet();
});

test("tones read as dsp-tone reads them", async () => {
  for (let k = 0; k < 20; ++k) {
    const [f, n] = [40 * 1.37 ** k * (1 + k / 1000), 20000 + 1111 * k];
    const phase = (i) => (2 * Math.PI * f * i) / 48000;
    const tone = (i) => 0.7 * Math.sin(phase(i)) + 0.7e-3 * Math.sin(2 * phase(i) + k);
    const path = join(scratch, `tone${k}.wav`);
    writeFileSync(path, wav(Float64Array.from({ length: n }, (_, i) => tone(i) + 1e-4 * Math.sin(i * i))));
    await load(path);
    await status(`tone${k}.wav: `);
    const printed = execFileSync(join(PROGRAMS, "dsp-tone"), [path]).toString().trim().split("\n");
    await shows("tone", printed[0].match(/[\d.]+/)[0]);
    const figures = printed.map((line) => line.match(/^(.*?) {2,}(\S+) ?(.*)$/).slice(1));
    assert.deepEqual(await rows("#tone"), figures, path);
  }
  quiet();
});

/** What a figure saves: a PNG, and a CSV that reads like `pattern`. */
async function saved(id, pattern) {
  for (const [name, start] of [["CSV", pattern], ["PNG", /^\x89PNG/]]) {
    const button = page.locator(`#${id}`).getByRole("button", { name });
    const [file] = await Promise.all([page.waitForEvent("download"), button.click()]);
    assert.match(readFileSync(await file.path(), "latin1"), start);
  }
}

test("cursor, zoom, markers, scales, averages, CSV, PNG and link", async () => {
  const plot = page.locator("#spectrum-plot");
  await plot.focus();
  for (const key of ["ArrowRight", "PageDown", "m", "PageDown", "m", "+"]) await page.keyboard.press(key);
  assert.match(await plot.locator("output").innerText(), /Hz: -?[\d.]+ dB/);
  assert.equal((await rows("#markers")).length, 3);
  assert.ok((await pixels("#spectrum-plot canvas", 179, 32, 44)) > 100);
  await page.keyboard.press("0");
  await set("spectrum", { scale: "density", linear: true, average: "max", log: false });
  await shows("method", "maximum");
  assert.match(page.url(), /#spectrum\?.*average=max.*scale=density.*linear=true.*log=false/);
  await saved("spectrum-plot", /^frequency \/ Hz,level\n0,/);
  await saved("waterfall", /^time \/ s,0 Hz,/);
  await page.reload();
  await page.waitForSelector("body[data-ready]");
  assert.equal(await page.locator("#spectrum [name=average]").inputValue(), "max");
  await page.close();
  await open("#spectrum?block=5&window=nonsense&__proto__=1&scale=power");
  assert.match(await text("#method"), /blocks of 4096.*window gausstop/);
  assert.equal(await page.locator("#spectrum [name=scale]").inputValue(), "power");
  quiet();
});

test("windows, filters and calibration", async () => {
  await page.getByRole("link", { name: "Windows" }).click();
  await page.waitForFunction(() => document.querySelectorAll("#window-figures tr").length > 4);
  const figures = await rows("#window-figures");
  assert.deepEqual(figures[1].slice(1, 3), ["1.5000", "3.8194"]);
  assert.deepEqual(figures[3][1], "-31.5");
  for (const ink of [[31, 111, 178], [184, 77, 18]]) assert.ok((await pixels("#window-plot canvas", ...ink)) > 300);
  await saved("window-plot", /^frequency \/ bins,hann,flattop\n0,0,/);
  await page.getByRole("link", { name: "Windows" }).focus();
  for (const key of ["Tab", "Enter"]) await page.keyboard.press(key); // to the next view
  await status("lowpass of 101 taps");
  assert.equal((await page.locator("#coefficients").inputValue()).split("\n").length, 101);
  assert.ok((await pixels("#response-plot canvas", 31, 111, 178)) > 300);
  await saved("step-plot", /^sample,step\n0,/);
  await set("filters", { ratio: 2 });
  await page.getByRole("button", { name: "Hear" }).click();
  await status("Playing 2.7 s at 24 kHz");
  await page.getByRole("link", { name: "Calibration" }).click();
  await status("simulated antenna");
  const figures_now = async () => Object.fromEntries(await rows("#calibration-figures"));
  assert.ok(Math.abs((await figures_now())["return loss"] - 20 * Math.log10(93 / 7)) < 0.3);
  assert.ok((await pixels("#smith canvas", 31, 111, 178)) > 300);
  assert.ok((await pixels("#terms-plot canvas", 29, 122, 60)) > 300);
  await saved("smith", /^frequency \/ Hz,corrected re/);
  await saved("terms-plot", /^frequency \/ MHz,directivity,source match,tracking\n100,-20\.37/);
  const s1p = (s) => Buffer.from(`# MHz S RI R 50\n1 ${s}\n2 ${s}\n3 ${s}`);
  const sweep = (name, s) => ({ name: `${name}.s1p`, mimeType: "text/plain", buffer: s1p(s) });
  await page.locator("#sweeps").setInputFiles([sweep("my_short", "-1 0"), sweep("open", "1 0"), sweep("load", "0 0")]);
  await status("Still missing: device");
  await page.locator("#device-file").setInputFiles(sweep("dut", "0.1 0"));
  await status("dut.s1p, corrected .*load ideal");
  assert.equal((await figures_now())["return loss"], "20.00");
  await page.locator("#load_actual-file").setInputFiles(sweep("termination", "0.05 0"));
  await status("load as it is");
  assert.notEqual((await figures_now())["return loss"], "20.00");
  await set("calibration", { ideal: true, format: "swr" });
  await status("load ideal");
  assert.equal((await figures_now())["return loss"], "20.00");
  assert.match(page.url(), /#calibration\?format=swr&ideal=true/);
  await set("calibration", { ideal: false });
  await page.locator("#open_actual-file").setInputFiles(sweep("open_actual", "-1 0"));
  await status("open as it is: open_actual.s1p are the same standard at 1 MHz");
  const wrong = Buffer.from("# MHz S XY\n1 2 3");
  await page.locator("#open-file").setInputFiles({ name: "x.s1p", mimeType: "", buffer: wrong });
  await status("x.s1p, line 1: 'XY' in the header");
  quiet();
});

test("broken, empty and hostile files are answered by a sentence, and lose nothing", async () => {
  await page.getByRole("link", { name: "Spectrum" }).click();
  const good = wav(new Float64Array(9000).fill(0.1));
  const bad = {
    "empty.wav": [Buffer.alloc(0), "is empty"],
    "cut.wav": [good.subarray(0, 3000), "is truncated"],
    "head.wav": [good.subarray(0, 30), "is no complete WAV file"],
    "bits.wav": [Buffer.from(good).fill(77, 34, 35), "are not read here"],
    "none.wav": [Buffer.from(good).fill(0, 22, 24), "states 0 channels"],
    "zero.wav": [wav([]), "holds no samples"],
    "gigabytes.wav": [Buffer.from(good).fill(0x7e, 43, 44), "is truncated"],
    "chunks.wav": [Buffer.concat([good.subarray(0, 12), Buffer.alloc(8e6)]), "is no complete WAV file"],
    "short.wav": [wav([0.1, 0.2]), "holds 2 samples, fewer than a block of 4096; see “Block”"],
    "noise.bin": [Buffer.from(Array.from({ length: 5000 }, (_, i) => (i * i * 7) % 256)), "neither a sound"],
    "rate.csv": [Buffer.from("1\n2\n"), "sample rate is needed, “Sample rate”"],
    "times.csv": [Buffer.from("t,V\n1,2\n2,2\n4,1\n7,2\n"), "times are not evenly spaced"],
    "words.csv": [Buffer.from("t,V\n1,2\n2,2\n3,2\n4,2\n5,x\n"), "line 6: 'x' is not a number"],
    "<img src=x onerror=alert(1)>.csv": [Buffer.from("a"), "no numbers"],
  };
  for (const [name, [buffer, sentence]] of Object.entries(bad)) {
    await load({ name, mimeType: "", buffer });
    await status(sentence);
  }
  const row = (_, i) => `${i / 1000};0,5;${Math.sin(i) * 700}`.replaceAll(".", ",");
  const table = `t (s);CH1 (V);CH2 (mV)\n${Array.from({ length: 9000 }, row).join("\n")}`;
  await load({ name: "scope.csv", mimeType: "text/csv", buffer: Buffer.from(table) });
  await status("scope.csv: 9.000 s at 1 kHz");
  await set("spectrum", { column: "CH2 (mV)", "full-scale": 0.7 });
  await shows("peaks", "159.15\\d*\\s-?0.00");
  quiet();
});

test("a long recording shows in 3 seconds, and the page answers throughout", async () => {
  const path = join(scratch, "long.wav");
  const ten_seconds = Float64Array.from({ length: 2 * 480000 }, (_, i) => 0.5 * Math.sin(i * 0.01));
  const seconds = wav(ten_seconds, { channels: 2, bits: 16 });
  const head = Buffer.from(seconds.subarray(0, 44));
  head.writeUInt32LE(60 * (seconds.length - 44), 40);
  writeFileSync(path, Buffer.concat([head, ...new Array(60).fill(seconds.subarray(44))]));
  await set("spectrum", { average: "power" });
  await page.evaluate(() => {
    let last = performance.now();
    window.worst = 0;
    setInterval(() => {
      window.worst = Math.max(window.worst, performance.now() - last - 5);
      last = performance.now();
    }, 5);
  });
  const began = Date.now();
  await load(path);
  await status("long.wav: 600.0 s");
  const pause = Math.round(await page.evaluate(() => window.worst));
  console.log(`10 minutes of stereo: ${Date.now() - began} ms; longest pause of the page ${pause} ms`);
  quiet();
});

test("the microphone, live and refused", async () => {
  const microphone = page.getByRole("button", { name: "Microphone" });
  await microphone.click();
  await status("Measuring");
  await shows("method", "blocks of 4096");
  await microphone.click();
  await page.evaluate(() => {
    navigator.mediaDevices.getUserMedia = async () => { throw new DOMException("", "NotAllowedError"); };
  });
  await microphone.click();
  await status("No microphone: this page is not allowed to hear it");
  quiet();
});

const named = "button link combobox spinbutton checkbox textbox table group image form region".split(" ");

test("each view is told to a screen reader, can be read in the dark, and fits a phone", async () => {
  await page.emulateMedia({ colorScheme: "dark" });
  await page.setViewportSize({ width: 360, height: 740 });
  const reader = await page.context().newCDPSession(page);
  for (const [view, figures] of Object.entries({ windows: 5, filters: 0, calibration: 13, spectrum: 1 })) {
    await page.getByRole("link", { name: view }).press("Enter");
    await page.waitForFunction((v) => document.querySelector(`#${v} canvas`)?.clientWidth <= 360, view);
    const { nodes } = await reader.send("Accessibility.getFullAXTree");
    const seen = nodes.filter((node) => !node.ignored);
    const role = (name) => seen.filter((node) => node.role.value === name);
    assert.deepEqual(named.flatMap(role).filter((node) => !node.name.value).map((node) => node.role.value), [], view);
    const live = role("status").filter((node) => node.properties.some((p) => p.name === "live"));
    assert.ok(live.length > 1 && live.length === role("status").length, view);
    assert.ok(role("rowheader").length >= figures && role("image").length >= 2, view);
    assert.ok(await page.evaluate(() => document.documentElement.scrollWidth <= 360), view);
  }
  assert.ok((await pixels("#spectrum-plot canvas", 108, 180, 240)) > 100);
  for (const scheme of ["light", "dark"]) {
    await page.emulateMedia({ colorScheme: scheme });
    const ratios = await page.evaluate(() => {
      const of_page = (name) => getComputedStyle(document.documentElement).getPropertyValue(`--${name}`).trim();
      const linear = (v) => (v <= 0.04045 ? v / 12.92 : ((v + 0.055) / 1.055) ** 2.4);
      const light = (c) => [1, 3, 5].reduce((sum, at, i) =>
        sum + [0.2126, 0.7152, 0.0722][i] * linear(parseInt(of_page(c).slice(at, at + 2), 16) / 255), 0.05);
      const ratio = (a, b) => Math.max(light(a) / light(b), light(b) / light(a));
      return ["ink", "first", "second", "third", "mark"].flatMap((c) => [ratio(c, "paper"), ratio(c, "panel")]);
    });
    assert.ok(Math.min(...ratios) >= 4.5, `${scheme}: ${ratios}`);
  }
  quiet();
});
