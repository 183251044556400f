// A one-port calibration from the texts of Touchstone files, or from a simulated reflectometer.

const units = { HZ: 1, KHZ: 1e3, MHZ: 1e6, GHZ: 1e9 };

/** {name, frequency, s}: the points of a one-port file of version 1, s as re, im, re, im ... */
export function read_touchstone(name, text) {
  let header;
  const [frequency, s] = [[], []];
  text.split(/\r\n|\r|\n/).forEach((raw, at) => {
    const refuse = (what) => { throw new Error(`${name}, line ${at + 1}: ${what}`); };
    const words = raw.replace(/!.*/, "").trim().toUpperCase().replace(/^#/, "# ").split(/\s+/);
    if (words[0] === "") return;
    if (words[0] === "#") {
      header ??= { unit: units[words.find((w) => w in units)] ?? 1e9, format: words.find((w) => /^(RI|MA|DB)$/.test(w)) ?? "MA" };
      return;
    }
    if (!header) refuse("no header before the data; it should read like # MHz S RI R 50");
    const numbers = words.map(Number);
    if (numbers.length !== 3 || !numbers.every(Number.isFinite)) refuse("not the three numbers of a one-port");
    if (numbers[0] < 0 || numbers[0] * header.unit <= frequency.at(-1)) refuse("the frequencies do not rise");
    frequency.push(numbers[0] * header.unit);
    s.push(...complex(header.format, numbers[1], numbers[2]));
  });
  if (s.length === 0) throw new Error(`${name} holds no measured point`);
  return { name, frequency, s };
}

function complex(format, first, second) {
  if (format === "RI") return [first, second];
  const size = format === "DB" ? 10 ** (first / 20) : first;
  return [size * Math.cos((second * Math.PI) / 180), size * Math.sin((second * Math.PI) / 180)];
}

const ideals = { short: -1, open: 1, load: 0 };

/** Measured short, open and load and a device behind the same error box: an antenna, resonant at 1.55 GHz. */
function simulated() {
  const frequency = Array.from({ length: 401 }, (_, i) => 100e6 + (2900e6 * i) / 400);
  const seen = (a) => frequency.flatMap((f) => {
    const [re, im] = a(f);
    const turn = -4 * Math.PI * f * 1.7e-9;
    const [e00, e11, t] = [0.04, 0.07, 0.85 * Math.exp(-f / 3e10)];
    const [dre, dim] = [1 - e11 * re, -e11 * im];
    const d = dre * dre + dim * dim;
    const [qre, qim] = [(re * dre + im * dim) / d, (im * dre - re * dim) / d];
    return [e00 + t * (qre * Math.cos(turn) - qim * Math.sin(turn)), t * (qre * Math.sin(turn) + qim * Math.cos(turn))];
  });
  const antenna = (f) => {
    const [r, x] = [43, 43 * 9 * (f / 1.55e9 - 1.55e9 / f)];
    const d = (r + 50) ** 2 + x * x;
    return [(r * r - 2500 + x * x) / d, (100 * x) / d];
  };
  const file = (name, s) => ({ name, frequency, s });
  return [...Object.entries(ideals).map(([name, a]) => file(name, seen(() => [a, 0]))), file("antenna", seen(antenna))];
}

function require_same_sweep(files) {
  const [first] = files;
  for (const { name, frequency } of files)
    if (frequency.length !== first.frequency.length || frequency.some((f, i) => Math.abs(f - first.frequency[i]) > 1e-9 * f))
      throw new Error(`${first.name} and ${name} do not have the same frequencies`);
}

/** `files`: {name, text} of a short, an open, a load and the device, or nothing for the simulation. */
export function calibrate(dsp, files) {
  const read = files ? files.map(({ name, text }) => read_touchstone(name, text)) : simulated();
  require_same_sweep(read);
  const [device, ...measured] = [read[3], ...read.slice(0, 3)].map((r) => dsp.signal(r.s, { complex: true }));
  const n = device.length;
  const actual = Object.values(ideals).map((a) => dsp.signal(Array.from({ length: 2 * n }, (_, i) => (i % 2 ? 0 : a)), { complex: true }));
  const terms = new dsp.OnePort(measured, actual);
  const corrected = terms.correct(device);
  const level = (s) => dsp.format_buffer(s, "level").samples.slice();
  const levels = level(corrected);
  const least = levels.reduce((best, l, i) => (l < levels[best] ? i : best), 0);
  const worst = (s) => level(s).reduce((a, b) => Math.max(a, b)).toFixed(2);
  const at_least = (format) => dsp.format_buffer(corrected, format).samples[least];
  return {
    frequency: Float64Array.from(read[3].frequency),
    measured: level(device),
    corrected: levels,
    smith: corrected.samples.slice(),
    rows: [
      ["directivity", worst(terms.directivity), "dB at worst"],
      ["source match", worst(terms.source_match), "dB at worst"],
      ["reflection loss", (-level(terms.reflection_tracking).reduce((a, b) => Math.min(a, b))).toFixed(2), "dB at most"],
      ["least reflection at", (read[3].frequency[least] / 1e6).toPrecision(4), "MHz"],
      ["return loss", at_least("return_loss").toFixed(2), "dB"],
      ["standing-wave ratio", at_least("swr").toFixed(3), ""],
      ["phase", at_least("phase").toFixed(1), "degrees"],
    ],
  };
}
