// Everything that takes time, away from the page: tasks by name, each answered once; progress on the way.

import { load } from "../dsp.js";
import { AveragedSpectrum } from "./averaged.js";
import { calibrate } from "./calibrate.js";
import { design, filtered } from "./filter_design.js";
import { Programs } from "./programs.js";
import { read_table } from "./table.js";
import { is_wav, open_arrays, open_wav } from "./wav.js";
import { compare } from "./window_figures.js";

const dsp = await load(new URL("../bench.wasm", import.meta.url));
const programs = new Programs(dsp);
const most_samples = 2 ** 22; // of a tone, and of what is listened to
const piece = 2 ** 18; // frames between two looks at what else there is to do
let recording;
let live;
let latest = 0; // the measurement that was asked for last: those before it stop

/** A tone with harmonics and noise, so that the page shows something at once. */
function example() {
  const x = dsp.cos(2 ** 17, 997, 0, { dx: 1 / 48000 });
  dsp.scale(x, 0.5, { out: x });
  [[1994, 5e-4], [2991, 2e-4], [4985, 5e-5], [12000, 1e-3]].forEach(([f, amp]) => dsp.addcos(x, f, { amp, out: x }));
  let state = 1; // the same noise every time
  const noise = () => (state = (Math.imul(state, 1664525) + 1013904223) >>> 0) / 2 ** 32 - 0.5;
  return open_arrays([x.samples.map((v) => v + 4e-5 * (noise() + noise()))], 48000);
}

async function whole(channel, most, report = () => {}) {
  const { rate, frames } = recording;
  const record = dsp.signal(new Float64Array(Math.min(frames, most)), { dx: 1 / rate });
  for (let at = 0; at < record.length; at += piece) {
    const samples = await recording.read(at, Math.min(piece, record.length - at), channel);
    record.samples.set(samples, at);
    report(at / record.length);
  }
  return record;
}

/** What the page shows of an average: levels, peaks, how it was made, and the rows of the waterfall since `from`. */
function shown(measured, settings, from = 0) {
  if (measured.count === 0) throw new Error(`The recording holds fewer samples than a block of ${settings.block}.`);
  const levels = measured.levels();
  const { window, block } = settings;
  const peaks = programs.peaks(levels, window, block, 10);
  const { dx, count, enbw, hop, row_spacing } = measured;
  const rows = measured.rows.slice(from);
  const result = { levels: levels.samples.slice(), peaks, dx, count, enbw, hop, rows, row_spacing };
  levels.free();
  return result;
}

const tasks = {
  async open({ file, rate }) {
    if (file.size === 0) throw new Error("is empty");
    if (await is_wav(file)) recording = await open_wav(file);
    else {
      const table = await read_table(file, rate);
      recording = open_arrays([table.samples], table.rate);
    }
    return tasks.about();
  },
  open_decoded({ channels, rate }) {
    recording = open_arrays(channels, rate);
    return tasks.about();
  },
  open_example() {
    recording = example();
    return tasks.about();
  },
  about: () => ({ rate: recording.rate, channels: recording.channels, frames: recording.frames }),

  async spectrum(settings, report) {
    const mine = ++latest;
    const { rate, frames, channels } = recording;
    const blocks = frames / Math.max((1 - settings.overlap) * settings.block, 1);
    const measured = new AveragedSpectrum(dsp, { ...settings, blocks_per_row: Math.ceil(blocks / 400) }, rate);
    try {
      for (let at = 0; at < frames; at += piece) {
        measured.push(await recording.read(at, piece, Math.min(settings.channel, channels)));
        report((at + piece) / frames);
        if (mine !== latest) return undefined;
      }
      return shown(measured, settings);
    } finally {
      measured.free();
    }
  },

  async tone({ channel }) {
    const record = await whole(Math.min(channel, recording.channels), most_samples);
    try {
      return { rows: programs.tone(record) };
    } catch ({ message }) {
      return { refusal: `${message[0].toUpperCase()}${message.slice(1)}.` };
    } finally {
      record.free();
    }
  },

  live_start({ settings, rate }) {
    ++latest;
    live?.measured.free();
    live = { settings, measured: new AveragedSpectrum(dsp, settings, rate), seen: 0 };
  },
  live_push({ samples }) {
    live.measured.push(samples);
    if (live.measured.count === 0) return undefined;
    const result = shown(live.measured, live.settings, live.seen);
    live.seen = live.measured.rows.length;
    return result;
  },

  windows: (settings) => compare(dsp, settings),
  filter: (settings) => design(dsp, settings),
  async listen(settings, report) {
    const record = await whole(Math.min(settings.channel, recording.channels), most_samples, report);
    return filtered(dsp, record, settings);
  },
  calibrate: (input) => calibrate(dsp, programs, input),
};

onmessage = async ({ data: { id, task, input } }) => {
  const report = (progress) => postMessage({ id, progress });
  try {
    postMessage({ id, result: await tasks[task](input, report) });
  } catch (error) {
    postMessage({ id, error: error.message });
  }
};
postMessage({ id: 0, result: dsp.version() });
