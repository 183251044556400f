// Columns of numbers in a text file: an even column of times gives the rate, the column after it the samples.

const most_bytes = 256e6;

/** The numbers of a line; a decimal comma where semicolons or tabs separate. */
function numbers_of(line) {
  const text = line.replace(/#.*/, "").trim();
  if (text === "") return [];
  const separate = /[;\t]/.test(text) ? /\s*[;\t]\s*/ : /\s*,\s*|\s+/;
  const decimal = separate.test(";") && !text.includes(".") ? /,/ : undefined;
  return text.split(separate).map((word) => (word === "" ? NaN : Number(decimal ? word.replace(decimal, ".") : word)));
}

/** The rate of a column of times, or undefined. */
function rate_of(times) {
  const step = (times.at(-1) - times[0]) / (times.length - 1);
  if (times.length < 3 || !(step > 0)) return undefined;
  const is_even = times.every((t, i) => Math.abs(t - times[0] - i * step) < 0.02 * step);
  return is_even ? 1 / step : undefined;
}

/** {samples, rate}: `rate` is what the caller states for a file without times. */
export async function read_table(blob, rate) {
  if (blob.size > most_bytes) throw new Error("is a text of more than 256 MB");
  const text = await blob.text();
  if (text.includes("\0")) throw new Error("is neither a sound that this browser decodes nor a text");
  const rows = [];
  text.split(/\r\n|\r|\n/).forEach((line, at) => {
    const row = numbers_of(line);
    if (row.length === 0 || (rows.length === 0 && row.some(Number.isNaN))) return; // headers
    if (!row.every(Number.isFinite)) throw new Error(`line ${at + 1}: "${line.slice(0, 40)}" is not all numbers`);
    rows.push(row);
  });
  if (rows.length === 0) throw new Error("holds no numbers");
  const timed = rows[0].length > 1 ? rate_of(rows.map((row) => row[0])) : undefined;
  const column = timed ? 1 : 0;
  const missing = rows.findIndex((row) => row.length <= column);
  if (missing >= 0) throw new Error(`row ${missing + 1} has no column ${column + 1}`);
  return { samples: Float64Array.from(rows, (row) => row[column]), rate: timed ?? rate };
}
