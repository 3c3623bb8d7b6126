// The parts of the board that need no page. BOARD is the folder that tools/make-board has made.
import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { readdir, readFile } from "node:fs/promises";
import path from "node:path";
import { after, before, describe, test } from "node:test";
import { pathToFileURL } from "node:url";

const folder = process.env.BOARD;
const load = (name) => import(pathToFileURL(path.join(folder, name)));
const { Clock, clockText } = await load("clock.mjs");
const { boardOf, chess960Start, nameOf, numbered, placementOf, squareOf, START } = await load("fen.mjs");
const { emptyGame, isGame } = await load("game.mjs");
const { targetsOf, typedMoves } = await load("moves.mjs");
const { textOf } = await load("open.mjs");
const { bestMove, readInfo, scoreText, whiteShare } = await load("uci.mjs");
const { languageOf } = await load("texts.mjs");
const { BoardCore } = await load("core.mjs");

describe("squares and positions", () => {
  test("names and numbers", () => {
    for (let square = 0; square < 64; square += 1) {
      assert.equal(squareOf(nameOf(square)), square);
    }
    assert.equal(nameOf(squareOf("h1")), "h1");
    assert.equal(squareOf("a8"), 56);
  });
  test("a board and its field", () => {
    const field = "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R";
    assert.equal(placementOf(boardOf(field + " w KQkq - 0 1")), field);
    assert.equal(boardOf(START)[squareOf("e8")], "k");
    assert.equal(boardOf("nonsense/////////99").length, 64);
  });
  test("moves are numbered", () => {
    assert.deepEqual(numbered(START, ["e4", "e5", "Nf3"]), ["1.e4", "e5", "2.Nf3"]);
    assert.deepEqual(numbered("8/8/8/8/8/8/8/8 b - - 0 7", ["Kd5", "Ke3"]), ["7...Kd5", "8.Ke3"]);
  });
  test("the 960 starts", async () => {
    assert.equal(chess960Start(518), START);
    assert.match(chess960Start(0), /^bbqnnrkr\//);
    assert.match(chess960Start(959), /^rkrnnqbb\//);
    const all = new Set([...Array(960).keys()].map(chess960Start));
    assert.equal(all.size, 960);
    for (const fen of all) {
      assert.match(fen, /^(?=.*r.*k.*r)[a-z]{8}\//);
    }
    const core = new BoardCore();
    try {
      for (const number of [0, 1, 358, 959]) {
        const start = chess960Start(number);
        const answer = await core.ask({ ask: "position", start, chess960: true, moves: [] });
        assert.equal(answer.error, undefined);
        // The rights to castle are all taken.
        assert.equal(answer.fen.split(" ")[2].length, 4);
      }
    } finally {
      core.close();
    }
  });
});

describe("moves as they are given", () => {
  let core;
  before(() => (core = new BoardCore()));
  after(() => core.close());
  const at = (start, chess960 = false) => core.ask({ ask: "position", start, chess960, moves: [] });
  const found = (text, legal) => typedMoves(text, legal).map((move) => move.san);

  test("typed", async () => {
    const { legal } = await at(START);
    for (const text of ["Nf3", "nf3", "g1f3", "g1-f3", " Nf3 ", "Nf3!", "G1F3"]) {
      assert.deepEqual(found(text, legal), ["Nf3"], text);
    }
    for (const text of ["", "Nf4", "e5", "e2e5", "<b>"]) {
      assert.deepEqual(found(text, legal), [], text);
    }
    const pawn = await at("8/P6k/8/8/8/8/8/K7 w - - 0 1");
    assert.deepEqual(found("a8=N", pawn.legal), ["a8=N"]);
    assert.deepEqual(found("a8q", pawn.legal), ["a8=Q"]);
    assert.equal(found("a7a8", pawn.legal).length, 4);
    assert.equal(found("a8", pawn.legal).length, 4);
    const castling = await at("r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1");
    for (const text of ["O-O", "0-0", "o-o", "e1g1"]) {
      assert.deepEqual(found(text, castling.legal), ["O-O"], text);
    }
    // A pawn and a bishop that can take the same piece.
    const both = await at("4k3/8/8/2n5/1P6/B7/8/4K3 w - - 0 1");
    assert.deepEqual(found("bxc5", both.legal), ["bxc5"]);
  });

  test("shown by two squares", async () => {
    const standard = await at("r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1");
    const targets = targetsOf("e1", standard.legal);
    for (const [square, san] of [["g1", "O-O"], ["h1", "O-O"], ["c1", "O-O-O"], ["a1", "O-O-O"], ["f1", "Kf1"]]) {
      assert.deepEqual(targets.get(square).map((move) => move.san), [san], square);
    }
    assert.equal(targetsOf("a8", standard.legal).size, 0);
    // The king beside the square that he castles to steps there; castling is shown by the rook.
    const other = await at("4k3/8/8/8/8/8/8/R4K1R w HA - 0 1", true);
    const own = targetsOf("f1", other.legal);
    assert.deepEqual(own.get("g1").map((move) => move.san), ["Kg1"]);
    assert.deepEqual(own.get("h1").map((move) => move.san), ["O-O"]);
    assert.deepEqual(own.get("c1").map((move) => move.san), ["O-O-O"]);
  });
});

describe("the engine's lines", () => {
  test("what an info tells", () => {
    assert.deepEqual(readInfo("info depth 9 multipv 2 score cp -31 wdl 200 500 300 nodes 1234 nps 99 time 12 pv e2e4 e7e5"),
      { depth: 9, line: 2, centipawns: -31, chances: 45, nodes: 1234, speed: 99, time: 12, moves: ["e2e4", "e7e5"] });
    assert.equal(readInfo("info depth 9 score mate -2 lowerbound pv a1a2").mate, -2);
    assert.equal(readInfo("info string score cp 3"), null);
    assert.equal(readInfo("readyok"), null);
    assert.equal(bestMove("bestmove e2e4 ponder e7e5"), "e2e4");
    assert.equal(bestMove("info depth 1"), null);
  });
  test("scores and chances are White's", () => {
    assert.equal(scoreText({ centipawns: 53 }, "white"), "+0.53");
    assert.equal(scoreText({ centipawns: 53 }, "black"), "\u22120.53");
    assert.equal(scoreText({ centipawns: 0 }, "black"), "0.00");
    assert.equal(scoreText({ mate: 3 }, "white"), "#3");
    assert.equal(scoreText({ mate: 3 }, "black"), "#\u22123");
    assert.equal(whiteShare({ chances: 70 }, "white"), 70);
    assert.equal(whiteShare({ chances: 70 }, "black"), 30);
  });
});

describe("clocks", () => {
  test("a side runs, is pressed and gets its increment", () => {
    const clock = new Clock({ white: 60000, black: 60000, increment: 2000 });
    assert.equal(clock.left("white", 5), 60000);
    clock.run("white", 1000);
    assert.equal(clock.left("white", 11000), 50000);
    assert.equal(clock.left("black", 11000), 60000);
    clock.press("white", 11000);
    assert.equal(clock.side, "black");
    assert.equal(clock.left("white", 99999), 52000);
    assert.equal(clock.left("black", 12000), 59000);
    clock.stop(12000);
    assert.equal(clock.left("black", 99999), 59000);
    clock.run("black", 0);
    assert.equal(clock.left("black", 100000), 0);
  });
  test("as it is shown", () => {
    for (const [time, text] of [[3909000, "1:05:09"], [600000, "10:00"], [59999, "1:00"], [20000, "0:20"], [19950, "0:20.0"],
      [9940, "0:10.0"], [1, "0:00.1"], [0, "0:00.0"]]) {
      assert.equal(clockText(time), text, String(time));
    }
  });
});

describe("files", () => {
  test("names in UTF-8 and in Latin-1", () => {
    assert.equal(textOf(new TextEncoder().encode('[White "Müller"]')), '[White "Müller"]');
    assert.equal(textOf(Buffer.from('[White "Müller"]', "latin1")), '[White "Müller"]');
  });
});

describe("what is kept", () => {
  const play = { side: "white", level: 1200, clock: null, over: null };
  test("a game is one", () => {
    assert.ok(isGame(emptyGame()));
    assert.ok(isGame({ ...emptyGame(), moves: ["e2e4"], tags: { White: "A" }, play }));
    assert.ok(isGame({ ...emptyGame(), play: { ...play, clock: { white: 1, black: 0, increment: 5 } } }));
  });
  test("and what is damaged is none", () => {
    for (const wrong of [null, {}, { ...emptyGame(), moves: "e2e4" }, { ...emptyGame(), moves: [7] }, { ...emptyGame(), tags: null },
      { ...emptyGame(), play: {} }, { ...emptyGame(), play: { ...play, level: -1 } }, { ...emptyGame(), play: { ...play, side: "red" } },
      { ...emptyGame(), play: { ...play, clock: {} } }, { ...emptyGame(), start: "x".repeat(1000) },
      { ...emptyGame(), moves: Array(5000).fill("e2e4") }, { ...emptyGame(), play: { ...play, over: {} } }]) {
      assert.ok(!isGame(wrong), JSON.stringify(wrong)?.slice(0, 200));
    }
  });
});

describe("the core", () => {
  // The table of its searches has 128 MiB.
  const MOST_MIB = 110;
  // In a process of its own, which has not used any before.
  const MEASURE = `
    const { readFileSync } = require("node:fs");
    const resident = () =>
      Number(/VmRSS:\\s+(\\d+) kB/.exec(readFileSync("/proc/self/status", "utf8"))[1]) / 1024;
    import(process.env.CORE).then(async ({ BoardCore }) => {
      const before = resident();
      const core = new BoardCore();
      await core.ask({ ask: "position", start: "startpos", chess960: false, moves: [] });
      console.log(resident() - before);
      core.close();
    });`;

  test("a table that nothing is written to takes no memory", () => {
    const env = { ...process.env, CORE: String(pathToFileURL(path.join(folder, "core.mjs"))) };
    const taken = Number(execFileSync(process.execPath, ["-e", MEASURE], { env }));
    assert.ok(taken > 0 && taken < MOST_MIB, `${taken} MiB`);
  });
});

describe("the page", () => {
  test("it asks at once for all modules that it leads to", async () => {
    const page = await readFile(path.join(folder, "index.html"), "utf8");
    const asked = [...page.matchAll(/rel="modulepreload" href="([^"]+)"/g)].map((match) => match[1]);
    const found = new Set();
    const follow = async (name) => {
      const source = await readFile(path.join(folder, name), "utf8");
      for (const [, place] of source.matchAll(/^(?:import|export) [^;]*from "(\.[^"]+)";/gm)) {
        const next = path.normalize(path.join(path.dirname(name), place));
        if (!found.has(next)) {
          found.add(next);
          await follow(next);
        }
      }
    };
    await follow("main.mjs");
    assert.ok(found.size > 30);
    assert.deepEqual(asked.sort(), [...found].sort());
  });
});

describe("texts", () => {
  const read = async (language) => JSON.parse(await readFile(path.join(folder, `texts/${language}.json`), "utf8"));
  const places = (text) => [...text.matchAll(/\{\w+\}/g)].map(String).sort();

  test("both languages say the same", async () => {
    const [english, german] = [await read("en"), await read("de")];
    // What the core names has names of its own.
    const own = Object.keys(german).filter((key) => !/^(group|term|sentence)\./.test(key));
    assert.deepEqual(own.sort(), Object.keys(english).sort());
    for (const [key, text] of Object.entries(english)) {
      assert.deepEqual(places(german[key]), places(text), key);
    }
  });

  test("all texts that the page asks for are there, and no others", async () => {
    const english = await read("en");
    const names = (await readdir(folder)).filter((name) => /\.(mjs|html)$/.test(name));
    const sources = await Promise.all(names.map((name) =>
      readFile(path.join(folder, name), "utf8")));
    const text = sources.join("\n");
    const wanted = new Set([...text.matchAll(/data-(?:text|label|title|hint)="([^"]+)"|"([a-z]+(?:\.[\w]+)*)"/g)]
      .map((match) => match[1] ?? match[2]));
    const made = /^(kind|letter|piece|why|over|level|leaf|lose|mark|resign|scheme|sentence|start|tomove|ending|setup)\./;
    for (const key of Object.keys(english)) {
      assert.ok(wanted.has(key) || made.test(key), key + " is not asked for");
    }
    for (const match of text.matchAll(/(?:texts|this\.texts|app\.texts)\.get\("([^"]+)"[,)]/g)) {
      assert.ok(match[1] in english, match[1] + " is not there");
    }
    for (const match of text.matchAll(/data-(?:text|label|title|hint)="([^"]+)"/g)) {
      assert.ok(match[1] in english, match[1] + " is not there");
    }
  });

  test("the language of the reader", () => {
    assert.equal(languageOf(["fr-FR", "de-AT", "en"]), "de");
    assert.equal(languageOf(["fr"]), "en");
    assert.equal(languageOf([]), "en");
  });
});
