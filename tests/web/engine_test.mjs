// The package of the engine for pages, as it is installed: in node and in Chromium, with shared
// memory and without. NATIVE is a build of orvelin-play to compare the speed with, if it is set.
import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { copyFileSync, mkdtempSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { createServer } from "node:http";
import { tmpdir } from "node:os";
import path from "node:path";
import { after, before, describe, test } from "node:test";
import { fileURLToPath } from "node:url";
import { gzipSync } from "node:zlib";
import { chromium } from "playwright-core";
import Orvelin from "orvelin";

const BENCH_NODES = "2030223";
const MOST_BYTES = 200000;
const folder = path.dirname(fileURLToPath(import.meta.resolve("orvelin")));

const scratchFolder = (context) => {
  const name = mkdtempSync(path.join(tmpdir(), "orvelin-"));
  context.after(() => rmSync(name, { recursive: true }));
  return name;
};

// Sends lines and hears all that comes, until a line that matches; runs in a page too.
const converse = async (engine, lines, last, seconds = 120) => {
  const heard = [];
  let timer;
  const end = new Promise((done, fail) => {
    timer = setTimeout(() => fail(new Error("no " + last + " in " + heard.join("\n"))), seconds * 1000);
    engine.onerror = ({ message }) => fail(new Error(message));
    engine.onmessage = ({ data }) => {
      heard.push(data);
      if (new RegExp(last).test(data)) {
        done(heard);
      }
    };
  });
  engine.postMessage(lines.join("\n"));
  return end.finally(() => clearTimeout(timer));
};

// What each engine has to do; its result is looked at by the tests below.
const tasks = {
  async bench(engine) {
    return (await converse(engine, ["bench"], "^Nodes/second")).slice(-2);
  },
  // Stops an endless search, with a question before it.
  async stop(engine) {
    await converse(engine, ["position startpos moves e2e4", "go infinite"], "^info depth 6 .* pv ");
    const start = performance.now();
    const heard = await converse(engine, ["isready", "stop"], "^bestmove");
    return { milliseconds: performance.now() - start, heard };
  },
  async again(engine) {
    return (await converse(engine, ["position startpos moves e2e4", "go depth 4"], "^bestmove")).at(-1);
  },
  // A search that ends by itself has to wait with its answer.
  async held(engine) {
    await converse(engine, ["position fen 7k/5Q2/6K1/8/8/8/8/8 w - - 0 1", "go infinite"],
      "^info depth .* score mate 1 ");
    const early = [];
    engine.onmessage = ({ data }) => early.push(data);
    await new Promise((done) => setTimeout(done, 300));
    const heard = await converse(engine, ["stop"], "^bestmove");
    return { early: early.filter((line) => line.startsWith("bestmove")), last: heard.at(-1) };
  },
  // All is sent at once, as by somebody who clicks through a game.
  async hurry(engine) {
    const answers = [];
    const first = ["position startpos", "go infinite", "stop", "position startpos moves e2e4",
      "go infinite", "stop", "position startpos moves e2e4 e7e5", "go depth 3", "isready"];
    await new Promise((done, fail) => {
      setTimeout(() => fail(new Error("only " + answers.join(", "))), 60000).unref?.();
      engine.onmessage = ({ data }) => {
        if (data.startsWith("bestmove") && answers.push(data) === 3) {
          done();
        }
      };
      engine.postMessage(first.join("\n"));
    });
    return answers;
  },
  async refused(engine) {
    await converse(engine, ["position startpos", "go infinite"], "^info depth 2 ");
    const heard = await converse(engine, ["go depth 1", "position startpos moves a2a3", "isready"],
      "^readyok");
    const last = (await converse(engine, ["stop"], "^bestmove")).at(-1);
    return { refusals: heard.filter((line) => line.includes("ignored")), last };
  },
  async movetime(engine) {
    const start = performance.now();
    const heard = await converse(engine, ["position startpos", "go movetime 300"], "^bestmove");
    return { milliseconds: performance.now() - start, last: heard.at(-1) };
  },
  async ponderhit(engine) {
    await converse(engine, ["position startpos", "go ponder wtime 3000 btime 3000"],
      "^info depth 5 ");
    return (await converse(engine, ["ponderhit"], "^bestmove")).at(-1);
  },
};

const MOVE = /^bestmove [a-h][1-8][a-h][1-8]/;
const checks = {
  bench: (result) => assert.equal(result[0], "Nodes searched: " + BENCH_NODES),
  stop(result) {
    assert.ok(result.heard.includes("readyok"), result.heard.join("\n"));
    assert.match(result.heard.at(-1), MOVE);
    assert.ok(result.milliseconds < 1000, `${result.milliseconds} ms`);
  },
  again: (result) => assert.match(result, MOVE),
  held(result) {
    assert.deepEqual(result.early, []);
    assert.match(result.last, /^bestmove f7[a-h]/);
  },
  hurry(result) {
    assert.equal(result.length, 3);
    result.forEach((line, i) => assert.match(line, [/[a-h][34]|[a-h]3/, /[a-h][56]/, MOVE][i]));
  },
  refused(result) {
    assert.equal(result.refusals.length, 2, result.refusals.join("\n"));
    assert.match(result.last, MOVE);
  },
  movetime(result) {
    assert.match(result.last, MOVE);
    assert.ok(result.milliseconds > 250 && result.milliseconds < 2000, `${result.milliseconds} ms`);
  },
  ponderhit: (result) => assert.match(result, MOVE),
};

const speedOf = (lines) => Number(lines.at(-1).match(/^Nodes\/second: (\d+)/)[1]);

test("the package is small", () => {
  const bytes = ["orvelin.mjs", "wasm_system.mjs", "orvelin.wasm"]
    .map((name) => gzipSync(readFileSync(path.join(folder, name)), { level: 9 }).length);
  console.log(`compressed: ${bytes.join(" + ")} bytes`);
  assert.ok(bytes.reduce((sum, size) => sum + size) <= MOST_BYTES, bytes.join(" + "));
});

test("nothing in it evaluates text or asks for anything but the module", () => {
  const text = ["orvelin.mjs", "wasm_system.mjs"]
    .map((name) => readFileSync(path.join(folder, name), "utf8")).join("\n");
  assert.doesNotMatch(text, /\beval\s*\(|\bFunction\(|importScripts|XMLHttpRequest|https?:/);
  assert.equal(text.match(/\bfetch\(/g).length, 1);
});

// What node 18 lacks is taken away, from the worker too.
test("the script of the README plays a move and ends", (context) => {
  const scratch = scratchFolder(context);
  const readme = readFileSync(path.join(folder, "README.md"), "utf8");
  const script = readme.match(/`play\.mjs`[^]*?\n\n((?: {4}.*\n|\n)+)/)[1].replace(/^ {4}/gm, "");
  writeFileSync("play.mjs", script);
  context.after(() => rmSync("play.mjs"));
  const old = path.join(scratch, "old.cjs");
  writeFileSync(old, ["crypto", "CustomEvent", "navigator", "WebSocket"]
    .map((name) => `delete globalThis.${name};\n`).join(""));
  const heard = execFileSync(process.execPath, ["--require", old, "play.mjs"],
    { encoding: "utf8", timeout: 240000 });
  assert.match(heard, /^info depth 12 [^]*^bestmove [a-h][1-8][a-h][1-8].*\n$/m);
});

test("a module that is not there is told", async (context) => {
  const scratch = scratchFolder(context);
  for (const name of ["orvelin.mjs", "wasm_system.mjs"]) {
    copyFileSync(path.join(folder, name), path.join(scratch, name));
  }
  const { Orvelin: Lonely } = await import(path.join(scratch, "orvelin.mjs"));
  for (const shared of [true, false]) {
    const engine = new Lonely({ shared });
    const told = new Promise((done) => (engine.onerror = ({ message }) => done(message)));
    engine.postMessage("isready");
    assert.match(await told, /orvelin\.wasm/);
    engine.terminate();
  }
});

for (const shared of [true, false]) {
  describe(`in node, ${shared ? "with" : "without"} shared memory`, () => {
    let engine;
    before(() => (engine = new Orvelin({ shared })));
    after(() => engine.terminate());
    for (const [name, task] of Object.entries(tasks)) {
      test(name, async () => {
        const result = await task(engine);
        checks[name](result);
        if (name === "bench" && shared && process.env.NATIVE) {
          const native = execFileSync(process.env.NATIVE, ["bench"], { encoding: "utf8" });
          const part = speedOf(result) / speedOf(native.trim().split("\n"));
          console.log(`${part.toFixed(2)} of the native speed`);
          // Half of it and more on a machine that does nothing else.
          assert.ok(part > 0.3, String(part));
        }
      });
    }
    test("lines longer than what is shared", async () => {
      const long = "position startpos moves " + "g1f3 g8f6 f3g1 f6g8 ".repeat(5000);
      const heard = await converse(engine, [long, "d", "go depth 1"], "^bestmove");
      assert.match(heard.at(-1), MOVE);
    });
    test("quit ends the worker, whatever still waits for it", async () => {
      let heard = 0;
      engine.postMessage("position startpos moves " + "g1f3 g8f6 f3g1 f6g8 ".repeat(20000));
      engine.postMessage("quit");
      engine.onmessage = () => (heard += 1);
      engine.postMessage("isready");
      await new Promise((done) => setTimeout(done, 200));
      assert.equal(heard, 0);
      assert.equal(engine.link.waiting?.length ?? 0, 0);
    });
  });
}

// Serves the package, to a page that is isolated or is not.
const serve = (isolated) => {
  const types = { ".html": "text/html", ".mjs": "text/javascript", ".wasm": "application/wasm" };
  const server = createServer((request, response) => {
    const name = request.url.slice(1);
    const headers = { "content-type": types[path.extname(name)] ?? "text/plain",
      "content-security-policy": "script-src 'self' 'unsafe-inline' 'wasm-unsafe-eval'" };
    if (isolated) {
      headers["cross-origin-opener-policy"] = "same-origin";
      headers["cross-origin-embedder-policy"] = "require-corp";
    }
    response.writeHead(types[path.extname(name)] ? 200 : 404, headers);
    response.end(types[path.extname(name)] ? readFileSync(path.join(folder, name)) : "");
  });
  return new Promise((done) => server.listen(0, "127.0.0.1", () => done(server)));
};

for (const isolated of [true, false]) {
  describe(`in a page that is ${isolated ? "" : "not "}isolated`, () => {
    let browser, server, page;
    const asked = [];
    before(async () => {
      server = await serve(isolated);
      const args = process.getuid() === 0 ? ["--no-sandbox"] : [];
      browser = await chromium.launch({ executablePath: process.env.CHROMIUM, args });
      page = await browser.newPage();
      page.on("request", (request) => asked.push(path.basename(request.url())));
      await page.goto(`http://127.0.0.1:${server.address().port}/example.html`);
      await page.evaluate(`globalThis.converse = ${converse};
        globalThis.tasks = { ${Object.values(tasks).map(String).join(", ")} };`);
      await page.evaluate(async () => {
        globalThis.engine = new (await import("./orvelin.mjs")).Orvelin();
      });
    });
    after(async () => {
      await browser?.close();
      server?.close();
    });
    test("memory is shared where it can be", async () => {
      assert.equal(await page.evaluate(() => globalThis.engine.shared), isolated);
    });
    for (const name of Object.keys(tasks)) {
      test(name, async () => {
        const result = await page.evaluate((task) => globalThis.tasks[task](globalThis.engine), name);
        checks[name](result);
        if (name === "bench") {
          console.log(result.join(", "));
        }
      });
    }
    test("the example searches and stops", async () => {
      await page.click("#go");
      await page.waitForFunction(() => / pv /.test(document.getElementById("lines").textContent));
      await page.click("#stop");
      await page.waitForFunction(() =>
        /^bestmove /m.test(document.getElementById("lines").textContent));
      assert.deepEqual([...new Set(asked)].sort(),
        ["example.html", "orvelin.mjs", "orvelin.wasm", "wasm_system.mjs"]);
    });
  });
}
