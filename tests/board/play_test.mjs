// Games against the engine in the browser.
import assert from "node:assert/strict";
import path from "node:path";
import { after, before, describe, test } from "node:test";
import { pathToFileURL } from "node:url";
import { begin, clickMove, dragMove, drawn, end, folder, hasMoves, holdCore, openGame, plainHost, ready, sansOf,
  says, typeMove, withBoard } from "./support.mjs";

const { default: Orvelin } = await import(pathToFileURL(path.join(folder, "engine/orvelin.mjs")));

before(begin);
after(end);

const choose = async (page, fields) => {
  for (const [name, value] of Object.entries(fields)) {
    if (name === "side") {
      await page.check(`[name=side][value=${value}]`);
    } else {
      await page.selectOption(`[name=${name}]`, value);
    }
  }
};

const begins = (page) => page.click("#new-game button.main");
const fenOf = (page) => page.locator("#fen").textContent();

// A player of some strength, to play against the weakest level.
class Player {
  engine = new Orvelin();
  ask(fen) {
    return new Promise((done, fail) => {
      this.engine.onerror = ({ message }) => fail(new Error(message));
      this.engine.onmessage = ({ data }) => data.startsWith("bestmove") && done(data.split(" ")[1]);
      this.engine.postMessage(`position fen ${fen}\ngo depth 5`);
    });
  }
}

