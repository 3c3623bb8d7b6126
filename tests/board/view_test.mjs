// The board in the browser beside play: analysis, games in and out, keys, accessibility, budgets.
import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { readFile } from "node:fs/promises";
import { after, before, describe, test } from "node:test";
import { audit, begin, clickMove, drag, drawn, end, hasMoves, NARROW, openGame, ready, reviewGame, sansOf, says, shoot,
  typeMove, WIDE, withBoard } from "./support.mjs";

const GAME = `[Event "Club evening"]
[Site "?"]
[Date "2024.05.01"]
[Round "1"]
[White "Ada"]
[Black "Grace"]
[Result "1-0"]

1. e4 e5 2. Bc4 Nc6 3. Qh5 Nf6 4. Qxf7# 1-0
`;
const START = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR";
// What the page may load until its first move, and how long that may take on a busy machine.
const MOST_BYTES = 1700000;
const MOST_SECONDS = 20;
// A telephone is so many times slower.
const SLOWNESS = 4;

before(begin);
after(end);

const paste = (page, text) => page.evaluate((words) => {
  const data = new DataTransfer();
  data.setData("text/plain", words);
  document.dispatchEvent(new ClipboardEvent("paste", { clipboardData: data, bubbles: true }));
}, text);

const drop = (page, text, name, times = 1) => page.evaluate(([words, file, count]) => {
  const data = new DataTransfer();
  data.items.add(new File([words.repeat(count)], file));
  document.dispatchEvent(new DragEvent("drop", { dataTransfer: data, bubbles: true }));
}, [text, name, times]);

