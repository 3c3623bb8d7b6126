// Orvelin as a worker that is spoken to in UCI text. This module is loaded twice: by who wants an
// engine, and by the worker that the engine runs in.

import { loadModule, systemOf } from "./wasm_system.mjs";

const NAME = "orvelin engine";
// What comes in during a search is handed over in shared memory: two counters of bytes, which run
// on for ever, and a ring.
const RING = 1 << 16;
const WRITTEN = 0;
const READ = 1;

const node = globalThis.process?.versions?.node !== undefined && !globalThis.window;
const threads = node ? await import("node:worker_threads") : null;
const inWorker = node ? threads.workerData === NAME
  : typeof WorkerGlobalScope !== "undefined" && globalThis.name === NAME;

// --- In the worker.

// Where memory is not shared, lines come between searches alone.
class PlainInput {
  bytes = new Uint8Array(0);
  add(text) {
    const more = new TextEncoder().encode(text);
    const joined = new Uint8Array(this.bytes.length + more.length);
    joined.set(this.bytes);
    joined.set(more, this.bytes.length);
    this.bytes = joined;
  }
  wait() {
    return this.bytes.length > 0;
  }
  read(to) {
    const part = this.bytes.subarray(0, to.length);
    to.set(part);
    this.bytes = this.bytes.slice(part.length);
    return part.length;
  }
}

class SharedInput {
  constructor(buffer) {
    this.counters = new Int32Array(buffer, 0, 2);
    this.ring = new Uint8Array(buffer, 8);
  }
  // Below 0 is for ever.
  wait(milliseconds) {
    const read = this.counters[READ];
    if (Atomics.load(this.counters, WRITTEN) === read && milliseconds !== 0) {
      Atomics.wait(this.counters, WRITTEN, read, milliseconds < 0 ? Infinity : milliseconds);
    }
    return Atomics.load(this.counters, WRITTEN) !== read;
  }
  read(to) {
    const read = this.counters[READ];
    const count = Math.min((Atomics.load(this.counters, WRITTEN) - read) | 0, to.length);
    for (let i = 0; i < count; i += 1) {
      to[i] = this.ring[(read + i) & (RING - 1)];
    }
    Atomics.store(this.counters, READ, (read + count) | 0);
    return count;
  }
}

async function makeEngine(input, shared, send) {
  const module = await loadModule(new URL("./orvelin.wasm", import.meta.url));
  const decoder = new TextDecoder();
  let rest = "";
  let exports;
  const bytes = (place, size) => new Uint8Array(exports.memory.buffer, place >>> 0, size);
  const orvelin = {
    write(place, size) {
      const lines = (rest + decoder.decode(bytes(place, size), { stream: true })).split("\n");
      rest = lines.pop();
      lines.forEach(send);
    },
    wait: (milliseconds) => Number(input.wait(milliseconds)),
    read: (place, size) => input.read(bytes(place, size)),
    can_wait: () => Number(shared),
  };
  ({ exports } = await WebAssembly.instantiate(module,
    { ...systemOf(module, () => exports.memory, "orvelin"), orvelin }));
  exports._initialize();
  return exports;
}

async function work() {
  const port = node ? threads.parentPort : globalThis;
  const tell = (message) => port.postMessage(message);
  const first = await new Promise((done) => {
    const take = (event) => done(node ? event : event.data);
    node ? port.once("message", take) : port.addEventListener("message", take, { once: true });
  });
  const shared = first.buffer !== undefined;
  const input = shared ? new SharedInput(first.buffer) : new PlainInput();
  const waiting = [];
  let exports = null;
  const act = (text) => {
    input.add(text);
    try {
      exports.orvelin_act();
    } catch (error) {
      tell({ error: String(error) });
    }
  };
  if (!shared) {
    const take = (text) => (exports ? act(text) : waiting.push(text));
    node ? port.on("message", take)
      : port.addEventListener("message", (event) => take(event.data));
  }
  try {
    exports = await makeEngine(input, shared, (line) => tell({ line }));
    waiting.forEach(act);
    while (shared && input.wait(-1)) {
      exports.orvelin_act();
    }
  } catch (error) {
    tell({ error: String(error) });
  }
}

// --- For who wants an engine.

const firstWord = (line) => line.trim().split(/\s+/)[0];

// What the engine does not do while it searches.
const REFUSED = new Set(["position", "go", "ucinewgame", "d", "eval", "flip", "bench", "perft"]);

// Lines go to the worker as bytes of the ring; what finds no room there waits here.
class SharedLink {
  constructor(worker) {
    const buffer = new SharedArrayBuffer(8 + RING);
    this.counters = new Int32Array(buffer, 0, 2);
    this.ring = new Uint8Array(buffer, 8);
    this.waiting = [];
    worker.postMessage({ buffer });
  }
  send(line) {
    for (const byte of new TextEncoder().encode(line + "\n")) {
      this.waiting.push(byte);
    }
    this.push();
  }
  push() {
    const written = this.counters[WRITTEN];
    const room = RING - ((written - Atomics.load(this.counters, READ)) | 0);
    const part = this.waiting.splice(0, room);
    part.forEach((byte, i) => (this.ring[(written + i) & (RING - 1)] = byte));
    Atomics.store(this.counters, WRITTEN, (written + part.length) | 0);
    Atomics.notify(this.counters, WRITTEN);
    if (this.waiting.length > 0 && !this.timer) {
      this.timer = setTimeout(() => {
        this.timer = null;
        this.push();
      }, 5);
    }
  }
  close() {
    clearTimeout(this.timer);
    this.waiting = [];
  }
}

