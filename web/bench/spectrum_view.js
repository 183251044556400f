// The spectrum of a recording or of the microphone: opening, measuring, showing.

import { breath } from "./breath.js";
import { ask } from "./client.js";
import { listen } from "./microphone.js";
import { attempt, element, fill, offer, quantity, settings_of, tell } from "./page.js";
import { Plot } from "./plot.js";
import { decode } from "./sound.js";
import { Waterfall } from "./waterfall.js";

const waterfall = new Waterfall("waterfall", "waterfall, level over frequency with time running down");
const plot = new Plot({
  id: "spectrum-plot", x: "frequency / Hz", y: "level / dB", traces: ["level"], on_mark: show_marks,
  on_draw: () => setTimeout(() => waterfall.draw(plot)), // a task of its own, so that the page answers in between
}); // prettier-ignore
let opened = ""; // the name of what is measured
let microphone;
let is_fresh; // what the microphone brings begins anew

function show_marks(marks) {
  const [first] = marks;
  const unit = plot.y.split("/ ")[1];
  const place = (x, y) => [x.toFixed(3), y.toFixed(2)];
  const row = ({ x, y }, i) => [`${i + 1}`, ...place(x, y), ...place(x - first.x, y - first.y)];
  fill("markers", marks.map(row), ["marker", "Hz", unit, "Hz from the first", unit]);
}

/** Levels in dB as the settings want them, and what the axis says. */
function scaled(levels, { scale, linear }, enbw) {
  const shift = scale === "density" ? -10 * Math.log10(enbw) : 0;
  if (!linear) return [levels.map((l) => l + shift), scale === "density" ? "level in 1 Hz / dB" : "level / dB"];
  const divisor = scale === "amplitude" ? 20 : 10;
  const unit = { amplitude: "1", power: "1²", density: "1²/Hz" }[scale];
  return [levels.map((l) => 10 ** ((l + shift) / divisor)), `${scale} / ${unit}`];
}

/** From the least level, or 160 dB below the greatest, to some space above it. */
function range_of(levels) {
  const greatest = levels.reduce((a, b) => Math.max(a, b));
  const least = Math.max(levels.reduce((a, b) => Math.min(a, b)), greatest - 160); // prettier-ignore
  return [10 * Math.floor(least / 10), 10 * Math.ceil((greatest + 3) / 10)];
}

async function show(settings, result, fresh) {
  await breath();
  const { columns: [levels, ...rows], dx, enbw, peaks, row_seconds, row_dx } = result; // prettier-ignore
  const [values, label] = scaled(levels, settings, enbw);
  const frequency = Float64Array.from(levels, (_, i) => i * dx);
  plot.y = label;
  waterfall.add(rows, fresh, { seconds: row_seconds, df: row_dx });
  plot.show([frequency, values], { log: settings.log, y_range: settings.linear ? undefined : range_of(values) });
  await breath();
  fill("peaks", peaks.map((line) => line.split("\t")), ["frequency / Hz", "level / dB"]); // prettier-ignore
  element("method").textContent = result.method;
}

async function show_tone(settings) {
  try {
    fill("tone", (await ask("tone", settings)).rows.map((line) => line.split("\t"))); // prettier-ignore
  } catch ({ message }) {
    fill("tone", [[message]]);
  }
}

/** Measures anew with the form's settings. */
export async function update() {
  const settings = settings_of("spectrum");
  if (!settings) return;
  is_fresh = true;
  if (microphone) return attempt(() => ask("start_live", { settings, rate: microphone.rate }));
  await attempt(async () => {
    const result = await ask("spectrum", settings);
    if (!result) return; // a later one is on its way
    fill("tone", [["is being measured"]]);
    await show(settings, result, true);
    tell(`${opened}: ${quantity(result.samples / result.rate, "s", 4)} at ${quantity(result.rate, "Hz")}`);
    await show_tone(settings);
  });
}

/** The choices that a file has, and none that it has not. */
function offer_choices({ channels = 0, names }) {
  const { channel, column, rate } = element("spectrum").querySelector("form").elements;
  const numbers = Array.from({ length: channels }, (_, i) => `${i + 1}`);
  if (names) offer(column, names.map((name) => [name, name])); // prettier-ignore
  else offer(channel, [["mean of all", "mix"], ...numbers.map((number) => [number, number])]);
  channel.parentNode.hidden = channels < 2;
  column.parentNode.hidden = rate.parentNode.hidden = !names;
}

async function adopt(name, opening) {
  stop();
  await attempt(async () => {
    offer_choices(await opening);
    opened = name;
    await update();
  });
}

const example = "example: 997 Hz with harmonics and noise";
export const open_example = () => adopt(example, ask("open", { name: example }));

/** A WAV file or a text goes to the worker as it is; other sounds are decoded by the browser. */
async function open_file(file) {
  const head = new Uint8Array(await file.slice(0, 65536).arrayBuffer());
  const { name } = file;
  if (String.fromCharCode(...head.subarray(0, 4)) === "RIFF") return ask("open", { name, file });
  if (file.size === 0 || (!head.includes(0) && !/^(audio|video)/.test(file.type)))
    return ask("open", { name, file, is_table: true });
  const sound = await decode(file).catch(() => undefined);
  if (!sound) throw new Error(`${name} is neither a sound that this browser decodes nor a text`);
  return ask("open", { name, file: sound });
}

export function open([file]) {
  tell(`Opening ${file.name}`);
  return adopt(file.name, open_file(file));
}

function stop() {
  microphone?.stop();
  microphone = undefined;
  element("live").setAttribute("aria-pressed", "false");
}

/** Shows what comes from the microphone; what comes while that is being done waits. */
function show_live() {
  const waiting = [];
  let is_busy = false;
  return async (samples) => {
    waiting.push(samples);
    if (is_busy || !microphone) return;
    is_busy = true;
    await attempt(async () => {
      const result = await ask("add_live", { pieces: waiting.splice(0) });
      const settings = settings_of("spectrum");
      if (result && settings) await show(settings, result, is_fresh);
      is_fresh &&= !result;
    });
    is_busy = false;
  };
}

function lose() {
  stop();
  tell("The microphone has been unplugged", true);
}

async function live() {
  if (microphone) return stop();
  await attempt(async () => {
    microphone = await listen(show_live(), lose);
    element("live").setAttribute("aria-pressed", "true");
    tell("Measuring the microphone");
    await update();
  });
}

export function start() {
  element("recording").onchange = ({ target }) => {
    const files = [...target.files];
    target.value = ""; // so that the same file can be opened anew
    if (files.length) open(files);
  };
  element("example").onclick = open_example;
  element("live").onclick = live;
}
