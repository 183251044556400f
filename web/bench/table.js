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
  const columns = [[], []];
  let width = 0;
  for (let at = 0, end = 0, line = 1; at < text.length; at = end + 1, ++line) {
    end = text.indexOf("\n", at) < 0 ? text.length : text.indexOf("\n", at);
    const row = numbers_of(text.slice(at, end));
    if (row.length === 0 || (width === 0 && row.some(Number.isNaN))) continue; // headers
    if (!row.every(Number.isFinite)) throw new Error(`line ${line}: "${text.slice(at, Math.min(end, at + 40)).trim()}" is not all numbers`);
    width ||= row.length;
    if (row.length < Math.min(width, 2)) throw new Error(`line ${line} has no second column`);
    columns.forEach((column, k) => k < row.length && column.push(row[k]));
  }
  const [first, second] = columns;
  if (width === 0) throw new Error("holds no numbers");
  const timed = width > 1 ? rate_of(first) : undefined;
  return { samples: Float64Array.from(timed ? second : first), rate: timed ?? rate };
}
