// What a board has to know of chess, asked of a worker with a module of WebAssembly: rules,
// notation, evaluations, games as texts, records of an analysis. See core.d.ts.

const node = globalThis.process?.versions?.node !== undefined && !globalThis.window;
const threads = node ? await import("node:worker_threads") : null;

// A lone half of a letter has no place in the module's texts, whoever has typed or pasted it.
const jsonOf = (request) =>
  JSON.stringify(request).replace(/\\(?:u(d[89a-f][0-9a-f]{2})|.)/g,
    (escape, half) => (half ? "\\ufffd" : escape));

/** See core.d.ts. */
export class BoardCore {
  // What was asked and has no answer yet; the first is in the worker.
  waiting = [];
  bookBytes = null;

  constructor({ wasm } = {}) {
    this.wasm = String(wasm ?? new URL("./orvelin-board-core.wasm", import.meta.url));
    this.start();
  }

  async ask(request) {
    return JSON.parse(await this.askText(request));
  }

  askText(request) {
    return this.send({ request: jsonOf(request) });
  }

  async book(bytes) {
    this.bookBytes = bytes;
    return JSON.parse(await this.send({ book: bytes }));
  }

  restart() {
    this.renew(new Error("the core was started again"));
  }

  close() {
    const error = new Error("the core was closed");
    this.worker?.terminate();
    this.worker = null;
    for (const { fail } of this.waiting.splice(0)) {
      fail(error);
    }
  }

  send(message) {
    return new Promise((done, fail) => {
      if (!this.worker) {
        fail(new Error("the core was closed"));
        return;
      }
      if (this.failed) {
        this.start();
      }
      this.waiting.push({ message, done, fail });
      if (this.waiting.length === 1) {
        this.post();
      }
    });
  }

  post() {
    if (this.waiting.length > 0) {
      this.worker.postMessage(this.waiting[0].message);
    }
  }

  // The request in the worker ends so; those behind it find a new worker.
  renew(error) {
    const running = this.waiting.shift();
    this.start();
    running?.fail(error);
  }

  start() {
    this.failed = false;
    this.worker?.terminate();
    const place = new URL("./core_worker.mjs", import.meta.url);
    const worker = node ? new threads.Worker(place) : new Worker(place, { type: "module" });
    this.worker = worker;
    // A worker that cannot be had is tried for again when it is asked something.
    const fail = (text) => {
      if (this.worker === worker && this.waiting.length > 0) {
        this.renew(new Error(text));
      } else if (this.worker === worker) {
        this.failed = true;
      }
    };
    const hear = ({ answer, error }) => {
      if (this.worker !== worker) {
        return;
      }
      if (error !== undefined) {
        fail(error);
        return;
      }
      const asked = this.waiting.shift();
      this.post();
      asked.done(answer);
    };
    if (node) {
      worker.on("message", hear);
      worker.on("error", (error) => fail(String(error)));
    } else {
      worker.onmessage = (event) => hear(event.data);
      worker.onerror = (event) => fail(event.message);
    }
    worker.postMessage({ wasm: this.wasm, book: this.bookBytes });
    this.post();
  }
}
