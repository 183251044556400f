// The spectrum of a recording or of the microphone: opening, measuring, showing.

import { ask } from "./client.js";
import { listen } from "./microphone.js";
import { attempt, breath, element, fill, settings_of, tell } from "./page.js";
import { Plot } from "./plot.js";
import { Waterfall } from "./waterfall.js";

const waterfall = new Waterfall("waterfall", "waterfall, level over frequency with time running down");
const plot = new Plot({ id: "spectrum-plot", x: "frequency / Hz", y: "level / dB", traces: ["level"], on_mark: show_marks, on_draw: draw_waterfall });
export let opened = ""; // the name of what is measured
let about; // its rate, channels and frames
let microphone;
let measured;

function show_marks(marks) {
  const [first] = marks;
  const rows = marks.map(({ x, y }, i) => [`${i + 1}`, x.toFixed(3), y.toFixed(2), (x - first.x).toFixed(3), (y - first.y).toFixed(2)]);
  fill(element("markers"), rows, ["marker", "Hz", plot.y.split("/ ")[1], "from the first", ""]);
}

/** In a task of its own, so that the page answers in between. */
function draw_waterfall() {
  setTimeout(() => waterfall.draw(plot));
}

// As C's %.4g shows numbers.
const general = (x) => String(Number(x.toPrecision(4)));
const averages = { mean: "mean power", max_hold: "maximum", min_hold: "minimum", limit: "exponential mean", replace: "last block" };

function method(settings, { count, dx, enbw, hop }) {
  const blocks = count === 1 ? "1 block of " : `${count} blocks of `;
  const overlap = ((100 * (settings.block - hop)) / settings.block).toFixed(0);
  return `${blocks}${settings.block}, overlap ${overlap} %, ${averages[settings.average]}, window ${settings.window}, ` +
    `bins ${general(dx)} Hz, ENBW ${general(enbw)} Hz`;
}

/** Levels in dB as the settings want them, and what the axis says. */
function scaled(levels, { scale, linear }, enbw) {
  const shift = scale === "density" ? -10 * Math.log10(enbw) : 0;
  if (!linear) return [levels.map((l) => l + shift), scale === "density" ? "level in 1 Hz / dB" : "level / dB"];
  const divisor = scale === "amplitude" ? 20 : 10;
  return [levels.map((l) => 10 ** ((l + shift) / divisor)), `${scale} / ${{ amplitude: "1", power: "1²", density: "1²/Hz" }[scale]}`];
}

async function show(settings, result, fresh) {
  await breath();
  measured = { settings, result };
  const { levels, peaks, dx, enbw } = result;
  const frequency = Float64Array.from(levels, (_, i) => i * dx);
  const [values, label] = scaled(levels, settings, enbw);
  plot.y = label;
  waterfall.add(result.rows, fresh, result.row_spacing);
  const least = Math.max(values.reduce((a, b) => Math.min(a, b)), values.reduce((a, b) => Math.max(a, b)) - 160);
  const top = 10 * Math.ceil((values.reduce((a, b) => Math.max(a, b)) + 3) / 10);
  plot.show([frequency, values], { log: settings.log, y_range: settings.linear ? undefined : [10 * Math.floor(least / 10), top] });
  await breath();
  const decimals = Math.min(Math.max(3 - Math.floor(Math.log10(dx)), 0), 9);
  fill(element("peaks"), peaks.map((p) => [(p.bin * dx).toFixed(decimals), p.level.toFixed(2)]), ["frequency / Hz", "level / dB"]);
  element("method").textContent = method(settings, result);
}

/** Measures anew with the form's settings. */
export async function update() {
  const settings = settings_of("spectrum");
  if (!settings) return;
  if (microphone) return void (await ask("live_start", { settings, rate: microphone.rate }));
  await attempt(opened, async () => {
    const result = await ask("spectrum", settings);
    if (!result) return; // a later one is on its way
    await show(settings, result, true);
    tell(`${opened}: ${(about.frames / about.rate).toPrecision(4)} s at ${general(about.rate)} Hz, channels: ${about.channels}`);
    const { rows, refusal } = await ask("tone", settings);
    fill(element("tone"), rows ?? [[refusal]]);
  });
}

async function adopt(name, opening) {
  stop();
  await attempt(name, async () => {
    about = await opening;
    opened = name;
    await update();
  });
}

export const open_example = () => adopt("example: 997 Hz with harmonics and noise", ask("open_example"));

/** Opens the first of some files: a WAV file or a table goes to the worker as it is; other sounds are
 * decoded by the browser. */
export async function open([file]) {
  tell(`Opening ${file.name}`);
  const { rate } = settings_of("spectrum") ?? { rate: 48000 };
  const is_text = /^text\/|csv$/.test(file.type) || /\.(csv|tsv|txt|dat|wav)$/i.test(file.name);
  if (is_text || file.type === "audio/wav") return adopt(file.name, ask("open", { file, rate }));
  return adopt(file.name, decode(file).then((input) => ask("open_decoded", input)).catch(() => ask("open", { file, rate })));
}

async function decode(file) {
  const context = new OfflineAudioContext(1, 1, 48000);
  const sound = await context.decodeAudioData(await file.arrayBuffer());
  const channels = Array.from({ length: sound.numberOfChannels }, (_, c) => sound.getChannelData(c));
  return { channels, rate: sound.sampleRate };
}

function stop() {
  microphone?.stop();
  microphone = undefined;
  element("live").setAttribute("aria-pressed", "false");
}

async function live() {
  if (microphone) return stop();
  await attempt("Microphone", async () => {
    let busy = false;
    let fresh = true;
    microphone = await listen(async (samples) => {
      if (busy || !microphone) return;
      busy = true;
      await attempt("Microphone", async () => {
        const result = await ask("live_push", { samples });
        if (result) await show(settings_of("spectrum") ?? measured.settings, result, fresh);
        fresh &&= !result;
      });
      busy = false;
    });
    element("live").setAttribute("aria-pressed", "true");
    tell("Measuring the microphone");
    await update();
  });
}

export function start() {
  element("recording").onchange = ({ target }) => target.files[0] && open(target.files);
  element("example").onclick = open_example;
  element("live").onclick = live;
}