describe("analysis", () => {
  test("lines, arrow, chances and terms", () => withBoard({}, async (page) => {
    await page.click("#tab-analyse");
    await openGame(page, "r1bqkbnr/pppp1ppp/2n5/4p2Q/2B1P3/8/PPPP1PPP/RNB1K1NR b KQkq - 3 3");
    await page.selectOption("#line-count", "5");
    await page.waitForFunction(() => document.querySelectorAll("#lines .line").length === 5);
    await says(page, "engine-words", "Depth");
    assert.equal(await page.locator("#board .arrow").count(), 1);
    for (const score of await page.locator("#lines .score").allTextContents()) {
      assert.match(score, /^(0\.00|[+\u2212]\d+\.\d\d|#\u2212?\d+)$/);
    }
    assert.match(await page.locator("#lines .run button").first().textContent(), /^3\.\.\.[KQRBNa-h]/);
    const share = await page.locator("#white-share").evaluate((bar) => parseFloat(bar.style.height));
    assert.ok(share > 0 && share < 100, String(share));
    assert.equal(await page.locator("#bars .bar:not(.term)").count(), 8);
    await page.locator("#bars summary").first().click();
    assert.ok(await page.locator("#bars details[open] .bar.term").count() > 0);
    await page.click("#engine-switch");
    await says(page, "engine-words", "Stopped at depth");
  }));

  test("a line tells where its score comes from", () => withBoard({}, async (page) => {
    await openGame(page, "r1bqkbnr/pppp1ppp/2n5/4p3/2B1P3/5N2/PPPP1PPP/RNBQK2R b KQkq - 3 3");
    await page.waitForSelector("#lines .why");
    await page.click("#lines .why >> nth=0");
    await says(page, "chart-words", "Where the score comes from");
    assert.equal(await page.locator("#bars .bar:not(.term)").count(), 8);
    await page.click("#of-position");
    await says(page, "chart-words", "Before any search");
  }));

  test("the book", () => withBoard({}, async (page) => {
    await page.click("#tab-analyse");
    await page.click("#book .book-move >> text=d4");
    await says(page, "where", "After 1.d4");
    await page.waitForSelector("#book .book-move >> text=Nf6");
  }));

  test("a line is gone into and left", () => withBoard({}, async (page) => {
    await openGame(page, GAME);
    await page.click("#last");
    await page.click("#previous");
    await page.waitForSelector("#lines [data-line='0'][data-step='0']");
    await page.click("#engine-switch");
    await typeMove(page, "Qxe5+");
    await page.waitForSelector("#variation button[aria-pressed=true]");
    await says(page, "where", "In a line, after 4.Qxe5+");
    await typeMove(page, "Nxe5");
    await says(page, "where", "4...Nxe5");
    assert.deepEqual(await page.locator("#variation button:not(.back)").allTextContents(), ["4.Qxe5+", "Nxe5"]);
    await page.click("#previous");
    await says(page, "where", "4.Qxe5+");
    await page.click("#variation .back");
    await says(page, "where", "After 3...Nf6");
    assert.deepEqual((await sansOf(page)).length, 7);
  }));

  test("an endgame table", () => withBoard({}, async (page) => {
    await page.click("#tab-analyse");
    await page.click("#engine-switch");
    await openGame(page, "8/8/8/8/8/2k5/8/KQ6 w - - 0 1");
    await page.click("#ask-ending");
    // It takes a while until it is built, which is gone on with as long as the position is shown.
    await page.waitForFunction(() => /: [1-9]\d* %|mates in/.test(document.getElementById("ending").textContent));
    // And what no table knows is not offered.
    await openGame(page, "8/8/8/8/8/2k5/7P/K7 w - - 0 1");
    await says(page, "fen", "/7P/");
    assert.equal(await page.locator("#ask-ending").count(), 0);
  }));

  test("a game that is over", () => withBoard({}, async (page) => {
    await page.click("#tab-analyse");
    await openGame(page, "7k/5Q2/6K1/8/8/8/8/8 b - - 0 1");
    await says(page, "engine-words", "over");
    await says(page, "where", "stalemate");
    assert.equal(await page.locator("#lines .line").count(), 0);
  }));
});

describe("review", () => {
  // The records of the command line for the same game and limit.
  const recordsOf = (depth) => execFileSync(process.env.ANALYSE, ["-", "--limit", `depth=${depth}`, "--moves",
    "best,played,rest", "--quiet"], { input: GAME, encoding: "utf8" }).trim().split("\n").map((line) => JSON.parse(line));

  test("it says what orvelin-analyse says", () => withBoard({}, async (page) => {
    await openGame(page, GAME);
    await hasMoves(page, 7);
    await reviewGame(page);
    await says(page, "review-words", "Depth 6");
    const records = recordsOf(6);
    const judged = records.filter((record) => record.played);
    assert.equal(judged.length, 7);
    const marks = judged.map((record) => record.played.judgement.mark);
    assert.deepEqual(await page.locator("#moves button").evaluateAll((moves) =>
      moves.map((move) => move.querySelector(".mark")?.textContent ?? "")), marks);
    assert.ok(marks.includes("??"));
    const own = judged.filter((record) => record.fen.includes(" w ")).map((record) => record.played.judgement.accuracy);
    const known = own.filter((accuracy) => accuracy !== null);
    const mean = (known.reduce((sum, each) => sum + each, 0) / known.length).toFixed(1);
    assert.equal(await page.locator("#review-sides strong").first().textContent(), `${mean} %`);
    for (const [index, record] of judged.entries()) {
      await page.click(`#moves [data-ply='${index + 1}']`);
      await says(page, "sentence", record.played.judgement.sentence.replace(/-(?=\d)/g, "\u2212"));
      const line = await page.locator("#review-lines p").first().locator("button").allTextContents();
      assert.deepEqual(line.map((text) => text.replace(/^\d+\.+/, "")), record.lines[0].san.split(" ").slice(0, 12));
      assert.equal(await page.getAttribute("#graph", "aria-valuenow"), String(index + 1));
    }
    // The line is played through on the board, and the graph leads back.
    await page.locator("#review-lines p").first().locator("button").first().click();
    await page.waitForSelector("#variation button");
    await page.focus("#graph");
    await page.keyboard.press("Home");
    await says(page, "where", "The start");
    await page.click("#next-mark");
    await says(page, "where", "After");
    await audit(page, "a review");
    await shoot(page, "reviewed.png");
  }));

  test("it is stopped, and begun anew", () => withBoard({}, async (page) => {
    await openGame(page, GAME);
    await page.click("#tab-review");
    await page.selectOption("#review-depth", "14");
    await page.click("#review-go");
    await page.waitForSelector("#review-progress:not([hidden])");
    await page.click("#review-go");
    await page.waitForSelector("#review-progress", { state: "hidden" });
    await reviewGame(page);
    // A new move makes another game of it.
    await openGame(page, "4k3/8/8/8/8/8/4P3/4K3 w - - 0 1");
    await says(page, "review-words", "There are no moves yet");
    assert.ok(!await page.locator("#review-result").isVisible());
  }));
});

describe("games in and out", () => {
  test("a PGN is opened, gone through and saved", () => withBoard({}, async (page) => {
    await openGame(page, GAME);
    await hasMoves(page, 7);
    assert.deepEqual(await sansOf(page), ["e4", "e5", "Bc4", "Nc6", "Qh5", "Nf6", "Qxf7#"]);
    assert.equal(await page.locator("#game-title").textContent(), "Ada – Grace, 1-0");
    assert.equal(await drawn(page), START);
    await page.keyboard.press("End");
    await says(page, "where", "After 4.Qxf7#");
    await page.keyboard.press("ArrowLeft");
    await says(page, "where", "After 3...Nf6");
    await page.click("#moves [data-ply='2']");
    await says(page, "where", "After 1...e5");
    const download = page.waitForEvent("download");
    await page.click("#save-pgn");
    const text = await readFile(await (await download).path(), "utf8");
    for (const part of ['[Event "Club evening"]', '[White "Ada"]', '[Result "1-0"]', "4. Qxf7# 1-0"]) {
      assert.ok(text.includes(part), text);
    }
    // And in again.
    await page.click("#tab-play");
    await paste(page, text);
    await hasMoves(page, 7);
  }));

  test("a file is dropped, and a game of it chosen", () => withBoard({}, async (page) => {
    await drop(page, GAME + "\n" + GAME.replace("Ada", "Emmy").replace(/1\. e4.*/, "1. d4 d5 1-0"), "games.pgn");
    await page.selectOption("dialog select", "1");
    await page.click("dialog button.main");
    await hasMoves(page, 2);
    await says(page, "game-title", "Emmy – Grace");
  }));

  test("a FEN is pasted", () => withBoard({}, async (page) => {
    await paste(page, "4k3/8/8/8/8/8/4P3/4K3 w - - 0 1");
    await says(page, "fen", "4k3/8/8/8/8/8/4P3/4K3 w - - 0 1");
    assert.equal(await drawn(page), "4k3/8/8/8/8/8/4P3/4K3");
    assert.equal(await page.getAttribute("#tab-analyse", "aria-selected"), "true");
  }));

  test("a running game is not lost unasked", () => withBoard({}, async (page) => {
    await typeMove(page, "e4");
    await hasMoves(page, 2);
    await openGame(page, GAME);
    await page.click("dialog:has-text('given up') button:not(.main)");
    assert.equal((await sansOf(page)).length, 2);
    await openGame(page, GAME);
    await page.click("dialog:has-text('given up') button.main");
    await hasMoves(page, 7);
  }));

  test("hostile texts are texts", () => withBoard({}, async (page) => {
    await page.evaluate(() => (window.hit = 0));
    const bad = "<img src=x onerror=window.hit=1><script>window.hit=1</script>";
    await openGame(page, GAME.replace("Ada", bad).replace("e4 e5", `e4 {${bad}} e5`));
    await hasMoves(page, 7);
    await says(page, "game-title", bad);
    await page.click("#engine-switch");
    await page.reload();
    await ready(page);
    await says(page, "game-title", bad);
    for (const text of ["8/8/8/8/8/8/8/8 w - - 0 1", "kkkkkkkk/8/8/8/8/8/8/KKKKKKKK w - - 0 1", `1. e4 ${bad}`,
      "9/9/9/9/9/9/9/9 x y z", "\u0000\ud800\uffff", "]".repeat(10000), "(".repeat(100000)]) {
      // The words about the text before must not be taken for those about this one.
      await page.evaluate(() => (document.getElementById("message").textContent = ""));
      await openGame(page, text);
      await page.waitForFunction(() => document.getElementById("message").textContent.length > 5);
    }
    await drop(page, "1. e4 ", "large.pgn", 4000000);
    await says(page, "message", "16 MiB");
    assert.equal(await page.locator("img, main script").count(), 0);
    assert.equal(await page.evaluate(() => window.hit ?? 0), 0);
    await openGame(page, GAME);
    await hasMoves(page, 7);
  }));

  test("a position is set up by hand", () => withBoard({}, async (page) => {
    await page.click("#panel-play .set-up");
    await page.click("dialog >> text=Empty board");
    await page.waitForSelector("dialog button.main:disabled");
    for (const [piece, square] of [["white king", "e1"], ["black king", "e8"], ["white queen", "d1"]]) {
      await page.click(`dialog .palette [aria-label='${piece}']`);
      await page.click(`dialog .cell[data-square=${square}]`);
    }
    await page.click("dialog .palette [aria-label='Move pieces']");
    await page.click("dialog .cell[data-square=d1]");
    await page.click("dialog .cell[data-square=d5]");
    await page.click("dialog button.main");
    await says(page, "fen", "4k3/8/8/3Q4/8/8/8/4K3 w - - 0 1");
    // And by drawing pieces from beside the board, which chooses none of them.
    await page.click("#moves-panel .set-up");
    for (const [from, to] of [[".palette [aria-label='black rook']", ".cell[data-square=a8]"],
      ["[aria-label='Remove pieces']", ".cell[data-square=d5]"],
      [".cell[data-square=e1]", ".cell[data-square=f2]"]]) {
      await drag(page, `dialog ${from}`, `dialog ${to}`);
    }
    assert.match(await page.inputValue("dialog input.fen"), /^r3k3\/8\/8\/8\/8\/8\/5K2\/8 /);
    assert.equal(await page.locator("dialog .carried").count(), 0);
    await page.click("dialog .palette [aria-label='black rook']");
    await page.click("dialog .cell[data-square=h1]");
    await page.click("dialog .palette [aria-label='Move pieces']");
    await page.click("dialog .cell[data-square=h1]");
    await page.click("dialog .cell[data-square=h2]");
    assert.match(await page.inputValue("dialog input.fen"), /^r3k3\/8\/8\/8\/8\/8\/5K1r\/8 /);
  }));
});

describe("for everybody", () => {
  test("a game by keys alone", () => withBoard({}, async (page) => {
    const tabTo = async (selector) => {
      for (let i = 0; i < 60; i += 1) {
        await page.keyboard.press("Tab");
        if (await page.evaluate((wanted) => document.activeElement.matches(wanted), selector)) {
          return;
        }
      }
      assert.fail(`${selector} is not reached`);
    };
    const goTo = async (square) => {
      const [file, rank] = [square.charCodeAt(0) - 97, Number(square[1])];
      await page.keyboard.press("Home");
      for (let i = 0; i < 8; i += 1) {
        await page.keyboard.press("ArrowUp");
      }
      for (let i = 0; i < file; i += 1) {
        await page.keyboard.press("ArrowRight");
      }
      for (let i = 8; i > rank; i -= 1) {
        await page.keyboard.press("ArrowDown");
      }
    };
    await tabTo("#board .cell");
    await goTo("e2");
    assert.equal(await page.evaluate(() => document.activeElement.ariaLabel), "e2, white pawn");
    await page.keyboard.press("Enter");
    await goTo("e4");
    assert.equal(await page.evaluate(() => document.activeElement.ariaLabel), "e4, empty, possible move");
    await page.keyboard.press("Enter");
    await hasMoves(page, 2);
    await says(page, "announce", "Orvelin: ");
    await tabTo("#typed");
    await page.keyboard.type("Nf3");
    await page.keyboard.press("Enter");
    await hasMoves(page, 4);
    await page.keyboard.type("Zz9");
    await page.keyboard.press("Enter");
    await says(page, "message", "Zz9 is no legal move");
    await tabTo("#resign");
    await page.keyboard.press("Enter");
    await page.waitForSelector("dialog[open]");
    await page.keyboard.press("Enter");
    await says(page, "play-words", "has resigned");
    await page.focus("#tab-play");
    await page.keyboard.press("ArrowRight");
    assert.equal(await page.getAttribute("#tab-analyse", "aria-selected"), "true");
  }));

  test("the board turns", () => withBoard({}, async (page) => {
    await page.click("#flip");
    assert.equal(await page.locator("#board .cell").first().getAttribute("data-square"), "h1");
    assert.equal(await drawn(page), START);
    await clickMove(page, "e2", "e4");
    await hasMoves(page, 2);
  }));

  test("two languages", () => withBoard({ locale: "de-DE" }, async (page) => {
    assert.equal(await page.locator("#tab-play").textContent(), "Spielen");
    assert.equal(await page.locator("#board .cell").first().getAttribute("aria-label"), "a8, schwarzer Turm");
    await page.selectOption("#language", "en");
    await says(page, "tab-play", "Play");
    await page.reload();
    await ready(page);
    await says(page, "tab-play", "Play");
  }));

  for (const colorScheme of ["light", "dark"]) {
    for (const [width, viewport] of [["wide", WIDE], ["narrow", NARROW]]) {
      test(`all views, ${colorScheme}, ${width}`, () => withBoard({ colorScheme, viewport }, async (page) => {
        const look = async (name) => {
          await audit(page, name);
          const [scroll, inner] = await page.evaluate(() => [document.documentElement.scrollWidth, window.innerWidth]);
          assert.ok(scroll <= inner, `${name} is ${scroll} pixels wide`);
          await shoot(page, `${name}-${colorScheme}-${width}.png`);
        };
        await look("new");
        await clickMove(page, "e2", "e4");
        await hasMoves(page, 2);
        await page.click("#board .cell[data-square=g1]");
        await look("play");
        await page.click("#tab-analyse");
        await says(page, "engine-words", "Depth");
        await page.locator("#bars summary").first().click();
        await page.click("#engine-switch");
        await look("analyse");
        await page.click("#tab-review");
        await look("review");
        await page.click("#about");
        await look("about");
        await page.keyboard.press("Escape");
        await page.click("#open");
        await look("open");
        await page.keyboard.press("Escape");
        await page.click("#moves-panel .set-up");
        await look("setup");
      }));
    }
  }

  for (const [width, height] of [[740, 360], [1366, 640], [800, 600]]) {
    test(`all of the board is seen on ${width} by ${height} pixels`, () => withBoard({ viewport: { width, height } },
      async (page) => {
        await clickMove(page, "e2", "e4");
        await hasMoves(page, 2);
        await page.evaluate(() => scrollTo(0, 0));
        const wide = await page.evaluate(() => document.documentElement.scrollWidth);
        assert.ok(wide <= width, `${wide} pixels wide`);
        const size = (await page.locator("#board").boundingBox()).height;
        assert.ok(size <= height - 60 && size >= 240, `${size} pixels high`);
        await page.click("#moves-panel .set-up");
        for (const selector of ["dialog .squares", "dialog .palette"]) {
          const box = await page.locator(selector).boundingBox();
          assert.ok(box.y >= 0 && box.y + box.height <= height, `${selector} ends at ${box.y + box.height}`);
        }
      }));
  }

  test("the switch of colours", () => withBoard({ colorScheme: "light" }, async (page) => {
    const ground = () => page.evaluate(() => getComputedStyle(document.body).backgroundColor);
    const light = await ground();
    await page.click("#scheme");
    await page.click("#scheme");
    const dark = await ground();
    assert.notEqual(dark, light);
    await page.reload();
    await ready(page);
    assert.equal(await ground(), dark);
  }));
});

describe("budgets", () => {
  // The slowness is of the page; its workers are on their own.
  const slow = async (page, times) => {
    const session = await page.context().newCDPSession(page);
    await session.send("Emulation.setCPUThrottlingRate", { rate: times });
  };

  for (const [device, times, options] of [["a desk", 1, {}],
    ["a telephone", SLOWNESS, { viewport: NARROW, isMobile: true, hasTouch: true, deviceScaleFactor: 2 }]]) {
    test(`bytes, time and clicks to the first move on ${device}`, async (context) => {
      let bytes = 0;
      let started = 0;
      await withBoard({ ...options, before: async (page) => {
        page.on("response", (response) => (bytes += Number(response.headers()["content-length"] ?? 0)));
        await slow(page, times);
        started = performance.now();
      } }, async (page) => {
        const shown = performance.now() - started;
        await clickMove(page, "e2", "e4");
        // The engine may have answered by then.
        await page.waitForSelector("#moves button");
        const moved = performance.now() - started;
        context.diagnostic(`${bytes} bytes, ready after ${shown.toFixed(0)} ms, first move after ${moved.toFixed(0)} ms and 2 clicks`);
        assert.ok(bytes > MOST_BYTES / 4 && bytes < MOST_BYTES, `${bytes} bytes`);
        assert.ok(moved < 1000 * times * MOST_SECONDS, `${moved} ms`);
      });
    });
  }
});