describe("a game", () => {
  test("a move on the board begins it", () => withBoard({}, async (page) => {
    await clickMove(page, "e2", "e4");
    await hasMoves(page, 2);
    assert.equal((await sansOf(page))[0], "e4");
    await says(page, "play-title", "level 1200");
    await says(page, "where", "Your move");
  }));

  test("the board stays where it is when one begins, and when something is said", () => withBoard({}, async (page) => {
    const place = () => page.locator("#board").evaluate((board) => board.offsetTop);
    const before = await place();
    await says(page, "upper", "Orvelin");
    await clickMove(page, "e2", "e4");
    await hasMoves(page, 2);
    assert.equal(await place(), before);
    await typeMove(page, "Zz9");
    await page.waitForSelector("#message:not([hidden])");
    assert.equal(await place(), before);
  }));

  test("a piece is drawn to its square", () => withBoard({}, async (page) => {
    await dragMove(page, "g1", "f3");
    await hasMoves(page, 2);
    assert.equal((await sansOf(page))[0], "Nf3");
    // And where it may not go it comes back.
    const there = await drawn(page);
    await dragMove(page, "e2", "e6");
    assert.equal(await drawn(page), there);
  }));

  test("against level 800 it comes to its end", () => withBoard({}, async (page) => {
    await choose(page, { side: "black", level: "800" });
    await begins(page);
    const player = new Player();
    let count = 1;
    try {
      for (; count < 300; count += 2) {
        await page.waitForFunction((wanted) => document.querySelectorAll("#moves button").length >= wanted ||
          !document.getElementById("over-buttons").hidden, count);
        await page.waitForFunction(() => !document.getElementById("over-buttons").hidden ||
          document.getElementById("where").textContent.includes("Your move"));
        if (await page.locator("#over-buttons").isVisible()) {
          break;
        }
        const move = await player.ask(await fenOf(page));
        await typeMove(page, move);
      }
    } finally {
      player.engine.terminate();
    }
    assert.ok(await page.locator("#over-buttons").isVisible(), `not over after ${count} half-moves`);
    const words = await page.locator("#play-words").textContent();
    assert.match(words, /checkmated|Drawn/);
    assert.ok((await page.locator("#game-title").textContent()).match(/1-0|0-1|1\/2-1\/2/));
    // It stays over.
    await page.reload();
    await ready(page);
    await says(page, "play-words", words);
  }));

  test("it is given up and begun anew", () => withBoard({}, async (page) => {
    await clickMove(page, "d2", "d4");
    await hasMoves(page, 2);
    await page.click("#resign");
    await page.click("dialog button:not(.main)");
    await page.click("#resign");
    await page.keyboard.press("Escape");
    await page.waitForSelector("dialog", { state: "detached" });
    assert.equal(await page.locator("#play-words").textContent(), "");
    await page.click("#resign");
    await page.click("dialog button.main");
    await says(page, "play-words", "White has resigned");
    await page.click("#again");
    await hasMoves(page, 0);
    assert.ok(await page.locator("#new-game").isVisible());
  }));

  test("another one begins where the last one was set up", () => withBoard({}, async (page) => {
    const start = "8/P6k/8/8/8/8/8/K7 w - - 0 1";
    await openGame(page, start);
    await page.click("#tab-play");
    for (let i = 0; i < 2; i += 1) {
      await says(page, "fen", start);
      await begins(page);
      await typeMove(page, "a8=Q");
      await hasMoves(page, 2);
      await page.click("#resign");
      await page.click("dialog button.main");
      await says(page, "play-words", "White has resigned");
      await page.click("#again");
      await hasMoves(page, 0);
    }
    await says(page, "fen", start);
    assert.equal(await page.inputValue("[name=start]"), "board");
  }));

  test("moves are taken back", () => withBoard({}, async (page) => {
    const start = await drawn(page);
    await clickMove(page, "d2", "d4");
    await hasMoves(page, 2);
    await page.click("#take-back");
    await hasMoves(page, 0);
    assert.equal(await drawn(page), start);
    await typeMove(page, "e2e4");
    await hasMoves(page, 2);
  }));

  test("what was said of a move goes with the position", () => withBoard({}, async (page, context) => {
    await typeMove(page, "e4");
    await hasMoves(page, 2);
    for (const leave of ["#take-back", "#tab-analyse", "#tab-play", "#first", "#next"]) {
      await says(page, "where", leave === "#next" ? "The start" : "move");
      await typeMove(page, "Zz9");
      await page.waitForSelector("#message:not([hidden])");
      await page.click(leave);
      await page.waitForSelector("#message", { state: "hidden" });
      if (leave === "#take-back") {
        await typeMove(page, "d4");
        await hasMoves(page, 2);
      }
    }
    await context.grantPermissions(["clipboard-read", "clipboard-write"]);
    await page.click("#copy-pgn");
    await says(page, "message", "Copied");
    assert.match(await page.evaluate(() => navigator.clipboard.readText()), /1\. d4/);
  }));

  test("a piece that cannot be moved tells why", () => withBoard({}, async (page) => {
    await typeMove(page, "e4");
    await hasMoves(page, 2);
    await says(page, "where", "Your move");
    await page.click("#first");
    await says(page, "where", "The start");
    await dragMove(page, "d2", "d4");
    await says(page, "message", "an earlier position");
    await page.click("#last");
    await says(page, "where", "Your move");
    assert.ok(await page.locator("#message").isHidden());
    await page.click("#resign");
    await page.click("dialog button.main");
    await says(page, "play-words", "White has resigned");
    await dragMove(page, "d2", "d4");
    await says(page, "message", "The game is over");
    await hasMoves(page, 2);
  }));

  test("a hint is shown", () => withBoard({}, async (page) => {
    await openGame(page, "6k1/5ppp/8/8/8/8/5PPP/3R2K1 w - - 0 1");
    await page.click("#tab-play");
    await begins(page);
    await page.click("#hint");
    await says(page, "hint-words", "1.Rd8#");
    assert.equal(await page.locator(".arrow").count(), 1);
    await typeMove(page, "Rd8#");
    await says(page, "play-words", "You have won. Black is checkmated.");
    assert.equal(await page.locator(".arrow").count(), 0);
  }));

  test("a reload finds it again", () => withBoard({}, async (page) => {
    await choose(page, { level: "800", clock: "10+5" });
    await typeMove(page, "e4");
    await hasMoves(page, 2);
    const [sans, pieces] = [await sansOf(page), await drawn(page)];
    await page.reload();
    await ready(page);
    await hasMoves(page, 2);
    assert.deepEqual([await sansOf(page), await drawn(page)], [sans, pieces]);
    await says(page, "play-title", "level 800");
    assert.match(await page.locator("#lower .clock").textContent(), /^(10|9):/);
    await typeMove(page, "Nc3");
    await hasMoves(page, 4);
  }));

  test("it is seen before the engine is there, and kept by who leaves then", () => withBoard({}, async (page) => {
    await choose(page, { side: "black", level: "800" });
    await begins(page);
    await says(page, "where", "Your move");
    const [sans, pieces] = [await sansOf(page), await drawn(page)];
    const release = await holdCore(page);
    for (let i = 0; i < 2; i += 1) {
      await page.reload();
      await page.waitForSelector("#board .piece");
      assert.equal(await drawn(page), pieces);
      assert.equal(await page.locator("#board .cell").first().getAttribute("data-square"), "h1");
      await says(page, "upper", "Orvelin (800)");
      await says(page, "where", "Loading");
      assert.equal(await page.getAttribute("body", "data-ready"), null);
      // Nothing can be done yet that the core has to look at.
      assert.equal(await page.locator("main[inert] #board, header[inert] #tabs").count(), 2);
    }
    release();
    await ready(page);
    await says(page, "where", "Your move");
    assert.deepEqual([await sansOf(page), await drawn(page)], [sans, pieces]);
    await typeMove(page, "e5");
    await hasMoves(page, 3);
  }));

  test("a new player sees the start at once", () => withBoard({}, async (page) => {
    await page.evaluate(() => localStorage.clear());
    const release = await holdCore(page);
    await page.evaluate(() => window.addEventListener("pagehide", () => localStorage.clear()));
    await page.reload();
    await page.waitForSelector("#board .piece");
    assert.equal(await drawn(page), "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR");
    assert.equal(await page.getAttribute("body", "data-ready"), null);
    release();
    await ready(page);
    await clickMove(page, "e2", "e4");
    await hasMoves(page, 2);
  }));

  test("what was kept and is damaged is left out", () => withBoard({
    before: (page) => page.addInitScript(() => localStorage.setItem("orvelin-board",
      '{"game":{"start":"startpos","chess960":false,"moves":["e2e5"],"tags":{},"result":"*","play":null},"settings":7}')),
  }, async (page) => {
    await hasMoves(page, 0);
    await typeMove(page, "e4");
    await hasMoves(page, 2);
  }));

  test("a clock runs out", () => withBoard({ before: (page) => page.clock.install() }, async (page) => {
    await choose(page, { clock: "1+0" });
    await typeMove(page, "e4");
    await page.clock.runFor(3000);
    await hasMoves(page, 2);
    await says(page, "where", "Your move");
    await page.clock.runFor(61000);
    await says(page, "play-words", "Orvelin has won. White has run out of time.");
    assert.equal(await page.locator("#lower .clock").textContent(), "0:00.0");
    assert.match(await page.locator("#game-title").textContent(), /0-1$/);
  }));

  test("the clock stands while another tab is open", () => withBoard({ before: (page) => page.clock.install() }, async (page) => {
    await choose(page, { clock: "3+2" });
    await typeMove(page, "e4");
    await page.clock.runFor(3000);
    await hasMoves(page, 2);
    await says(page, "where", "Your move");
    await page.click("#tab-analyse");
    const seconds = async () => {
      const [minutes, rest] = (await page.locator("#lower .clock").textContent()).split(":").map(Number);
      return 60 * minutes + rest;
    };
    const left = await seconds();
    await page.clock.runFor(30000);
    await page.click("#tab-play");
    await says(page, "where", "Your move");
    // It runs again by now, on a busy machine for some seconds.
    assert.ok(left - await seconds() < 15);
  }));

  test("fifty moves end it", () => withBoard({}, async (page) => {
    await openGame(page, "7k/5Q2/8/8/8/8/8/K7 w - - 98 80");
    await page.click("#tab-play");
    await begins(page);
    await typeMove(page, "Qf1");
    await says(page, "play-words", "Drawn: fifty moves");
  }));

  test("the third repetition ends it", () => withBoard({}, async (page) => {
    // Black has a single move in each position.
    await openGame(page, "7k/8/8/8/8/8/8/K1B3R1 w - - 0 1");
    await page.click("#tab-play");
    await begins(page);
    for (const [count, move] of ["Ka2", "Ka1", "Ka2", "Ka1"].entries()) {
      assert.equal(await page.locator("#play-words").textContent(), "");
      await typeMove(page, move);
      await hasMoves(page, 2 * count + 2);
    }
    await says(page, "play-words", "Drawn: the position was there for the third time");
  }));

  test("a pawn is promoted to what is chosen", () => withBoard({}, async (page) => {
    await openGame(page, "8/P6k/8/8/8/8/8/K7 w - - 0 1");
    await clickMove(page, "a7", "a8");
    await page.click("dialog button:has-text('Cancel')");
    assert.deepEqual(await sansOf(page), []);
    await clickMove(page, "a7", "a8");
    await page.click("dialog [data-promotion=n]");
    await hasMoves(page, 1);
    assert.deepEqual(await sansOf(page), ["a8=N"]);
  }));
});

