// The core of the board in node: the same answers as from the native core, and what becomes of a
// worker that is ended or fails. CORE is a folder with core.mjs and all that it loads, ANSWERS a
// program that answers each line of its input by the native core.
import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { readFileSync } from "node:fs";
import path from "node:path";
import { after, before, describe, test } from "node:test";
import { pathToFileURL } from "node:url";
import { gzipSync } from "node:zlib";

const folder = path.resolve(process.env.CORE);
const { BoardCore } = await import(pathToFileURL(path.join(folder, "core.mjs")));
// Compressed, as pages get it.
const MOST_BYTES = 350000;
const KIWIPETE = "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1";
const CHESS960 = "1r2k1r1/pppppppp/8/8/8/8/PPPPPPPP/1R2K1R1 w GBgb - 0 1";
const PGN = `[Event "Cup"]\n[White "Müller"]\n\n1. e4 {a} e5 2. Qh5 Ke7 3. Qxe5# 1-0\n\n1. e4 Ke3 *\n`;

const requests = [
  { ask: "position" },
  { ask: "position", start: CHESS960, moves: ["e1g1", "e8b8"] },
  { ask: "position", moves: ["f2f3", "e7e5", "g2g4", "d8h4"] },
  { ask: "position", moves: ["e2e5"] },
  { ask: "line", moves: ["e2e4"], line: ["e7e5", "g1f3"] },
  ...["startpos", KIWIPETE, CHESS960, "8/8/8/8/8/2k5/8/KBN5 w - - 0 1"].map((start) =>
    ({ ask: "evaluation", start })),
  { ask: "pgn", text: PGN },
  { ask: "to-pgn", moves: ["e2e4", "e7e5"], tags: { White: "Ä \"B\"" }, result: "0-1" },
  { ask: "record", start: KIWIPETE, limit: { depth: 6 }, lines: 2 },
  { ask: "record", moves: ["e2e4", "e7e5", "f2f4", "e5f4"], ply: 3, limit: { nodes: 20000 },
    search: "best,played,rest" },
  { ask: "record", start: "8/8/8/8/8/2k5/8/KBN5 w - - 0 1", limit: { depth: 8 } },
  { ask: "leaf", line: ["e2e4", "e7e5"], cp: 10 },
  { ask: "book" },
  { ask: "nothing" },
];

describe("the core of the board", () => {
  let core;
  before(() => (core = new BoardCore()));
  after(() => core.close());

  test("it answers as the native core does", async () => {
    const lines = requests.map((request) => JSON.stringify(request) + "\n").join("");
    const native = execFileSync(process.env.ANSWERS, { input: lines, maxBuffer: 1 << 26 })
      .toString().trimEnd().split("\n");
    const here = await Promise.all(requests.map((request) => core.askText(request)));
    assert.deepEqual(here, native);
  });

  test("a lone half of a letter is replaced", async () => {
    const pgn = `[White "a\ud800\\\\ud801b"]\n\n1. e4 *\n`;
    const { games } = await core.ask({ ask: "pgn", text: pgn });
    assert.equal(games[0].tags.White, "a\ufffd\\ud801b");
  });

  test("a book is handed over, and kept through a new start", async () => {
    const other = new BoardCore();
    const book = new DataView(new ArrayBuffer(16));
    book.setBigUint64(0, 0x463b96181691fc9cn);
    book.setUint16(8, (12 << 6) | 28);
    book.setUint16(10, 7);
    assert.deepEqual(await other.book(book.buffer), { entries: 1 });
    const { moves } = await other.ask({ ask: "book" });
    assert.deepEqual(moves, [{ uci: "e2e4", san: "e4", weight: 7 }]);
    other.restart();
    assert.deepEqual((await other.ask({ ask: "book" })).moves, moves);
    assert.ok((await other.book(new ArrayBuffer(3))).error);
    other.close();
  });

  test("a new start ends the request that runs, and no other", async () => {
    const other = new BoardCore();
    await other.ask({ ask: "position" });
    const long = other.ask({ ask: "record", limit: { depth: 60 } });
    const next = other.ask({ ask: "position" });
    other.restart();
    await assert.rejects(long, /started again/);
    assert.equal((await next).legal.length, 20);
    other.close();
    await assert.rejects(other.ask({ ask: "position" }), /closed/);
  });

  test("what is closed answers nothing more", async () => {
    const other = new BoardCore();
    const waiting = [other.ask({ ask: "position" }), other.ask({ ask: "position" })];
    other.close();
    for (const answer of waiting) {
      await assert.rejects(answer, /closed/);
    }
  });

  test("a module that is not there fails every request", async () => {
    const other = new BoardCore({ wasm: pathToFileURL(path.join(folder, "none.wasm")) });
    await assert.rejects(other.ask({ ask: "position" }), /none\.wasm/);
    await assert.rejects(other.ask({ ask: "position" }), /none\.wasm/);
    other.close();
  });

  test("a deeply nested or a huge request gives an error and no trap", async () => {
    const deep = (depth) => (depth === 0 ? [] : [deep(depth - 1)]);
    assert.match((await core.ask({ ask: "position", moves: deep(2000) })).error, /moves/);
    assert.match((await core.ask({ ask: "pgn", text: "x".repeat((16 << 20) + 1) })).error, /16 MiB/);
    assert.match((await core.ask({ ask: "pgn", text: "x".repeat(50 << 20) })).error, /longer/);
    assert.equal((await core.ask({ ask: "position" })).legal.length, 20);
  });

  test("a long text of games is read", async () => {
    const text = PGN.repeat(Math.floor((16 << 20) / (PGN.length + 1)));
    const { count, games } = await core.ask({ ask: "pgn", text });
    assert.equal(games.length, 1000);
    assert.ok(count > 200000);
  });

  test("it is small", () => {
    const bytes = gzipSync(readFileSync(path.join(folder, "orvelin-board-core.wasm")), { level: 9 });
    assert.ok(bytes.length < MOST_BYTES, bytes.length);
  });
});
