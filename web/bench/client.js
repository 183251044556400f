// The worker as seen from the page: ask(task, input) is a promise of its result; progress shows in the header.

const worker = new Worker(new URL("worker.js", import.meta.url), { type: "module" });
const waiting = new Map();
let asked = 0;

export const ready = new Promise((resolve, reject) => waiting.set(0, { resolve, reject }));

worker.onerror = () => {
  const sentence = "The computation broke off: reload the page, or take a smaller file.";
  for (const { reject } of waiting.values()) reject(new Error(sentence));
  waiting.clear();
};

worker.onmessage = ({ data: { id, result, error, progress } }) => {
  if (progress !== undefined) return void (document.getElementById("progress").value = Math.min(progress, 1));
  const { resolve, reject } = waiting.get(id);
  waiting.delete(id);
  if (error === undefined) resolve(result);
  else reject(new Error(error));
};

export function ask(task, input, transfer = []) {
  const id = ++asked;
  worker.postMessage({ id, task, input }, transfer);
  return new Promise((resolve, reject) => waiting.set(id, { resolve, reject }));
}