describe("Chess960", () => {
  test("a drawn position is played", () => withBoard({}, async (page) => {
    await choose(page, { start: "chess960", level: "800" });
    await begins(page);
    await says(page, "where", "Your move");
    const [pieces] = (await fenOf(page)).split(" ");
    assert.match(pieces, /^[bnrqk]{8}\/pppppppp\/8\/8\/8\/8\/PPPPPPPP\/[BNRQK]{8}$/);
    await typeMove(page, "a4");
    await hasMoves(page, 2);
    await page.reload();
    await ready(page);
    await hasMoves(page, 2);
    await typeMove(page, "b3");
    await hasMoves(page, 4);
  }));

  test("the king castles onto his rook", () => withBoard({}, async (page) => {
    await page.click("#panel-play .set-up");
    await page.fill("dialog input.fen", "rk2r3/pppppppp/8/8/8/8/PPPPPPPP/RK2R3 w EAea - 0 1");
    await page.check("dialog .fields label.inline input");
    await page.click("dialog button.main");
    await page.waitForSelector("dialog", { state: "detached" });
    await page.click("#tab-analyse");
    await clickMove(page, "b1", "e1");
    await hasMoves(page, 1);
    assert.deepEqual(await sansOf(page), ["O-O"]);
    assert.equal((await drawn(page)).split("/").at(-1), "R4RK1");
  }));
});

describe("a plain web host", () => {
  test("no shared memory, and no network afterwards", async () => {
    const host = await plainHost();
    try {
      await withBoard({ at: host.at }, async (page, context) => {
        assert.equal(await page.evaluate(() => window.crossOriginIsolated), false);
        await page.evaluate(() => navigator.serviceWorker.ready);
        await typeMove(page, "e4");
        await hasMoves(page, 2);
        await page.click("#tab-analyse");
        await says(page, "engine-words", "Depth");
        await page.click("#tab-play");
        await typeMove(page, "Nc3");
        await hasMoves(page, 4);
        await context.setOffline(true);
        await page.reload();
        await ready(page);
        await typeMove(page, "d3");
        await hasMoves(page, 6);
      });
    } finally {
      host.close();
    }
  });
});
