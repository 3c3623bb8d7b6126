// The names of openings: what openings/names.list says by the rules of the core, and on the page.
// NAMES is that file.
import assert from "node:assert/strict";
import { readFile } from "node:fs/promises";
import path from "node:path";
import { after, before, describe, test } from "node:test";
import { pathToFileURL } from "node:url";
import { begin, end, folder, hasMoves, openGame, ready, says, typeMove, withBoard } from "./support.mjs";

const load = (name) => import(pathToFileURL(path.join(folder, name)));
const { BoardCore } = await load("core.mjs");
const { Openings } = await load("openings.mjs");
const { START } = await load("fen.mjs");

const table = await readFile(path.join(folder, "openings.json"), "utf8");
const lines = (await readFile(process.env.NAMES, "utf8")).split("\n").filter((line) => line && !line.startsWith("#"))
  .map((line) => line.split(" = ")).map(([moves, name]) => ({ moves: moves.split(" "), name }));

describe("the table", () => {
  let core;
  let games;
  before(async () => {
    core = new BoardCore();
    const text = lines.map(({ moves }) => `[Event "?"]\n\n${moves.join(" ")} *\n`).join("\n");
    ({ games } = await core.ask({ ask: "pgn", text }));
  });
  after(() => core.close());

  test("all lines are moves, as the core writes them", () => {
    assert.equal(games.length, lines.length);
    for (const [index, { error, sans }] of games.entries()) {
      assert.deepEqual([error, sans], [null, lines[index].moves]);
    }
  });

  test("each position has its name, and no other one", async () => {
    const names = JSON.parse(table);
    const keys = new Set();
    for (const [index, { moves }] of games.entries()) {
      const { fen } = await core.ask({ ask: "position", moves });
      const key = fen.split(" ", 3).join(" ");
      assert.equal(names[key], lines[index].name, lines[index].moves.join(" "));
      keys.add(key);
    }
    assert.equal(keys.size, lines.length);
    assert.equal(Object.keys(names).length, lines.length);
  });

  test("a game goes by the last name", async () => {
    const openings = new Openings(core, "data:application/json," + encodeURIComponent(table));
    const name = (moves) => openings.nameOf({ start: "startpos", chess960: false, moves: moves.split(" ") }, START);
    assert.equal(await openings.nameOf({ start: "startpos", chess960: false, moves: [] }, START), "");
    assert.equal(await name("e2e4 c7c5"), "Sicilian Defence");
    assert.equal(await name("e2e4 c7c5 a2a3 a7a6 h2h3"), "Sicilian Defence");
    // By another way.
    assert.equal(await name("g1f3 c7c5 e2e4 d7d6"), "Sicilian Defence: Modern");
    assert.equal(await name("a2a3 e7e5 e2e4 a7a6"), "Anderssen's Opening");
    const there = "rnbqkbnr/pppp1ppp/4p3/8/4P3/8/PPPP1PPP/RNBQKBNR w KQkq - 7 9";
    assert.equal(await openings.nameOf({ start: there, chess960: false, moves: ["a2a3"] }, there), "French Defence");
    const none = new Openings(core, "data:text/plain,nothing");
    assert.equal(await none.nameOf({ start: "startpos", chess960: false, moves: ["e2e4"] }, START), "");
  });
});

describe("the page", () => {
  before(begin);
  after(end);

  test("it tells the name, and keeps it", () => withBoard({}, async (page) => {
    await page.click("#tab-analyse");
    await page.click("#engine-switch");
    for (const [move, name] of [["e4", "King's Pawn Opening"], ["c6", "Caro-Kann Defence"], ["d4", "Caro-Kann Defence"],
      ["d5", "Main Line"], ["exd5", "Main Line"], ["cxd5", "Exchange"], ["c4", "Panov Attack"], ["h5", "Panov Attack"]]) {
      await typeMove(page, move);
      await says(page, "where", `${move}.`);
      await says(page, "opening", name);
    }
    await page.reload();
    await ready(page);
    await says(page, "opening", "Caro-Kann Defence: Panov Attack");
    await page.click("#first");
    await page.waitForFunction(() => document.getElementById("opening").textContent === "");
    await openGame(page, "4k3/8/8/8/8/8/4P3/4K3 w - - 0 1");
    await says(page, "fen", "4k3/8");
    assert.equal(await page.locator("#opening").textContent(), "");
  }));

  test("in a game too", () => withBoard({}, async (page) => {
    await typeMove(page, "e4");
    await hasMoves(page, 2);
    await page.waitForFunction(() => document.getElementById("opening").textContent.length > 5);
  }));
});