// Where no memory is shared, a search hears nothing: to stop it, its worker is ended, the first move
// of its last line is the answer, and a new worker is told the options and the position.
class PlainLink {
  options = new Map();
  // The position, and what was done to it since.
  board = [];
  // Of the search that runs: its command, the first moves of its last line, whether its answer is
  // to wait for a stop, that answer, and whether the stop has come.
  search = null;
  // What was sent behind a stop whose answer has not come yet, or is being heard.
  later = [];
  answering = false;

  constructor(engine) {
    this.engine = engine;
  }
  send(line) {
    const word = firstWord(line);
    const { search } = this;
    if (this.answering) {
      this.later.push(line);
    } else if (!search) {
      this.remember(word, line);
      this.engine.worker.postMessage(line + "\n");
    } else if (word === "isready") {
      this.engine.emit("readyok");
    } else if (search.stopped) {
      // A second stop belongs to the next search, if there is one.
      if (this.later.length > 0 || (word !== "stop" && word !== "ponderhit")) {
        this.later.push(line);
      }
    } else if (word === "stop") {
      search.stopped = true;
      this.finish();
    } else if (word === "ponderhit") {
      if (/\bponder\b/.test(search.go)) {
        this.renew();
        this.send(search.go.replace(/\bponder\b/, ""));
      }
    } else if (REFUSED.has(word)) {
      this.engine.emit(`info string ${word} is ignored while a search runs, stop it first`);
    } else {
      this.remember(word, line);
      this.engine.worker.postMessage(line + "\n");
    }
  }
  remember(word, line) {
    const name = line.match(/\bname\s+(.*?)(\s+value\b|$)/i)?.[1].toLowerCase();
    if (word === "setoption" && name) {
      this.options.set(name, line);
    } else if (word === "position") {
      this.board = [line];
    } else if (word === "flip") {
      this.board.push(line);
    } else if (word === "go" && !/\bperft\b/.test(line)) {
      this.search = { go: line, held: /\b(infinite|ponder)\b/.test(line) };
    }
  }
  hear(line) {
    const { search } = this;
    if (!search) {
      return true;
    }
    if (line.startsWith("bestmove")) {
      search.answer = line;
      this.finish();
      return false;
    }
    const moves = line.match(/^info .*?\bpv (\S+)(?: (\S+))?/);
    if (moves && !/ multipv (?!1 )/.test(line)) {
      search.moves = moves.slice(1);
      setTimeout(() => this.finish());
    }
    return true;
  }
  // Nothing to be done while the answer is not known, or must not yet be given.
  finish() {
    const { search } = this;
    if (!this.engine.worker || !search || (search.held && !search.stopped)) {
      return;
    }
    if (search.answer) {
      this.search = null;
      this.answer(search.answer);
    } else if (search.stopped && search.moves) {
      const [move, reply] = search.moves;
      this.renew();
      this.answer(`bestmove ${move}` + (reply ? ` ponder ${reply}` : ""));
    }
  }
  // What the answer makes its hearer send comes behind what was sent before.
  answer(line) {
    this.answering = true;
    this.engine.emit(line);
    this.answering = false;
    const { later } = this;
    this.later = [];
    later.forEach((next) => this.engine.postMessage(next));
  }
  renew() {
    this.search = null;
    this.engine.start();
    for (const line of [...this.options.values(), ...this.board]) {
      this.engine.worker.postMessage(line + "\n");
    }
  }
  close() {}
}

/** See orvelin.d.ts. */
export class Orvelin {
  onmessage = null;
  onerror = null;

  constructor({ shared } = {}) {
    this.shared = shared ??
      (typeof SharedArrayBuffer !== "undefined" && (node || globalThis.crossOriginIsolated));
    this.link = this.shared ? null : new PlainLink(this);
    this.start();
  }

  postMessage(line) {
    for (const part of String(line).split("\n")) {
      if (firstWord(part) === "quit") {
        this.terminate();
      } else if (this.worker && part.trim()) {
        this.link.send(part);
      }
    }
  }

  terminate() {
    this.link?.close();
    this.worker?.terminate();
    this.worker = null;
  }

  start() {
    this.terminate();
    const place = new URL(import.meta.url);
    const worker = node ? new threads.Worker(place, { workerData: NAME })
      : new Worker(place, { type: "module", name: NAME });
    this.worker = worker;
    const hear = (message) => {
      if (this.worker !== worker) {
        return;
      }
      if (message.error) {
        this.fail(message.error);
      } else if (this.shared || this.link.hear(message.line)) {
        this.emit(message.line);
      }
    };
    if (node) {
      worker.on("message", hear);
      worker.on("error", (error) => this.fail(String(error)));
    } else {
      worker.onmessage = (event) => hear(event.data);
      worker.onerror = (event) => this.fail(event.message);
    }
    if (this.shared) {
      this.link = new SharedLink(worker);
    } else {
      worker.postMessage({});
    }
  }

  emit(line) {
    this.onmessage?.({ data: line });
  }

  fail(message) {
    this.onerror?.({ message });
  }
}

export default Orvelin;

if (inWorker) {
  work();
}
