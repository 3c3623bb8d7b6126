// The worker of core.mjs: hands requests to the module, one after the other.

import { loadModule, systemOf } from "./engine/wasm_system.mjs";

const node = globalThis.process?.versions?.node !== undefined && !globalThis.window;
const port = node ? (await import("node:worker_threads")).parentPort : globalThis;
const decoder = new TextDecoder();
const encoder = new TextEncoder();

let core = null;

const hand = (bytes, act) => {
  const place = core.orvelin_room(bytes.length) >>> 0;
  new Uint8Array(core.memory.buffer, place, bytes.length).set(bytes);
  const size = act(bytes.length) >>> 0;
  const text = core.orvelin_answer_text() >>> 0;
  return decoder.decode(new Uint8Array(core.memory.buffer, text, size));
};

const takeBook = (book) => hand(new Uint8Array(book), core.orvelin_book);

async function load(place) {
  const module = await loadModule(new URL(place));
  let exports;
  ({ exports } = await WebAssembly.instantiate(module, systemOf(module, () => exports.memory)));
  exports._initialize();
  core = exports;
}

async function act({ wasm, book, request }) {
  if (wasm !== undefined) {
    await load(wasm);
    if (book) {
      takeBook(book);
    }
    return;
  }
  const answer = book === undefined ? hand(encoder.encode(request), core.orvelin_answer)
    : takeBook(book);
  port.postMessage({ answer });
}

// In the order in which they come, though the first takes a while.
let last = Promise.resolve();
const take = (message) => {
  last = last.then(() => act(message)).catch((error) => port.postMessage({ error: String(error) }));
};
if (node) {
  port.on("message", take);
} else {
  port.addEventListener("message", ({ data }) => take(data));
}
